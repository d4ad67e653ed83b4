// How long an event lasts (RFC 5545 3.6.1, 3.3.6, 3.8.2.2, 3.8.2.5).
#pragma once

#include <cstdint>

#include "icalendar/expansion/event_clocks.h"

namespace quorvel::icalendar {

inline constexpr std::int64_t mostDaysOfAnEvent = 4'000'000;

// Both parts are at least 0.
struct EventLength {
    std::int64_t days = 0; // nominal: to the same local time
    std::int64_t seconds = 0;
};

// By DTEND or DURATION. An event of dates lasts at least a day; a length that is not positive is 0.
EventLength lengthOf(EventClocks& clocks, LoadedFile& file, const IcsEvent& event);

// The instant at which an occurrence ends, in seconds since 1970; not before its start. Of dates it
// is 23:59:59 of the last day, in the user's zone.
std::int64_t endOf(EventClocks& clocks, LoadedFile& file, const EventTime& start,
                   std::int64_t startInstant, const EventLength& length);

} // namespace quorvel::icalendar
