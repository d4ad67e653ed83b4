// Which days a rule admits (RFC 5545 3.3.10): its BYMONTH, BYWEEKNO, BYYEARDAY, BYMONTHDAY and
// BYDAY, completed by the day of the start.
#pragma once

#include <cstdint>

#include "base/civil_calendar.h"
#include "icalendar/recurrence/recurrence_rule.h"

namespace quorvel::icalendar {

// Week years of ISO 8601, for weeks that begin on any weekday (1 is Sunday). Days are counted since
// 1970-01-01. Week 1 is the first week that has at least four of its days in the calendar year, so
// a week year begins up to three days before that year or after its beginning.
std::int64_t firstDayOfWeekYear(std::int64_t year, int weekStart);
std::int64_t weekYearOf(std::int64_t day, int weekStart);

// Days are counted since 1970-01-01. A part that RFC 5545 does not allow at the frequency limits
// the days nonetheless; a weekday's number counts in months and years only. Computes a month at a
// time and caches the latest one. For one thread.
class RuleDays {
public:
    RuleDays(const RecurrenceRule& rule, std::int64_t startDay); // the rule outlives it

    // False: the next call for this day computes its month.
    bool knowsMonthOf(std::int64_t day) const { return day >= m_monthBegin && day < m_monthEnd; }
    bool includes(std::int64_t day);
    // The first included day of this month from this one on; or, where there is none, the first day
    // of the next month that may have one.
    std::int64_t nextCandidate(std::int64_t day);
    // Whether it includes any day at all; the interval is not considered.
    bool includesAny();

private:
    using Bits = std::uint32_t; // of a month's days, the first one lowest

    void completeFromStart(std::int64_t startDay);
    void computeMonthOf(std::int64_t day);
    void computeYear();
    Bits bitsOfMonth() const;
    Bits monthDayBits() const;
    Bits weekdayBits() const;
    bool hasNumber(const Ordinals<53>& numbers, std::int64_t day) const;
    bool includesYearDay(std::int64_t day) const;
    bool includesWeek(std::int64_t day) const;

    const RecurrenceRule& m_rule;
    bool m_countsInYears = false; // the numbers of weekdays
    bool m_countsInMonths = false;
    // Of the rule, or of its start.
    unsigned m_months = 0; // January is bit 1; 0: all
    Bits m_monthDays = 0;
    Bits m_monthDaysFromBack = 0; // the last day of 31 is bit 30
    unsigned m_weekdays = 0;      // Sunday is bit 0; those without a number
    bool m_hasMonthDays = false;
    bool m_hasWeekdays = false;

    // The latest month.
    CivilDay m_month;
    std::int64_t m_monthBegin = 0;
    std::int64_t m_monthEnd = 0;
    Bits m_bits = 0;
    // Its year.
    std::int64_t m_year = 0;
    std::int64_t m_newYear = 0;
    std::int64_t m_yearLength = 0; // 0: no month was computed yet
    // Where the first weeks of the year before, of it, and of the two after begin.
    std::int64_t m_firstWeeks[4] = {};
};

} // namespace quorvel::icalendar
