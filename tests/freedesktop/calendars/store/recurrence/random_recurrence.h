// Random recurrence rules, starts and search windows for property tests. Every function that
// returns a random value must be called inside rc::check, which owns the seed.
#pragma once

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include <rapidcheck.h>

#include "icalendar/recurrence/recurrence.h"

namespace quorvel::freedesktop {

struct NumberedWeekday {
    int number = 0;  // 0: every one
    int weekday = 0; // days since Sunday
};

// A rule before it is written as text.
struct RuleParts {
    icalendar::Frequency frequency = icalendar::Frequency::daily;
    std::int64_t interval = 1;
    std::int64_t count = 0; // 0: none
    int weekStart = 1;      // days since Sunday
    std::vector<int> months, weeks, yearDays, monthDays, hours, minutes, seconds, positions;
    std::vector<NumberedWeekday> weekdayParts;

    // Whether any part but the positions is present.
    bool hasParts() const;
    bool isBelowDay() const { return frequency < icalendar::Frequency::daily; }
};

// A rule with its start. Local times are seconds since 1970 as if they were UTC.
struct Case {
    RuleParts parts;
    icalendar::RecurrenceRule rule; // parsed from the text of `parts`
    std::int64_t start = 0;
    bool wholeDays = false;
    bool startCounts = true;
    std::optional<std::int64_t> until;
    int gap = 0; // the clock skips the hours whose number is divisible by this; 0: none

    std::int64_t randomLocalTime() const;
    // The local time that the clock shows instead of one that it skips.
    std::int64_t existingLocalTime(std::int64_t localTime) const;

    // The request refers to this case, which must outlive it.
    icalendar::RecurrenceRequest request(std::int64_t first, std::int64_t last) const;

    // The occurrences that expandRecurrence finds. Discards the case if there are too many.
    std::vector<std::int64_t> localTimes(std::int64_t first, std::int64_t last) const;
};

// Both ends are included.
rc::Gen<int> from(int least, int greatest);

// How far from the start a case is tested, in days: less for a finer frequency.
int spanOf(icalendar::Frequency frequency);

// Days since 1970; often near the ends of years and months, where rules differ most.
std::int64_t randomDay();

Case randomCase();

// Two local times around the start, in order.
std::pair<std::int64_t, std::int64_t> randomWindow(const Case& one);

// A rule with parts that its frequency may not use, long lists and huge numbers.
icalendar::RecurrenceRule hostileRule();

} // namespace quorvel::freedesktop
