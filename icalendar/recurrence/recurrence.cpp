// Periods of the rule's frequency follow each other; each gives its days, the days their times, and
// BYSETPOS picks among them. Rules below a day walk their hours, minutes or seconds instead, and
// leap over what the coarser parts shut out.
#include "icalendar/recurrence/recurrence.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <numeric>
#include <utility>

#include "base/civil_calendar.h"
#include "base/integer_division.h"
#include "base/time_units.h"
#include "icalendar/recurrence/rule_days.h"

namespace quorvel::icalendar {
namespace {

constexpr std::int64_t firstLocalTime = -62135596800; // 0001-01-01T00:00:00
constexpr std::int64_t lastLocalTime = 253402300799;  // 9999-12-31T23:59:59
constexpr std::size_t mostLocalTimes = 100'000;
// After so many steps without an occurrence it is worth asking whether there will ever be one.
constexpr std::int64_t barrenSteps = 2'000;
// A month's days are worked out in the time of so many other steps, and a zone is asked about
// another day; so many times of a day are written down in one.
constexpr std::int64_t stepsOfMonth = 8;
constexpr std::int64_t stepsOfAskedDay = 16;
constexpr std::int64_t timesPerStep = 8;

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
        return secondsPerWeek;
    case Frequency::monthly:
    case Frequency::yearly:
        return 0;
    }
    return 0;
}

// BYWEEKNO numbers the weeks of a week year, so that is the period which INTERVAL and BYSETPOS of a
// yearly rule count in.
bool hasWeekYears(const RecurrenceRule& rule) {
    return rule.frequency == Frequency::yearly && rule.weeks.any();
}

