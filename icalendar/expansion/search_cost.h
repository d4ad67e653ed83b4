// How much the calendars of one search may cost.
#pragma once

#include <cstddef>
#include <cstdint>

namespace quorvel::icalendar {

// What one calendar of a search cost.
struct CalendarCost {
    std::int64_t steps = 0;
    std::size_t found = 0;    // occurrences
    std::size_t repeats = 0;  // those of them that are repeats
    bool isTruncated = false; // there were more than its share
};

// How much the calendars of one search may cost together. Of the steps of rules, beyond that each
// rule gets few only; of the occurrences, each calendar gets at most half of what those before it
// have left. So what is found depends on what was expanded before.
struct SearchCost {
    CalendarCost before; // of the calendars that are done
    CalendarCost calendar;

    void endCalendar();
    std::size_t mostFound() const; // by the calendar
    std::size_t mostRepeats() const;
    bool hasSpentSteps() const;
    // Whether what a calendar came to in another search is what it would come to now.
    bool allows(const CalendarCost& known) const;
};

} // namespace quorvel::icalendar
