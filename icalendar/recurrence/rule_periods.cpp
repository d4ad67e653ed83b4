#include "icalendar/recurrence/rule_periods.h"

#include <algorithm>

#include "base/integer_division.h"
#include "icalendar/recurrence/rule_days.h"

namespace quorvel::icalendar {
namespace {

bool hasWeekYears(const RecurrenceRule& rule) {
    return rule.frequency == Frequency::yearly && rule.weeks.any();
}

} // namespace

int longestPeriod(const RecurrenceRule& rule) {
    switch (rule.frequency) {
    case Frequency::yearly:
        return hasWeekYears(rule) ? 53 * weekdays : 366;
    case Frequency::monthly:
        return 31;
    case Frequency::weekly:
        return weekdays;
    default:
        return 1;
    }
}

RulePeriods::RulePeriods(const RecurrenceRule& rule, std::int64_t startDay)
    : m_rule(rule)
    , m_startDay(startDay)
    , m_start(civilDay(startDay))
    , m_startYear(hasWeekYears(rule) ? weekYearOf(startDay, rule.weekStart) : m_start.year) {}

std::int64_t RulePeriods::indexBefore(std::int64_t day) const {
    std::int64_t periods = 0;
    if (m_rule.frequency == Frequency::weekly) {
        periods = floorDivision(day - m_startDay, weekdays);
    } else if (hasWeekYears(m_rule)) {
        periods = weekYearOf(day, m_rule.weekStart) - m_startYear;
    } else {
        const CivilDay date = civilDay(day);
        periods = date.year - m_startYear;
        if (m_rule.frequency == Frequency::monthly) {
            periods = periods * 12 + date.month - m_start.month;
        }
    }
    return std::max<std::int64_t>(floorDivision(periods, m_rule.interval), 0);
}

RulePeriod RulePeriods::at(std::int64_t index) const {
    constexpr std::int64_t farthest = 10'000 * 12; // months
    const std::int64_t step = std::min(index * m_rule.interval, farthest);
    switch (m_rule.frequency) {
    case Frequency::yearly:
        return {firstDayOfYear(m_startYear + step), firstDayOfYear(m_startYear + step + 1) - 1};
    case Frequency::monthly:
        return {dayNumber(m_start.year, m_start.month + step, 1),
                dayNumber(m_start.year, m_start.month + step + 1, 1) - 1};
    default: {
        const int intoWeek = (weekdayOf(m_startDay) - m_rule.weekStart + weekdays) % weekdays;
        const std::int64_t first = m_startDay - intoWeek + index * m_rule.interval * weekdays;
        return {first, first + weekdays - 1};
    }
    }
}

std::int64_t RulePeriods::firstDayOfYear(std::int64_t year) const {
    return hasWeekYears(m_rule) ? firstDayOfWeekYear(year, m_rule.weekStart)
                                : dayNumber(year, 1, 1);
}

} // namespace quorvel::icalendar
