// Expands recurrence rules day by day, with no regard to speed.
#include "tests/freedesktop/calendars/store/recurrence/recurrence_reference.h"

#include <algorithm>
#include <set>

#include "base/time_units.h"

namespace quorvel::freedesktop {

using icalendar::Frequency;
using std::chrono::days;
using std::chrono::sys_days;

namespace {

int yearOf(sys_days day) {
    return int(std::chrono::year_month_day(day).year());
}

sys_days newYear(int year) {
    return std::chrono::year(year) / 1 / 1;
}

int weekdayOf(sys_days day) {
    return static_cast<int>(std::chrono::weekday(day).c_encoding());
}

template <class T>
bool contains(const std::vector<T>& numbers, T number) {
    return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

bool passesOrdinal(const std::vector<int>& ordinals, sys_days day, sys_days begin, sys_days end) {
    return contains(ordinals, static_cast<int>((day - begin).count()) + 1) ||
           contains(ordinals, static_cast<int>((day - end).count()));
}

// The values of a part that adds times, or that of the start if the part is missing. Second 60 is
// never shown by a clock.
std::set<std::int64_t> expanded(const std::vector<int>& numbers, std::int64_t start) {
    std::set<std::int64_t> result(numbers.begin(), numbers.end());
    if (numbers.empty()) {
        result.insert(start);
    }
    result.erase(60);
    return result;
}

bool narrows(const std::vector<int>& numbers, std::int64_t value) {
    return !numbers.empty() && !contains(numbers, static_cast<int>(value));
}

} // namespace

Reference::Reference(const Case& one)
    : m_case(one)
    , m_rule(one.parts)
    , m_start(sys_days(days((one.start - one.start % secondsPerDay) / secondsPerDay))) {
    takeFromStart();
}

std::vector<std::int64_t> Reference::through(std::int64_t last) const {
    std::vector<std::int64_t> result;
    std::set<std::int64_t> countedTimes; // what COUNT counts
    if (m_case.startCounts && m_case.start <= m_case.until.value_or(m_case.start)) {
        result.push_back(m_case.start);
        countedTimes.insert(m_case.existingLocalTime(m_case.start));
    }
    for (const auto& [number, period] : periodsThrough(last)) {
        for (const std::int64_t localTime : picked(period)) {
            const bool isAfterStart =
                m_case.startCounts ? localTime > m_case.start : localTime >= m_case.start;
            if (!isAfterStart || localTime > m_case.until.value_or(last) || localTime > last) {
                continue;
            }
            if (m_rule.count > 0 && std::ssize(countedTimes) == m_rule.count) {
                return result;
            }
            result.push_back(localTime);
            countedTimes.insert(m_case.existingLocalTime(localTime));
        }
    }
    return result;
}

void Reference::takeFromStart() {
    if (!m_rule.weekdayParts.empty() || !m_rule.monthDays.empty() || !m_rule.yearDays.empty()) {
        return;
    }
    const std::chrono::year_month_day start(m_start);
    const bool isYearly = m_rule.frequency == Frequency::yearly;
    if (m_rule.frequency == Frequency::weekly || (isYearly && !m_rule.weeks.empty())) {
        m_rule.weekdayParts = {{0, weekdayOf(m_start)}};
    } else if (isYearly || m_rule.frequency == Frequency::monthly) {
        m_rule.monthDays = {static_cast<int>(unsigned(start.day()))};
        if (isYearly && m_rule.months.empty()) {
            m_rule.months = {static_cast<int>(unsigned(start.month()))};
        }
    }
}

Reference::Periods Reference::periodsThrough(std::int64_t last) const {
    Periods periods;
    const sys_days lastDay = sys_days(days(last / secondsPerDay));
    // The whole of the first and of the last period, so that positions in them are right.
    const bool isWhole = !m_rule.isBelowDay();
    const sys_days first = isWhole ? newYear(yearOf(m_start) - 1) - days(7) : m_start;
    const sys_days end = isWhole ? newYear(yearOf(lastDay) + 2) + days(7) : lastDay + days(1);
    for (sys_days day = first; day < end; day += days(1)) {
        if (passes(day)) {
            isWhole ? addTimes(day, periods) : addUnits(day, periods);
        }
    }
    return periods;
}

std::vector<std::int64_t> Reference::picked(const std::vector<std::int64_t>& period) const {
    if (m_rule.positions.empty()) {
        return period;
    }
    std::set<std::int64_t> result;
    const auto many = static_cast<int>(period.size());
    for (int i = 0; i < many; ++i) {
        if (contains(m_rule.positions, i + 1) || contains(m_rule.positions, i - many)) {
            result.insert(period[static_cast<std::size_t>(i)]);
        }
    }
    return {result.begin(), result.end()};
}

// -- days

sys_days Reference::weekBegin(sys_days day) const {
    while (weekdayOf(day) != m_rule.weekStart) {
        day -= days(1);
    }
    return day;
}

// The first week that has four days or more in the year.
sys_days Reference::firstWeek(int year) const {
    const sys_days begin = weekBegin(newYear(year));
    return begin + days(7) - newYear(year) >= days(4) ? begin : begin + days(7);
}

int Reference::weekYear(sys_days day) const {
    int year = yearOf(day) + 1;
    while (firstWeek(year) > day) {
        --year;
    }
    return year;
}

bool Reference::passesWeek(sys_days day) const {
    const int year = weekYear(day);
    const auto number = static_cast<int>((day - firstWeek(year)).count() / 7) + 1;
    const auto many = static_cast<int>((firstWeek(year + 1) - firstWeek(year)).count() / 7);
    return contains(m_rule.weeks, number) || contains(m_rule.weeks, number - many - 1);
}

bool Reference::passesWeekday(sys_days day, sys_days begin, sys_days end) const {
    int fromFront = 0;
    int fromBack = 0;
    for (sys_days other = begin; other < end; other += days(1)) {
        const bool isSame = weekdayOf(other) == weekdayOf(day);
        fromFront += isSame && other <= day ? 1 : 0;
        fromBack -= isSame && other >= day ? 1 : 0;
    }
    return std::any_of(
        m_rule.weekdayParts.begin(), m_rule.weekdayParts.end(), [&](const NumberedWeekday& part) {
            return part.weekday == weekdayOf(day) &&
                   (part.number == 0 || part.number == fromFront || part.number == fromBack);
        });
}

bool Reference::passes(sys_days day) const {
    const std::chrono::year_month_day civil(day);
    const sys_days month = civil.year() / civil.month() / 1;
    const sys_days monthEnd = sys_days(civil.year() / civil.month() / std::chrono::last) + days(1);
    const sys_days year = newYear(yearOf(day));
    const sys_days yearEnd = newYear(yearOf(day) + 1);
    const bool countsInMonths = m_rule.frequency == Frequency::monthly || !m_rule.months.empty();
    return (m_rule.months.empty() ||
            contains(m_rule.months, static_cast<int>(unsigned(civil.month())))) &&
           (m_rule.weeks.empty() || passesWeek(day)) &&
           (m_rule.yearDays.empty() || passesOrdinal(m_rule.yearDays, day, year, yearEnd)) &&
           (m_rule.monthDays.empty() || passesOrdinal(m_rule.monthDays, day, month, monthEnd)) &&
           (m_rule.weekdayParts.empty() || (countsInMonths ? passesWeekday(day, month, monthEnd)
                                                           : passesWeekday(day, year, yearEnd)));
}

std::int64_t Reference::periodNumber(sys_days day) const {
    const std::chrono::year_month_day civil(day);
    const std::chrono::year_month_day start(m_start);
    switch (m_rule.frequency) {
    case Frequency::yearly:
        return m_rule.weeks.empty() ? (civil.year() - start.year()).count()
                                    : weekYear(day) - weekYear(m_start);
    case Frequency::monthly:
        return (civil.year() / civil.month() - start.year() / start.month()).count();
    case Frequency::weekly:
        return (weekBegin(day) - weekBegin(m_start)).count() / 7;
    default:
        return (day - m_start).count();
    }
}

// -- times

std::int64_t Reference::startTime() const {
    return m_case.start % secondsPerDay;
}

void Reference::addTimes(sys_days day, Periods& periods) const {
    const std::int64_t number = periodNumber(day);
    if (number < 0 || number % m_rule.interval != 0) {
        return;
    }
    const std::int64_t midnight = day.time_since_epoch().count() * secondsPerDay;
    auto& period = periods[number];
    if (m_case.wholeDays) {
        period.push_back(midnight);
        return;
    }
    for (const std::int64_t hour : expanded(m_rule.hours, startTime() / 3600)) {
        for (const std::int64_t minute : expanded(m_rule.minutes, startTime() / 60 % 60)) {
            for (const std::int64_t second : expanded(m_rule.seconds, startTime() % 60)) {
                period.push_back(midnight + hour * 3600 + minute * 60 + second);
            }
        }
    }
}

// Every hour, minute or second of the day.
void Reference::addUnits(sys_days day, Periods& periods) const {
    const Frequency frequency = m_rule.frequency;
    const std::int64_t unit = frequency == Frequency::hourly     ? 3600
                              : frequency == Frequency::minutely ? 60
                                                                 : 1;
    const std::int64_t firstUnit = m_case.start - m_case.start % unit;
    for (std::int64_t time = 0; time < secondsPerDay; time += unit) {
        const std::int64_t localTime = day.time_since_epoch().count() * secondsPerDay + time;
        const std::int64_t number = (localTime - firstUnit) / unit;
        if (localTime < firstUnit || number % m_rule.interval != 0 ||
            narrows(m_rule.hours, time / 3600) ||
            (unit <= 60 && narrows(m_rule.minutes, time / 60 % 60)) ||
            (unit == 1 && narrows(m_rule.seconds, time % 60))) {
            continue;
        }
        auto& period = periods[number];
        const auto minutes = unit == 3600 ? expanded(m_rule.minutes, startTime() / 60 % 60)
                                          : std::set<std::int64_t>{0};
        const auto seconds =
            unit >= 60 ? expanded(m_rule.seconds, startTime() % 60) : std::set<std::int64_t>{0};
        for (const std::int64_t minute : minutes) {
            for (const std::int64_t second : seconds) {
                period.push_back(localTime + minute * 60 + second);
            }
        }
    }
}

} // namespace quorvel::freedesktop
