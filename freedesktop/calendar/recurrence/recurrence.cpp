// Periods of the rule's frequency follow each other; each gives its days, the days their times, and
// BYSETPOS picks among them. Rules below a day walk their hours, minutes or seconds instead, and
// leap over what the coarser parts shut out.
#include "freedesktop/calendar/recurrence/recurrence.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <utility>

#include "freedesktop/calendar/recurrence/rule_days.h"
#include "freedesktop/dates/civil_calendar.h"

namespace quorvel::freedesktop::recurrence {
namespace {

constexpr std::int64_t secondsPerMinute = 60;
constexpr std::int64_t secondsPerHour = 3600;
constexpr std::int64_t secondsPerDay = 86400;
constexpr std::int64_t firstReading = -62135596800; // 0001-01-01T00:00:00
constexpr std::int64_t lastReading = 253402300799;  // 9999-12-31T23:59:59
constexpr std::size_t mostReadings = 100'000;
// After so many steps without an occurrence it is worth asking whether there will ever be one.
constexpr std::int64_t barrenSteps = 2'000;

std::int64_t floorDivision(std::int64_t value, std::int64_t divisor) {
    const std::int64_t quotient = value / divisor;
    return value % divisor < 0 ? quotient - 1 : quotient;
}

std::int64_t ceilingDivision(std::int64_t value, std::int64_t divisor) {
    return -floorDivision(-value, divisor);
}

// Seconds of the unit that the frequency counts in; 0 for months and years.
std::int64_t unitOf(Frequency frequency) {
    switch (frequency) {
    case Frequency::secondly:
        return 1;
    case Frequency::minutely:
        return secondsPerMinute;
    case Frequency::hourly:
        return secondsPerHour;
    case Frequency::daily:
        return secondsPerDay;
    case Frequency::weekly:
        return weekdays * secondsPerDay;
    case Frequency::monthly:
    case Frequency::yearly:
        return 0;
    }
    return 0;
}

bool isBelowDay(Frequency frequency) {
    return frequency < Frequency::daily;
}

// An occurrence every so many seconds, and nothing else.
bool isPlain(const RecurrenceRule& rule, bool wholeDays) {
    return rule.frequency <= Frequency::weekly && !rule.hasDateParts() && rule.positions.empty() &&
           (wholeDays || !rule.hasTimeParts());
}

// The numbers of a set, or the one that stands in for an empty set. 60 is no second here.
template <std::size_t Size>
std::vector<std::int64_t> numbersOf(const std::bitset<Size>& set, std::int64_t standIn) {
    std::vector<std::int64_t> numbers;
    for (std::size_t number = 0; number < std::min<std::size_t>(Size, 60); ++number) {
        if (set[number] || (set.none() && static_cast<std::int64_t>(number) == standIn)) {
            numbers.push_back(static_cast<std::int64_t>(number));
        }
    }
    return numbers;
}

class Expansion {
public:
    explicit Expansion(const RecurrenceRequest& request)
        : m_request(request)
        , m_rule(request.rule)
        , m_from(std::max(request.from, firstReading))
        , m_to(std::min({request.to, request.until.value_or(lastReading), lastReading}))
        , m_startDay(floorDivision(request.start, secondsPerDay))
        , m_timeOfDay(request.start - m_startDay * secondsPerDay)
        , m_canLeap(!request.rule.count && request.from > request.start) {}

    CountEnd count() {
        m_from = lastReading; // nothing is kept
        m_to = std::min(m_request.until.value_or(lastReading), lastReading);
        m_canLeap = false;
        m_lastCounted = m_request.start;
        const RecurrenceStarts walked = run();
        return {m_lastCounted, walked.problem.empty(), walked.stepsSpent};
    }

    RecurrenceStarts run() {
        if (m_request.startCounts) {
            m_counted = 1;
            keep(m_request.start);
        }
        if (m_to < m_request.start || !mayGoOn()) {
            return std::move(m_result);
        }
        if (m_request.wholeDays && isBelowDay(m_rule.frequency)) {
            m_result.problem = "whole days cannot recur within a day";
        } else if (isPlain(m_rule, m_request.wholeDays)) {
            walkSteps(m_rule.interval * unitOf(m_rule.frequency));
        } else {
            m_days.emplace(m_rule, m_startDay);
            isBelowDay(m_rule.frequency) ? walkUnits() : walkPeriods();
        }
        return std::move(m_result);
    }

private:
    struct Period {
        std::int64_t firstDay = 0;
        std::int64_t lastDay = 0;
    };

