// The occurrences of a recurrence rule within a window (RFC 5545 3.3.10), as local times. Zones,
// exceptions and overrides are not considered here; a local time that a clock skips is among the
// results.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/translatable_text.h"
#include "icalendar/recurrence/recurrence_rule.h"

namespace quorvel::icalendar {

// The steps of one call; they take a few milliseconds at most.
constexpr std::int64_t standardBudget = 200'000;

// Local times are seconds since 1970 as if they were UTC.
struct RecurrenceRequest {
    explicit RecurrenceRequest(const RecurrenceRule& recurrenceRule) // which outlives the request
        : rule(recurrenceRule) {}

    const RecurrenceRule& rule;
    std::int64_t start = 0;  // of the first occurrence
    bool wholeDays = false;  // occurrences are dates, at midnight
    bool startCounts = true; // the start is an occurrence, and the first, even where the rule does
                             // not give it; false: only what the rule gives
    std::optional<std::int64_t> until; // the last local time that may occur
    std::int64_t from = 0;             // the window, both ends within
    std::int64_t to = 0;
    // The local time itself, or a later one for a time that the clock skips. COUNT counts several
    // local times for which it is the same as one. May be empty: the clock skips none.
    std::function<std::int64_t(std::int64_t)> existingLocalTime;
    std::int64_t budget = standardBudget;
};

struct RecurrenceStarts {
    std::vector<std::int64_t> localTimes; // sorted, no two the same
    TranslatableText problem;             // empty, or why there may be fewer than the rule means
    std::int64_t stepsSpent = 0;
};

// Goes to the window by arithmetic, except where COUNT has to be counted; there are no occurrences
// before the year 1 or after the year 9999.
RecurrenceStarts expandRecurrence(const RecurrenceRequest& request);

// The last local time that COUNT leaves, whatever the window is.
struct CountEnd {
    std::int64_t lastLocalTime = 0;
    bool isCounted =
        false; // false: the budget was spent before; lastLocalTime is how far it reached
    std::int64_t stepsSpent = 0;
};

// Of a rule with COUNT.
CountEnd endOfCount(const RecurrenceRequest& request);

} // namespace quorvel::icalendar
