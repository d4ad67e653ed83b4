// How much the expansion of recurrence sets (RFC 5545 3.8.5) may cost in one search, so that
// hostile rules cost bounded time and memory.
#pragma once

#include <cstddef>
#include <cstdint>

namespace quorvel::icalendar {

// What the expansion of one calendar cost.
struct CalendarCost {
    std::int64_t steps = 0;
    std::size_t found = 0;    // occurrences
    std::size_t repeats = 0;  // those of them that are repeats
    bool isTruncated = false; // it has more occurrences than its share
};

// A budget for all calendars of one search. Once its steps are spent, each further rule gets few
// steps only. Of the occurrences each calendar gets at most half of those that the calendars before
// it have left, so the result depends on the order of the calendars. For one thread.
struct SearchCost {
    CalendarCost before;   // the sum of the calendars that are expanded
    CalendarCost calendar; // of the calendar that is being expanded

    void endCalendar();
    std::size_t mostFound() const;   // occurrences of the calendar
    std::size_t mostRepeats() const; // of these, those of repeated events
    bool hasSpentSteps() const;
    // Whether the occurrences of a calendar that another search found at this cost are also those
    // that this search would find now.
    bool allows(const CalendarCost& known) const;
};

} // namespace quorvel::icalendar