    // ---- plain rules

    void walkSteps(std::int64_t step) {
        if (m_rule.count && !m_request.exists) { // whose end is a matter of arithmetic
            const std::int64_t last = *m_rule.count - (m_request.startCounts ? 1 : 0);
            m_to = std::min(m_to, m_request.start + std::min(last, lastReading / step) * step);
            m_canLeap = m_from > m_request.start;
            m_lastCounted = m_to;
        }
        std::int64_t reading = m_request.start;
        if (m_canLeap) {
            reading += (m_from - reading + step - 1) / step * step;
        }
        for (; reading <= m_to && spend(1); reading += step) {
            if (!offer(reading)) {
                return;
            }
        }
    }

    // ---- days and longer periods

    void walkPeriods() {
        for (std::int64_t index = firstPeriod();; ++index) {
            const Period period = periodAt(index);
            if (period.firstDay > floorDivision(m_to, secondsPerDay) || !spend(1)) {
                return;
            }
            if (!(m_rule.positions.empty() ? offerDays(period) : offerPositions(period))) {
                return;
            }
        }
    }

    // The index of the period that the window begins in, or of one shortly before.
    std::int64_t firstPeriod() const {
        if (!m_canLeap) {
            return 0;
        }
        const std::int64_t fromDay = floorDivision(m_from, secondsPerDay);
        std::int64_t periods = 0;
        if (const std::int64_t unit = unitOf(m_rule.frequency)) {
            periods = floorDivision((fromDay - m_startDay) * secondsPerDay, unit);
        } else {
            const CivilDay from = civilDay(fromDay);
            const CivilDay start = civilDay(m_startDay);
            periods = from.year - start.year;
            if (m_rule.frequency == Frequency::monthly) {
                periods = periods * 12 + from.month - start.month;
            }
        }
        return std::max<std::int64_t>(floorDivision(periods, m_rule.interval), 0);
    }

    Period periodAt(std::int64_t index) const {
        constexpr std::int64_t farthest = 10'000 * 12; // months
        switch (m_rule.frequency) {
        case Frequency::yearly:
        case Frequency::monthly: {
            const std::int64_t step = std::min(index * m_rule.interval, farthest);
            const CivilDay start = civilDay(m_startDay);
            return m_rule.frequency == Frequency::yearly
                       ? Period{dayNumber(start.year + step, 1, 1),
                                dayNumber(start.year + step + 1, 1, 1) - 1}
                       : Period{dayNumber(start.year, start.month + step, 1),
                                dayNumber(start.year, start.month + step + 1, 1) - 1};
        }
        case Frequency::weekly: {
            const int intoWeek = (weekdayOf(m_startDay) - m_rule.weekStart + weekdays) % weekdays;
            const std::int64_t first = m_startDay - intoWeek + index * m_rule.interval * weekdays;
            return {first, first + weekdays - 1};
        }
        default: {
            const std::int64_t day = m_startDay + index * m_rule.interval;
            return {day, day};
        }
        }
    }

    bool offerDays(const Period& period) {
        std::int64_t first = std::max(period.firstDay, m_startDay);
        if (m_canLeap) {
            first = std::max(first, floorDivision(m_from, secondsPerDay));
        }
        const std::int64_t last = std::min(period.lastDay, floorDivision(m_to, secondsPerDay));
        for (std::int64_t day = first; day <= last; day = m_days->nextCandidate(day)) {
            if (!spend(1)) {
                return false;
            }
            if (m_days->includes(day) && !offerTimes(day)) {
                return false;
            }
        }
        return true;
    }

    bool offerTimes(std::int64_t day) {
        for (const std::int64_t time : times()) {
            if (!offer(day * secondsPerDay + time)) {
                return false;
            }
        }
        return true;
    }

    // The times of a day, sorted.
    const std::vector<std::int64_t>& times() {
        if (!m_times.empty() || m_hasNoTimes) {
            return m_times;
        }
        if (m_request.wholeDays || !m_rule.hasTimeParts()) {
            m_times = {m_request.wholeDays ? 0 : m_timeOfDay};
            return m_times;
        }
        const auto minutes = numbersOf(m_rule.minutes, m_timeOfDay / secondsPerMinute % 60);
        const auto seconds = numbersOf(m_rule.seconds, m_timeOfDay % secondsPerMinute);
        for (const std::int64_t hour : numbersOf(m_rule.hours, m_timeOfDay / secondsPerHour)) {
            for (const std::int64_t minute : minutes) {
                for (const std::int64_t second : seconds) {
                    m_times.push_back(hour * secondsPerHour + minute * secondsPerMinute + second);
                }
            }
        }
        m_hasNoTimes = m_times.empty();
        return m_times;
    }

