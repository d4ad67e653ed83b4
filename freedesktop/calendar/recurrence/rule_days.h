// Which days a rule lets through: its BYMONTH, BYWEEKNO, BYYEARDAY, BYMONTHDAY and BYDAY, and what
// the start says where the rule is silent.
#pragma once

#include <cstdint>

#include "freedesktop/calendar/recurrence/recurrence_rule.h"
#include "freedesktop/dates/civil_calendar.h"

namespace quorvel::freedesktop::recurrence {

// Days are counted since 1970-01-01. A part that the frequency has no use for narrows nonetheless;
// a weekday's number counts in months and years only.
class RuleDays {
public:
    RuleDays(const RecurrenceRule& rule, std::int64_t startDay);

    bool includes(std::int64_t day) const;
    // Any day whatever, the frequency and the interval aside.
    bool includesAny() const;
    // Whether all days pass.
    bool includesAll() const { return m_passesAll; }
    // The first day after this one that may be included, by its month.
    std::int64_t nextCandidate(std::int64_t day) const;

private:
    bool includesMonthDay(const CivilDay& day) const;
    bool includesYearDay(std::int64_t dayNumber, const CivilDay& day) const;
    bool includesWeekday(std::int64_t dayNumber, const CivilDay& day) const;
    bool includesWeek(std::int64_t dayNumber) const;

    RecurrenceRule m_rule; // completed from the start
    bool m_countsInMonths;
    bool m_passesAll;
};

} // namespace quorvel::freedesktop::recurrence
