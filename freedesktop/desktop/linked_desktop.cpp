#include "freedesktop/desktop/linked_desktop.h"

#include "freedesktop/calendars/server/bus_sources_search.h"
#include "freedesktop/session/desktop_settings.h"

namespace quorvel::freedesktop {

ClockFormat LinkedDesktop::clockFormat() {
    return desktopClockFormat();
}

std::unique_ptr<eds::SourcesSearch> LinkedDesktop::makeSourcesSearch() const {
    return std::make_unique<eds::BusSourcesSearch>();
}

} // namespace quorvel::freedesktop
