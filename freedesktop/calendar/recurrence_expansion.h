// What a recurrence rule comes to within a window. Everything here is a plain value in wall-clock
// time: zones, exceptions and overrides are the callers'.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "freedesktop/dates/time_zone.h"

namespace quorvel::freedesktop::ics {

struct RecurrenceRequest {
    std::string_view rule;   // the value of RRULE; its UNTIL is not looked at
    CivilTime start;         // of the first occurrence
    bool wholeDays = false;  // occurrences are dates
    bool startCounts = true; // the start is an occurrence, and the first, whatever the rule says
    std::optional<CivilTime> until; // the last reading that still belongs to it
    CivilTime from;                 // the window, both ends within
    CivilTime to;
    // Whether there is such a reading at all; those that there are not do not count. May be empty.
    std::function<bool(const CivilTime&)> exists;
    std::chrono::steady_clock::time_point deadline;
};

struct RecurrenceStarts {
    std::vector<CivilTime> starts; // sorted, no two the same
    std::string problem;           // empty, or why there may be fewer than the rule means
};

// Bounded in time and memory, whatever the rule says.
RecurrenceStarts expandRecurrence(const RecurrenceRequest& request);

} // namespace quorvel::freedesktop::ics