    bool offerPositions(const Period& period) {
        m_found.clear();
        for (std::int64_t day = period.firstDay; day <= period.lastDay;
             day = m_days->nextCandidate(day)) {
            if (!spend(1)) {
                return false;
            }
            if (m_days->includes(day)) {
                m_found.push_back(day * secondsPerDay);
            }
        }
        const auto& timesOfDay = times();
        const std::size_t perDay = timesOfDay.size();
        return offerPicked(m_found.size() * perDay, [&](std::size_t index) {
            return m_found[index / perDay] + timesOfDay[index % perDay];
        });
    }

    // Of so many readings those that BYSETPOS names.
    template <class ReadingAt>
    bool offerPicked(std::size_t size, ReadingAt readingAt) {
        const auto many = static_cast<std::int64_t>(size);
        std::vector<std::int64_t> indices;
        for (const int position : m_rule.positions) {
            const std::int64_t index = position > 0 ? position - 1 : many + position;
            if (index >= 0 && index < many) {
                indices.push_back(index);
            }
        }
        std::sort(indices.begin(), indices.end());
        indices.erase(std::unique(indices.begin(), indices.end()), indices.end());
        return spend(static_cast<std::int64_t>(m_rule.positions.size())) &&
               std::all_of(indices.begin(), indices.end(), [&](std::int64_t index) {
                   return offer(readingAt(static_cast<std::size_t>(index)));
               });
    }

    // ---- hours, minutes, seconds

    void walkUnits() {
        const std::int64_t unit = unitOf(m_rule.frequency);
        m_step = unit * m_rule.interval;
        m_firstUnit = floorDivision(m_request.start, unit) * unit;
        std::int64_t index =
            m_canLeap ? std::max<std::int64_t>(floorDivision(m_from - m_firstUnit, m_step), 0) : 0;
        while (true) {
            const std::int64_t begin = m_firstUnit + index * m_step;
            if (begin > m_to || !spend(1)) {
                return;
            }
            if (const auto next = shutUntil(begin)) {
                index = std::max(index + 1, ceilingDivision(*next - m_firstUnit, m_step));
                continue;
            }
            if (!offerUnit(begin)) {
                return;
            }
            ++index;
        }
    }

    // Where the coarser parts shut the reading out: from when on they may not.
    std::optional<std::int64_t> shutUntil(std::int64_t reading) {
        const std::int64_t day = floorDivision(reading, secondsPerDay);
        if (day != m_knownDay) {
            m_knownDay = day;
            m_isKnownDayIncluded = m_days->includes(day);
        }
        if (!m_isKnownDayIncluded) {
            return m_days->nextCandidate(day) * secondsPerDay;
        }
        const std::int64_t time = reading - day * secondsPerDay;
        const auto hour = static_cast<std::size_t>(time / secondsPerHour);
        if (m_rule.hours.any() && !m_rule.hours[hour]) {
            return reading - time % secondsPerHour + secondsPerHour;
        }
        const auto minute = static_cast<std::size_t>(time / secondsPerMinute % 60);
        if (m_rule.frequency <= Frequency::minutely && m_rule.minutes.any() &&
            !m_rule.minutes[minute]) {
            return reading - time % secondsPerMinute + secondsPerMinute;
        }
        const auto second = static_cast<std::size_t>(time % secondsPerMinute);
        if (m_rule.frequency == Frequency::secondly && m_rule.seconds.any() &&
            !m_rule.seconds[second]) {
            return reading + 1;
        }
        return std::nullopt;
    }

    // What the finer parts make of one hour, minute or second.
    bool offerUnit(std::int64_t begin) {
        if (m_rule.frequency == Frequency::secondly) {
            m_found = {begin};
        } else {
            m_found.clear();
            const auto seconds = numbersOf(m_rule.seconds, m_timeOfDay % secondsPerMinute);
            const auto minutes =
                m_rule.frequency == Frequency::minutely
                    ? std::vector<std::int64_t>{0}
                    : numbersOf(m_rule.minutes, m_timeOfDay / secondsPerMinute % 60);
            for (const std::int64_t minute : minutes) {
                for (const std::int64_t second : seconds) {
                    m_found.push_back(begin + minute * secondsPerMinute + second);
                }
            }
        }
        if (!m_rule.positions.empty()) {
            return offerPicked(m_found.size(),
                               [this](std::size_t index) { return m_found[index]; });
        }
        return std::all_of(m_found.begin(), m_found.end(),
                           [this](std::int64_t reading) { return offer(reading); });
    }

