// A month is a set of bits. Parts that decide about all of its days at once come first; those that
// examine each day examine only the days that are left.
#include "icalendar/recurrence/rule_days.h"

namespace quorvel::icalendar {
namespace {

// 28 years around which no century leaps: every kind of year is among them, by its first weekday,
// its length and that of the year before.
constexpr std::int64_t cycleBegin = 730; // 1972-01-01
constexpr std::int64_t cycleEnd = 10957; // 2000-01-01
constexpr int longestMonth = 31;

int lowestBit(std::uint32_t bits) {
    return __builtin_ctz(bits);
}

template <class Includes>
std::uint32_t matchingBits(std::uint32_t bits, Includes includes) {
    for (std::uint32_t rest = bits; rest != 0; rest &= rest - 1) {
        if (!includes(lowestBit(rest))) {
            bits &= ~(rest & -rest);
        }
    }
    return bits;
}

} // namespace

std::int64_t firstDayOfWeekYear(std::int64_t year, int weekStart) {
    const std::int64_t fourth = dayNumber(year, 1, 4);
    return fourth - (weekdayOf(fourth) - weekStart + weekdays) % weekdays;
}

std::int64_t weekYearOf(std::int64_t day, int weekStart) {
    const std::int64_t year = civilDay(day).year;
    if (day < firstDayOfWeekYear(year, weekStart)) {
        return year - 1;
    }
    return day < firstDayOfWeekYear(year + 1, weekStart) ? year : year + 1;
}

RuleDays::RuleDays(const RecurrenceRule& rule, std::int64_t startDay)
    : m_rule(rule)
    , m_months(static_cast<unsigned>(rule.months.to_ulong()))
    , m_monthDays(static_cast<Bits>(rule.monthDays.front.to_ulong() >> 1))
    , m_weekdays(static_cast<unsigned>(rule.weekdaysWithoutNumber.to_ulong() >> 1))
    , m_hasMonthDays(rule.monthDays.any())
    , m_hasWeekdays(rule.hasWeekdays()) {
    for (std::size_t fromBack = 1; fromBack <= longestMonth; ++fromBack) {
        if (rule.monthDays.back[fromBack]) {
            m_monthDaysFromBack |= Bits{1} << (longestMonth - fromBack);
        }
    }
    m_countsInMonths =
        rule.frequency == Frequency::monthly ||
        (rule.frequency == Frequency::yearly && !rule.weeks.any() && rule.months.any());
    m_countsInYears =
        rule.frequency == Frequency::yearly && !rule.weeks.any() && !rule.months.any();
    if (rule.hasNumberedWeekdays && !m_countsInMonths && !m_countsInYears) {
        for (std::size_t weekday = 1; weekday <= weekdays; ++weekday) {
            m_weekdays |= rule.numberedWeekdays[weekday].any() ? 1U << (weekday - 1) : 0U;
        }
    }
    completeFromStart(startDay);
}

void RuleDays::completeFromStart(std::int64_t startDay) {
    if (m_hasWeekdays || m_hasMonthDays || m_rule.yearDays.any()) {
        return;
    }
    const CivilDay start = civilDay(startDay);
    const bool isYearly = m_rule.frequency == Frequency::yearly;
    if (m_rule.frequency == Frequency::weekly || (isYearly && m_rule.weeks.any())) {
        m_hasWeekdays = true;
        m_weekdays = 1U << (weekdayOf(startDay) - 1);
    } else if (isYearly || (m_rule.frequency == Frequency::monthly && !m_rule.weeks.any())) {
        m_hasMonthDays = true;
        m_monthDays = Bits{1} << (start.day - 1);
        if (isYearly && m_months == 0) {
            m_months = 1U << start.month;
        }
    }
}

bool RuleDays::includes(std::int64_t day) {
    computeMonthOf(day);
    return (m_bits >> (day - m_monthBegin) & 1U) != 0;
}

std::int64_t RuleDays::nextCandidate(std::int64_t day) {
    computeMonthOf(day);
    if (const Bits rest = m_bits >> (day - m_monthBegin)) {
        return day + lowestBit(rest);
    }
    std::int64_t next = m_monthEnd;
    std::int64_t year = m_month.year;
    int month = m_month.month;
    while (m_months != 0) {
        month = month % 12 + 1;
        year += month == 1 ? 1 : 0;
        if ((m_months >> month & 1U) != 0) {
            break;
        }
        next += daysInMonth(year, month);
    }
    return next;
}

bool RuleDays::includesAny() {
    for (std::int64_t day = cycleBegin; day < cycleEnd; day = nextCandidate(day)) {
        if (includes(day)) {
            return true;
        }
    }
    return false;
}

void RuleDays::computeMonthOf(std::int64_t day) {
    if (knowsMonthOf(day)) {
        return;
    }
    m_month = civilDay(day);
    m_monthBegin = day - m_month.day + 1;
    m_monthEnd = m_monthBegin + daysInMonth(m_month.year, m_month.month);
    if (m_yearLength == 0 || m_year != m_month.year) {
        computeYear();
    }
    m_bits = bitsOfMonth();
}

void RuleDays::computeYear() {
    m_year = m_month.year;
    m_newYear = dayNumber(m_year, 1, 1);
    m_yearLength = dayNumber(m_year + 1, 1, 1) - m_newYear;
    if (m_rule.weeks.any()) {
        for (int i = 0; i < 4; ++i) {
            m_firstWeeks[i] = firstDayOfWeekYear(m_year - 1 + i, m_rule.weekStart);
        }
    }
}

RuleDays::Bits RuleDays::bitsOfMonth() const {
    if (m_months != 0 && (m_months >> m_month.month & 1U) == 0) {
        return 0;
    }
    const auto length = static_cast<int>(m_monthEnd - m_monthBegin);
    Bits bits = ~Bits{0} >> (32 - length);
    if (m_hasMonthDays) {
        bits &= monthDayBits();
    }
    if (m_hasWeekdays) {
        bits &= weekdayBits();
    }
    if (m_rule.yearDays.any()) {
        bits = matchingBits(bits, [this](int day) { return includesYearDay(m_monthBegin + day); });
    }
    if (m_rule.weeks.any()) {
        bits = matchingBits(bits, [this](int day) { return includesWeek(m_monthBegin + day); });
    }
    return bits;
}

RuleDays::Bits RuleDays::monthDayBits() const {
    return m_monthDays | m_monthDaysFromBack >> (longestMonth - (m_monthEnd - m_monthBegin));
}

RuleDays::Bits RuleDays::weekdayBits() const {
    constexpr std::uint64_t everySeventh = 0x8'1020'4081; // of six weeks
    const int first = weekdayOf(m_monthBegin) - 1;
    auto bits = static_cast<Bits>(m_weekdays * everySeventh >> first);
    if (!m_countsInMonths && !m_countsInYears) {
        return bits;
    }
    for (int weekday = 0; weekday < weekdays; ++weekday) {
        const auto& numbers = m_rule.numberedWeekdays[static_cast<std::size_t>(weekday) + 1];
        if (numbers.any()) {
            const auto all = static_cast<Bits>((1U << weekday) * everySeventh >> first);
            const auto length = static_cast<int>(m_monthEnd - m_monthBegin);
            bits |= matchingBits(all & ~Bits{0} >> (32 - length),
                                 [&](int day) { return hasNumber(numbers, m_monthBegin + day); });
        }
    }
    return bits;
}

bool RuleDays::hasNumber(const Ordinals<53>& numbers, std::int64_t day) const {
    const std::int64_t before = day - (m_countsInMonths ? m_monthBegin : m_newYear);
    const std::int64_t after = (m_countsInMonths ? m_monthEnd : m_newYear + m_yearLength) - 1 - day;
    const std::int64_t number = before / weekdays + 1;
    return numbers.has(number, number + after / weekdays);
}

bool RuleDays::includesYearDay(std::int64_t day) const {
    return m_rule.yearDays.has(day - m_newYear + 1, m_yearLength);
}

bool RuleDays::includesWeek(std::int64_t day) const {
    const std::size_t year = day < m_firstWeeks[1] ? 0 : day < m_firstWeeks[2] ? 1 : 2;
    return m_rule.weeks.has((day - m_firstWeeks[year]) / weekdays + 1,
                            (m_firstWeeks[year + 1] - m_firstWeeks[year]) / weekdays);
}

} // namespace quorvel::icalendar