// The most days of a period.
int daysOf(const RecurrenceRule& rule) {
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

// The next number of the set, from this one on, or the one behind the greatest where there is none;
// an empty set holds all. 60 is no second here.
template <std::size_t Size>
std::int64_t nextOf(const std::bitset<Size>& set, std::int64_t number) {
    if (set.none()) {
        return number;
    }
    const std::uint64_t rest = set.to_ullong() >> number;
    return rest == 0 ? std::min<std::int64_t>(Size, 60) : number + __builtin_ctzll(rest);
}

class Expansion {
public:
    explicit Expansion(const RecurrenceRequest& request)
        : m_request(request)
        , m_rule(request.rule)
        , m_from(std::max(request.from, firstLocalTime))
        , m_to(std::min({request.to, request.until.value_or(lastLocalTime), lastLocalTime}))
        , m_startDay(floorDivision(request.start, secondsPerDay))
        , m_timeOfDay(request.start - m_startDay * secondsPerDay)
        , m_canLeap(!request.rule.count && request.from > request.start) {}

    CountEnd count() {
        m_from = lastLocalTime; // nothing is kept
        m_to = std::min(m_request.until.value_or(lastLocalTime), lastLocalTime);
        m_canLeap = false;
        m_lastCounted = std::min(m_request.start, m_to);
        const RecurrenceStarts walked = run();
        return {m_lastCounted, walked.problem.empty(), walked.stepsSpent};
    }

    RecurrenceStarts run() {
        if (m_request.startCounts) {
            m_counted = isNewTime(m_request.start) ? 1 : 0;
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
            walk();
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
        if (m_rule.count && !m_request.existingLocalTime) { // whose end is a matter of arithmetic
            const std::int64_t last = std::min(*m_rule.count - 1, (m_to - m_request.start) / step);
            m_to = m_request.start + last * step;
            m_canLeap = m_from > m_request.start;
            m_lastCounted = m_to;
        }
        std::int64_t localTime = m_request.start;
        if (m_canLeap) {
            localTime += (m_from - localTime + step - 1) / step * step;
        }
        for (; localTime <= m_to && spend(1); localTime += step) {
            if (!offer(localTime)) {
                return;
            }
        }
    }

    // ---- the others

    void walk() {
        if (isBelowDay(m_rule.frequency)) {
            walkUnits();
            return;
        }
        if (!makeTimes()) {
            return;
        }
        if (m_rule.frequency == Frequency::daily) {
            walkDays(m_rule.interval);
        } else if (m_rule.interval == 1 && m_rule.positions.empty()) {
            walkDays(1); // where a period ends is no matter
        } else {
            walkPeriods();
        }
    }

    // Where neither the start nor the window begins later.
    std::int64_t firstWantedLocalTime() const {
        return m_canLeap ? std::max(m_from, m_request.start) : m_request.start;
    }
    std::int64_t firstWantedDay() const {
        return floorDivision(firstWantedLocalTime(), secondsPerDay);
    }
    std::int64_t lastWantedDay() const { return floorDivision(m_to, secondsPerDay); }

    // The first day from this one to the last one that the rule includes. Absent also where the
    // walk is to end.
    std::optional<std::int64_t> nextDay(std::int64_t day, std::int64_t last) {
        while (day <= last && spend(m_days->knowsMonthOf(day) ? 1 : stepsOfMonth)) {
            const std::int64_t next = m_days->nextCandidate(day);
            if (m_days->knowsMonthOf(next)) {
                return next <= last ? std::optional(next) : std::nullopt;
            }
            day = next;
        }
        return std::nullopt;
    }

    // ---- every so many days

    void walkDays(std::int64_t interval) {
        const std::int64_t last = lastWantedDay();
        const auto firstFrom = [&](std::int64_t day) {
            return m_startDay + ceilingDivision(day - m_startDay, interval) * interval;
        };
        std::int64_t day = firstFrom(firstWantedDay());
        while (const auto next = nextDay(day, last)) {
            day = firstFrom(*next);
            if (day == *next) {
                if (!offerDay(day)) {
                    return;
                }
                day += interval;
            }
        }
    }

    // A day that is a period of its own, or one of several without positions.
    bool offerDay(std::int64_t day) {
        const std::int64_t midnight = day * secondsPerDay;
        if (!m_rule.positions.empty()) {
            return offerPicked(m_times.size(),
                               [&](std::size_t index) { return midnight + m_times[index]; });
        }
        const auto first =
            std::lower_bound(m_times.begin(), m_times.end(), firstWantedLocalTime() - midnight);
        return std::all_of(first, m_times.end(),
                           [&](std::int64_t time) { return offer(midnight + time); });
    }

    // The times of a day, sorted.
    bool makeTimes() {
        if (m_request.wholeDays || !m_rule.hasTimeParts()) {
            m_times = {m_request.wholeDays ? 0 : m_timeOfDay};
            return true;
        }
        const auto hours = numbersOf(m_rule.hours, m_timeOfDay / secondsPerHour);
        m_times = timesOf(hours, numbersOf(m_rule.minutes, startMinute()),
                          numbersOf(m_rule.seconds, startSecond()));
        return !m_times.empty() && spend(static_cast<std::int64_t>(m_times.size()) / timesPerStep);
    }

    std::int64_t startMinute() const { return m_timeOfDay / secondsPerMinute % 60; }
    std::int64_t startSecond() const { return m_timeOfDay % secondsPerMinute; }

    static std::vector<std::int64_t> timesOf(const std::vector<std::int64_t>& hours,
                                             const std::vector<std::int64_t>& minutes,
                                             const std::vector<std::int64_t>& seconds) {
        std::vector<std::int64_t> times;
        times.reserve(hours.size() * minutes.size() * seconds.size());
        for (const std::int64_t hour : hours) {
            for (const std::int64_t minute : minutes) {
                for (const std::int64_t second : seconds) {
                    times.push_back(hour * secondsPerHour + minute * secondsPerMinute + second);
                }
            }
        }
        return times;
    }

    // ---- weeks, months and years with some of their days

    void walkPeriods() {
        m_start = civilDay(m_startDay);
        m_startYear =
            hasWeekYears(m_rule) ? weekYearOf(m_startDay, m_rule.weekStart) : m_start.year;
        for (std::int64_t index = firstPeriod();; ++index) {
            const Period period = periodAt(index);
            if (period.firstDay > lastWantedDay() || !spend(1)) {
                return;
            }
            if (!(m_rule.positions.empty() ? offerDays(period) : offerPositions(period))) {
                return;
            }
        }
    }

    // The index of the period that the window begins in, or of one shortly before.
    std::int64_t firstPeriod() const {
        const std::int64_t fromDay = firstWantedDay();
        std::int64_t periods = 0;
        if (m_rule.frequency == Frequency::weekly) {
            periods = floorDivision(fromDay - m_startDay, weekdays);
        } else if (hasWeekYears(m_rule)) {
            periods = weekYearOf(fromDay, m_rule.weekStart) - m_startYear;
        } else {
            const CivilDay from = civilDay(fromDay);
            periods = from.year - m_startYear;
            if (m_rule.frequency == Frequency::monthly) {
                periods = periods * 12 + from.month - m_start.month;
            }
        }
        return std::max<std::int64_t>(floorDivision(periods, m_rule.interval), 0);
    }

    Period periodAt(std::int64_t index) const {
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

    std::int64_t firstDayOfYear(std::int64_t year) const {
        return hasWeekYears(m_rule) ? firstDayOfWeekYear(year, m_rule.weekStart)
                                    : dayNumber(year, 1, 1);
    }

    bool offerDays(const Period& period) {
        const std::int64_t last = std::min(period.lastDay, lastWantedDay());
        std::int64_t day = std::max(period.firstDay, firstWantedDay());
        while (const auto next = nextDay(day, last)) {
            if (!offerDay(*next)) {
                return false;
            }
            day = *next + 1;
        }
        return mayWalkOn();
    }

    bool offerPositions(const Period& period) {
        m_found.clear();
        std::int64_t day = period.firstDay;
        while (const auto next = nextDay(day, period.lastDay)) {
            m_found.push_back(*next * secondsPerDay);
            day = *next + 1;
        }
        const std::size_t perDay = m_times.size();
        return mayWalkOn() && offerPicked(m_found.size() * perDay, [&](std::size_t index) {
                   return m_found[index / perDay] + m_times[index % perDay];
               });
    }

    // Of so many local times those that BYSETPOS names.
    template <class LocalTimeAt>
    bool offerPicked(std::size_t size, LocalTimeAt localTimeAt) {
        if (size != m_pickedFrom) {
            if (!spend(static_cast<std::int64_t>(m_rule.positions.size()))) {
                return false;
            }
            pickFrom(size);
        }
        return spend(1 + static_cast<std::int64_t>(m_picked.size()) / timesPerStep) &&
               std::all_of(m_picked.begin(), m_picked.end(),
                           [&](std::size_t index) { return offer(localTimeAt(index)); });
    }

    void pickFrom(std::size_t size) {
        m_pickedFrom = size;
        m_picked.clear();
        const auto many = static_cast<std::int64_t>(size);
        for (const int position : m_rule.positions) {
            const std::int64_t index = position > 0 ? position - 1 : many + position;
            if (index >= 0 && index < many) {
                m_picked.push_back(static_cast<std::size_t>(index));
            }
        }
        std::sort(m_picked.begin(), m_picked.end());
        m_picked.erase(std::unique(m_picked.begin(), m_picked.end()), m_picked.end());
    }

    // ---- hours, minutes, seconds

    void walkUnits() {
        const std::int64_t unit = unitOf(m_rule.frequency);
        m_step = unit * m_rule.interval;
        m_firstUnit = floorDivision(m_request.start, unit) * unit;
        makeTimesOfUnit();
        std::int64_t begin = m_firstUnit;
        if (m_canLeap && m_from > begin) {
            begin += (m_from - begin) / m_step * m_step;
        }
        while (begin <= m_to && spend(1)) {
            const std::int64_t open = openFrom(begin);
            if (!mayWalkOn() || (open <= begin && !offerUnit(begin))) {
                return;
            }
            const std::int64_t distance = open - begin;
            begin += distance <= m_step ? m_step : ceilingDivision(distance, m_step) * m_step;
        }
    }

    // The beginning of the unit where its coarser parts let it through; else of a later one before
    // which they let none through.
    std::int64_t openFrom(std::int64_t localTime) {
        if (localTime - m_openMidnight >= secondsPerDay) { // local times only grow
            const std::int64_t day = floorDivision(localTime, secondsPerDay);
            const auto next = nextDay(day, lastWantedDay());
            if (next != day) {
                return next.value_or(lastWantedDay() + 1) * secondsPerDay;
            }
            m_openMidnight = day * secondsPerDay;
        }
        const std::int64_t time = localTime - m_openMidnight;
        const std::int64_t hour = time / secondsPerHour;
        const std::int64_t openHour = nextOf(m_rule.hours, hour);
        if (openHour > hour) {
            return m_openMidnight + openHour * secondsPerHour;
        }
        if (m_rule.frequency == Frequency::hourly) {
            return localTime;
        }
        const std::int64_t minute = time / secondsPerMinute;
        const std::int64_t openMinute = hour * 60 + nextOf(m_rule.minutes, minute - hour * 60);
        if (openMinute > minute) {
            return m_openMidnight + openMinute * secondsPerMinute;
        }
        if (m_rule.frequency == Frequency::minutely) {
            return localTime;
        }
        const std::int64_t second = time - minute * secondsPerMinute;
        return localTime - second + nextOf(m_rule.seconds, second);
    }

    void makeTimesOfUnit() {
        const std::vector<std::int64_t> zero = {0};
        m_times = timesOf(
            zero,
            m_rule.frequency == Frequency::hourly ? numbersOf(m_rule.minutes, startMinute()) : zero,
            m_rule.frequency == Frequency::secondly ? zero
                                                    : numbersOf(m_rule.seconds, startSecond()));
    }

    // What the finer parts make of one hour, minute or second.
    bool offerUnit(std::int64_t begin) {
        if (!m_rule.positions.empty()) {
            return offerPicked(m_times.size(),
                               [&](std::size_t index) { return begin + m_times[index]; });
        }
        return std::all_of(m_times.begin(), m_times.end(),
                           [&](std::int64_t time) { return offer(begin + time); });
    }

    // ---- all of them

    bool mayGoOn() const { return !m_rule.count || m_counted < *m_rule.count; }

    // Takes the rule's next local time. False: no more is wanted.
    bool offer(std::int64_t localTime) {
        if (localTime < m_request.start ||
            (localTime == m_request.start && m_request.startCounts)) {
            return true;
        }
        if (localTime > m_to) {
            return false;
        }
        if (m_canLeap && localTime < m_from) {
            return true;
        }
        if (!spend(1)) {
            return false;
        }
        m_barren = 0;
        if (m_rule.count && m_request.existingLocalTime) {
            const std::int64_t day = floorDivision(localTime, secondsPerDay);
            if (day != m_askedDay && !spend(stepsOfAskedDay)) {
                return false;
            }
            m_askedDay = day;
        }
        m_counted += isNewTime(localTime) ? 1 : 0;
        m_lastCounted = localTime;
        keep(localTime);
        if (m_result.localTimes.size() >= mostLocalTimes) {
            m_result.problem = "it has too many occurrences";
            return false;
        }
        return mayGoOn();
    }

    // Whether the clock turns no earlier local time into this one.
    bool isNewTime(std::int64_t localTime) {
        if (!m_rule.count || !m_request.existingLocalTime) {
            return true;
        }
        const std::int64_t existing = m_request.existingLocalTime(localTime);
        if (existing != localTime) {
            if (!m_moved.empty() && m_moved.back() < localTime) { // all of an earlier gap
                m_moved.clear();
            }
            m_moved.push_back(existing);
            return true;
        }
        return !std::binary_search(m_moved.begin(), m_moved.end(), localTime);
    }

    void keep(std::int64_t localTime) {
        if (localTime >= m_from && localTime <= m_to) {
            m_result.localTimes.push_back(localTime);
        }
    }

    // False: the walk is to end.
    bool spend(std::int64_t steps) {
        if (steps > m_request.budget - m_result.stepsSpent) {
            m_result.stepsSpent = m_request.budget;
            m_result.problem = "it takes too many steps";
            m_isSpent = true;
            return false;
        }
        m_result.stepsSpent += steps;
        m_barren += steps;
        if (m_barren > barrenSteps && !m_isKnownFertile) {
            m_isKnownFertile = isEverFertile();
            m_isSpent = !m_isKnownFertile;
        }
        return !m_isSpent;
    }

    bool mayWalkOn() const { return !m_isSpent; }

    // Whether the fullest period that there can be is long enough for one of the positions.
    bool mayReachPosition() const {
        const auto longest = static_cast<std::int64_t>(m_times.size()) * daysOf(m_rule);
        return m_rule.positions.empty() ||
               std::any_of(m_rule.positions.begin(), m_rule.positions.end(),
                           [longest](int position) { return std::abs(position) <= longest; });
    }

    // Whether its parts let anything through at all, on any day, at any time of the day.
    bool isEverFertile() const {
        if (m_days && (!RuleDays(m_rule, m_startDay).includesAny() || !mayReachPosition())) {
            return false;
        }
        if (!m_days || !isBelowDay(m_rule.frequency)) {
            return true;
        }
        if (m_times.empty()) {
            return false;
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
    CivilDay m_start;
    std::int64_t m_startYear = 0; // a week year where the rule has those
    std::optional<RuleDays> m_days;
    std::vector<std::int64_t> m_times; // of a day, or of an hour, minute or second
    std::vector<std::int64_t> m_found; // the days of one period, their midnights
    std::vector<std::size_t> m_picked; // what the positions name among so many
    std::size_t m_pickedFrom = 0;
    std::int64_t m_step = 0; // from one unit to the next that counts
    std::int64_t m_firstUnit = 0;
    // Of the last day let through; at first one long before all local times.
    std::int64_t m_openMidnight = std::numeric_limits<std::int64_t>::min() / 2;
    std::int64_t m_askedDay = std::numeric_limits<std::int64_t>::min(); // what its clock shows
    std::vector<std::int64_t> m_moved; // the existing local times of the last skipped ones, sorted
    std::int64_t m_counted = 0;
    std::int64_t m_lastCounted = 0;
    std::int64_t m_barren = 0; // steps since the last occurrence
    bool m_isKnownFertile = false;
    bool m_isSpent = false; // no step more
    RecurrenceStarts m_result;
};

} // namespace

RecurrenceStarts expandRecurrence(const RecurrenceRequest& request) {
    return Expansion(request).run();
}

CountEnd endOfCount(const RecurrenceRequest& request) {
    return Expansion(request).count();
}

} // namespace quorvel::icalendar
