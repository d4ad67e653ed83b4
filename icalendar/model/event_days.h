// The days that an event can touch (RFC 5545 3.8.2, 3.8.5), so that a search skips all other events
// without expanding them.
#pragma once

#include <cstdint>

#include "icalendar/model/ics_file.h"

namespace quorvel::icalendar {

// Days since 1970-01-01, both included.
struct DayRange {
    std::int32_t first = 0;
    std::int32_t last = 0;
};

// No occurrence of the event lies outside of these days, in whatever time zones its start, its end
// and the user are. A rule without UNTIL reaches to the end of time. The event's text and rules are
// those of the file. COUNT is followed only where expanding the event has nothing to report, which
// takes that all its zones are known.
DayRange daysOf(const IcsFile& file, const IcsEvent& event, bool zonesAreKnown);

} // namespace quorvel::icalendar
