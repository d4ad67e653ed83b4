#include "freedesktop/calendars/index/engine_version.h"

#include <unistd.h>

#include "base/content_hash.h"
#include "freedesktop/dates/time_zone.h"
#include <quorvel_calendar_sources.h>

namespace quorvel::freedesktop::calendars {

std::uint64_t engineVersion() {
    ContentHash hash;
    hash.add(std::string_view(QUORVEL_CALENDAR_SOURCES));
    hash.add(std::string_view(timeZoneRulesVersion()));
    hash.add(geteuid());
    return hash.value();
}

} // namespace quorvel::freedesktop::calendars