    // ---- all of them

    bool mayGoOn() const { return !m_rule.count || m_counted < *m_rule.count; }

    // Takes the rule's next reading. False: no more is wanted.
    bool offer(std::int64_t reading) {
        if (reading < m_request.start || (reading == m_request.start && m_request.startCounts)) {
            return true;
        }
        if (reading > m_to) {
            return false;
        }
        if (m_canLeap && reading < m_from) {
            return true;
        }
        if (!spend(1)) {
            return false;
        }
        m_barren = 0;
        if (m_request.exists && !m_request.exists(reading)) {
            return true;
        }
        ++m_counted;
        m_lastCounted = reading;
        keep(reading);
        if (m_result.readings.size() >= mostReadings) {
            m_result.problem = "it has too many occurrences";
            return false;
        }
        return mayGoOn();
    }

    void keep(std::int64_t reading) {
        if (reading >= m_from && reading <= m_to) {
            m_result.readings.push_back(reading);
        }
    }

    bool spend(std::int64_t steps) {
        m_result.stepsSpent += steps;
        m_barren += steps;
        if (m_result.stepsSpent > m_request.budget) {
            m_result.problem = "it takes too many steps";
            return false;
        }
        if (m_barren > barrenSteps && !m_isKnownFertile) {
            m_isKnownFertile = isEverFertile();
            return m_isKnownFertile;
        }
        return true;
    }

    // Whether its parts let anything through at all, on any day, at any time of the day.
    bool isEverFertile() const {
        if (m_days && !m_days->includesAny()) {
            return false;
        }
        if (!m_days || !isBelowDay(m_rule.frequency)) {
            return !m_hasNoTimes;
        }
        // From day to day the walk comes by the same times, this far from each other.
        const std::int64_t spacing = std::gcd(m_step, secondsPerDay);
        const std::int64_t first = m_firstUnit - floorDivision(m_firstUnit, spacing) * spacing;
        for (std::int64_t time = first; time < secondsPerDay; time += spacing) {
            if (letsTimeThrough(time)) {
                return true;
            }
        }
        return false;
    }

    bool letsTimeThrough(std::int64_t time) const {
        const auto hour = static_cast<std::size_t>(time / secondsPerHour);
        const auto minute = static_cast<std::size_t>(time / secondsPerMinute % 60);
        const auto second = static_cast<std::size_t>(time % secondsPerMinute);
        return (m_rule.hours.none() || m_rule.hours[hour]) &&
               (m_rule.frequency == Frequency::hourly || m_rule.minutes.none() ||
                m_rule.minutes[minute]) &&
               (m_rule.frequency != Frequency::secondly || m_rule.seconds.none() ||
                m_rule.seconds[second]);
    }

    const RecurrenceRequest& m_request;
    const RecurrenceRule& m_rule;
    std::int64_t m_from;
    std::int64_t m_to;
    std::int64_t m_startDay;
    std::int64_t m_timeOfDay; // of the start
    bool m_canLeap;           // nothing before the window has to be counted
    std::optional<RuleDays> m_days;
    std::vector<std::int64_t> m_times;
    bool m_hasNoTimes = false;
    std::vector<std::int64_t> m_found; // within one period
    std::int64_t m_step = 0;           // from one unit to the next that counts
    std::int64_t m_firstUnit = 0;
    std::int64_t m_knownDay = std::numeric_limits<std::int64_t>::min();
    bool m_isKnownDayIncluded = false;
    std::int64_t m_counted = 0;
    std::int64_t m_lastCounted = 0;
    std::int64_t m_barren = 0; // steps since the last occurrence
    bool m_isKnownFertile = false;
    RecurrenceStarts m_result;
};

} // namespace

RecurrenceStarts expandRecurrence(const RecurrenceRequest& request) {
    return Expansion(request).run();
}

CountEnd endOfCount(const RecurrenceRequest& request) {
    return Expansion(request).count();
}

} // namespace quorvel::freedesktop::recurrence
