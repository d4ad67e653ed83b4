#include "icalendar/model/ics_file.h"

#include <algorithm>

namespace quorvel::icalendar {

const FloatingZone* IcsFile::floatingZoneOf(std::uint32_t calendar) const {
    const auto found = std::lower_bound(
        floatingZones.begin(), floatingZones.end(), calendar,
        [](const FloatingZone& zone, std::uint32_t one) { return zone.name.calendar < one; });
    return found != floatingZones.end() && found->name.calendar == calendar ? &*found : nullptr;
}

bool IcsFile::looksLikeOneEvent() const {
    if (events.empty() || calendarName || calendarColour) {
        return false;
    }
    const std::string_view first = slice(events.front().uid);
    return std::all_of(events.begin(), events.end(),
                       [&](const IcsEvent& event) { return slice(event.uid) == first; });
}

std::size_t IcsFile::sizeInMemory() const {
    const auto isOverride = [](const IcsEvent& event) { return event.recurrenceId.has_value(); };
    return sizeInMemory(
        static_cast<std::size_t>(std::count_if(events.begin(), events.end(), isOverride)));
}

std::size_t IcsFile::sizeInMemory(std::size_t overrides) const {
    constexpr std::size_t collectedEvent = 40; // among those with the same UID
    constexpr std::size_t collectedOverride = 176;
    return text.size() + events.size() * (sizeof(IcsEvent) + collectedEvent) +
           rules.size() * sizeof(RuleLine) + overrides * collectedOverride;
}

} // namespace quorvel::icalendar
