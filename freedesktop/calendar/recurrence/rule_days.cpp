#include "freedesktop/calendar/recurrence/rule_days.h"

namespace quorvel::freedesktop::recurrence {
namespace {

// 28 years around which no century leaps: every kind of year is among them, by its first weekday,
// its length and that of the year before.
constexpr std::int64_t cycleBegin = 730; // 1972-01-01
constexpr std::int64_t cycleEnd = 10957; // 2000-01-01

int monthLength(const CivilDay& day) {
    return static_cast<int>(dayNumber(day.year, day.month + 1, 1) -
                            dayNumber(day.year, day.month, 1));
}

// A weekday without a number, where numbers do not count.
void forgetNumbers(RecurrenceRule& rule) {
    for (std::size_t weekday = 1; weekday <= weekdays; ++weekday) {
        if (rule.numberedWeekdays[weekday].any()) {
            rule.weekdaysWithoutNumber.set(weekday);
        }
    }
    rule.hasNumberedWeekdays = false;
}

bool saysNoDay(const RecurrenceRule& rule) {
    return !rule.hasWeekdays() && !rule.monthDays.any() && !rule.yearDays.any();
}

void completeFromStart(RecurrenceRule& rule, std::int64_t startDay) {
    if (!saysNoDay(rule)) {
        return;
    }
    const CivilDay start = civilDay(startDay);
    const bool isYearly = rule.frequency == Frequency::yearly;
    if (rule.frequency == Frequency::weekly || (isYearly && rule.weeks.any())) {
        rule.weekdaysWithoutNumber.set(static_cast<std::size_t>(weekdayOf(startDay)));
    } else if (isYearly || (rule.frequency == Frequency::monthly && !rule.weeks.any())) {
        rule.monthDays.front.set(static_cast<std::size_t>(start.day));
        if (isYearly && rule.months.none()) {
            rule.months.set(static_cast<std::size_t>(start.month));
        }
    }
}

} // namespace

RuleDays::RuleDays(const RecurrenceRule& rule, std::int64_t startDay)
    : m_rule(rule) {
    const bool countsInYears = rule.frequency == Frequency::yearly && !rule.weeks.any();
    if (!countsInYears && rule.frequency != Frequency::monthly) {
        forgetNumbers(m_rule);
    }
    m_countsInMonths = rule.frequency == Frequency::monthly || rule.months.any();
    completeFromStart(m_rule, startDay);
    m_passesAll = saysNoDay(m_rule) && m_rule.months.none() && !m_rule.weeks.any();
}

bool RuleDays::includes(std::int64_t number) const {
    if (m_passesAll) {
        return true;
    }
    const CivilDay day = civilDay(number);
    return (m_rule.months.none() || m_rule.months[static_cast<std::size_t>(day.month)]) &&
           (!m_rule.monthDays.any() || includesMonthDay(day)) &&
           (!m_rule.hasWeekdays() || includesWeekday(number, day)) &&
           (!m_rule.yearDays.any() || includesYearDay(number, day)) &&
           (!m_rule.weeks.any() || includesWeek(number));
}

bool RuleDays::includesMonthDay(const CivilDay& day) const {
    return m_rule.monthDays.has(day.day, monthLength(day));
}

bool RuleDays::includesYearDay(std::int64_t number, const CivilDay& day) const {
    const std::int64_t newYear = dayNumber(day.year, 1, 1);
    return m_rule.yearDays.has(number - newYear + 1, dayNumber(day.year + 1, 1, 1) - newYear);
}

bool RuleDays::includesWeekday(std::int64_t number, const CivilDay& day) const {
    const auto weekday = static_cast<std::size_t>(weekdayOf(number));
    if (m_rule.weekdaysWithoutNumber[weekday]) {
        return true;
    }
    if (!m_rule.hasNumberedWeekdays || !m_rule.numberedWeekdays[weekday].any()) {
        return false;
    }
    const std::int64_t first = m_countsInMonths ? number - day.day + 1 : dayNumber(day.year, 1, 1);
    const std::int64_t end =
        m_countsInMonths ? first + monthLength(day) : dayNumber(day.year + 1, 1, 1);
    const std::int64_t before = (number - first) / weekdays;
    const std::int64_t after = (end - 1 - number) / weekdays;
    return m_rule.numberedWeekdays[weekday].has(before + 1, before + 1 + after);
}

// A week belongs to the year in which most of its days lie.
bool RuleDays::includesWeek(std::int64_t number) const {
    constexpr int middle = 3;
    const auto weekBegin = [this](std::int64_t day) {
        return day - (weekdayOf(day) - m_rule.weekStart + weekdays) % weekdays;
    };
    const std::int64_t middleDay = weekBegin(number) + middle;
    const std::int64_t year = civilDay(middleDay).year;
    const std::int64_t newYear = dayNumber(year, 1, 1);
    const std::int64_t lastMiddle = weekBegin(dayNumber(year, 12, 28)) + middle;
    return m_rule.weeks.has((middleDay - newYear) / weekdays + 1,
                            (lastMiddle - newYear) / weekdays + 1);
}

bool RuleDays::includesAny() const {
    for (std::int64_t day = cycleBegin; day < cycleEnd; day = nextCandidate(day)) {
        if (includes(day)) {
            return true;
        }
    }
    return false;
}

std::int64_t RuleDays::nextCandidate(std::int64_t number) const {
    if (m_rule.months.none()) {
        return number + 1;
    }
    CivilDay day = civilDay(number + 1);
    if (m_rule.months[static_cast<std::size_t>(day.month)]) {
        return number + 1;
    }
    do {
        ++day.month;
    } while (day.month <= 12 && !m_rule.months[static_cast<std::size_t>(day.month)]);
    return dayNumber(day.year, day.month, 1); // January is looked at like any other month
}

} // namespace quorvel::freedesktop::recurrence
