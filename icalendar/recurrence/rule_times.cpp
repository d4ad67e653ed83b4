#include "icalendar/recurrence/rule_times.h"

#include <algorithm>
#include <bitset>

#include "base/time_units.h"

namespace quorvel::icalendar {
namespace {

using Numbers = std::vector<std::int64_t>;

// Hours, minutes or seconds that a local time can have. No local time here has a leap second.
template <std::size_t Size>
constexpr std::size_t countOf(const std::bitset<Size>&) {
    return std::min<std::size_t>(Size, 60);
}

// The numbers of a set; of an empty one the number that the start has.
template <std::size_t Size>
Numbers numbersOf(const std::bitset<Size>& set, std::int64_t ofTheStart) {
    if (set.none()) {
        return {ofTheStart};
    }
    Numbers numbers;
    for (std::size_t number = 0; number < countOf(set); ++number) {
        if (set[number]) {
            numbers.push_back(static_cast<std::int64_t>(number));
        }
    }
    return numbers;
}

// The next number of the set, from this one on, or the one behind the greatest where there is none;
// an empty set holds all.
template <std::size_t Size>
std::int64_t nextOf(const std::bitset<Size>& set, std::int64_t number) {
    if (set.none()) {
        return number;
    }
    const std::uint64_t rest = set.to_ullong() >> number;
    return rest == 0 ? static_cast<std::int64_t>(countOf(set)) : number + __builtin_ctzll(rest);
}

Numbers combinationsOf(const Numbers& hours, const Numbers& minutes, const Numbers& seconds) {
    Numbers times;
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

Numbers minutesOf(const RecurrenceRule& rule, std::int64_t startTimeOfDay) {
    return numbersOf(rule.minutes, startTimeOfDay / secondsPerMinute % 60);
}

Numbers secondsOf(const RecurrenceRule& rule, std::int64_t startTimeOfDay) {
    return numbersOf(rule.seconds, startTimeOfDay % secondsPerMinute);
}

} // namespace

Numbers timesOfDay(const RecurrenceRule& rule, std::int64_t startTimeOfDay) {
    return combinationsOf(numbersOf(rule.hours, startTimeOfDay / secondsPerHour),
                          minutesOf(rule, startTimeOfDay), secondsOf(rule, startTimeOfDay));
}

Numbers timesOfUnit(const RecurrenceRule& rule, std::int64_t startTimeOfDay) {
    const Numbers zero = {0};
    return combinationsOf(
        zero, rule.frequency == Frequency::hourly ? minutesOf(rule, startTimeOfDay) : zero,
        rule.frequency == Frequency::secondly ? zero : secondsOf(rule, startTimeOfDay));
}

std::int64_t nextAdmittedTime(const RecurrenceRule& rule, std::int64_t timeOfDay) {
    const std::int64_t hour = timeOfDay / secondsPerHour;
    const std::int64_t nextHour = nextOf(rule.hours, hour);
    if (nextHour > hour) {
        return nextHour * secondsPerHour;
    }
    if (rule.frequency == Frequency::hourly) {
        return timeOfDay;
    }
    const std::int64_t minute = timeOfDay / secondsPerMinute;
    const std::int64_t nextMinute = hour * 60 + nextOf(rule.minutes, minute - hour * 60);
    if (nextMinute > minute) {
        return nextMinute * secondsPerMinute;
    }
    if (rule.frequency == Frequency::minutely) {
        return timeOfDay;
    }
    const std::int64_t second = timeOfDay - minute * secondsPerMinute;
    return timeOfDay - second + nextOf(rule.seconds, second);
}

} // namespace quorvel::icalendar
