// The weeks, months or years that a recurrence rule counts its INTERVAL and BYSETPOS in (RFC 5545
// 3.3.10). BYWEEKNO numbers the weeks of a week year, so a yearly rule with it counts week years.
#pragma once

#include <cstdint>

#include "base/civil_calendar.h"
#include "icalendar/recurrence/recurrence_rule.h"

namespace quorvel::icalendar {

// Days since 1970-01-01, both included.
struct RulePeriod {
    std::int64_t firstDay = 0;
    std::int64_t lastDay = 0;
};

// The most days that a period of the rule has.
int longestPeriod(const RecurrenceRule& rule);

// Of a weekly, monthly or yearly rule, which must outlive it. Period 0 is that of the start.
class RulePeriods {
public:
    RulePeriods(const RecurrenceRule& rule, std::int64_t startDay);

    // The index of the period that the day lies in, or of one shortly before; at least 0.
    std::int64_t indexBefore(std::int64_t day) const;
    RulePeriod at(std::int64_t index) const;

private:
    std::int64_t firstDayOfYear(std::int64_t year) const;

    const RecurrenceRule& m_rule;
    std::int64_t m_startDay;
    CivilDay m_start;
    std::int64_t m_startYear; // a week year where the rule counts those
};

} // namespace quorvel::icalendar
