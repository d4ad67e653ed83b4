// Generates random recurrence rules, starts and search windows for property tests.
#include "tests/freedesktop/calendars/store/recurrence/random_recurrence.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <ostream>
#include <string>

#include "base/time_units.h"

namespace quorvel::freedesktop {

using namespace icalendar;
using std::chrono::sys_days;

namespace {

constexpr std::int64_t ampleBudget = 1'000'000'000;
constexpr const char* weekdayNames[] = {"SU", "MO", "TU", "WE", "TH", "FR", "SA"};
constexpr std::pair<Frequency, const char*> frequencyNames[] = {
    {Frequency::secondly, "SECONDLY"}, {Frequency::minutely, "MINUTELY"},
    {Frequency::hourly, "HOURLY"},     {Frequency::daily, "DAILY"},
    {Frequency::weekly, "WEEKLY"},     {Frequency::monthly, "MONTHLY"},
    {Frequency::yearly, "YEARLY"}};

std::string listText(const char* name, const std::vector<int>& numbers) {
    std::string text;
    for (const int number : numbers) {
        text += (text.empty() ? std::string(";") + name + "=" : ",") + std::to_string(number);
    }
    return text;
}

std::string textOf(const RuleParts& rule) {
    std::string text = "FREQ=";
    for (const auto& [frequency, name] : frequencyNames) {
        text += frequency == rule.frequency ? name : "";
    }
    text += ";INTERVAL=" + std::to_string(rule.interval);
    text += rule.count > 0 ? ";COUNT=" + std::to_string(rule.count) : "";
    text += std::string(";WKST=") + weekdayNames[rule.weekStart];
    text += listText("BYMONTH", rule.months) + listText("BYWEEKNO", rule.weeks) +
            listText("BYYEARDAY", rule.yearDays) + listText("BYMONTHDAY", rule.monthDays);
    std::string weekdayText;
    for (const auto& [number, weekday] : rule.weekdayParts) {
        weekdayText += (weekdayText.empty() ? ";BYDAY=" : ",") +
                       (number == 0 ? "" : std::to_string(number)) + weekdayNames[weekday];
    }
    return text + weekdayText + listText("BYHOUR", rule.hours) +
           listText("BYMINUTE", rule.minutes) + listText("BYSECOND", rule.seconds) +
           listText("BYSETPOS", rule.positions);
}

rc::Gen<int> ordinal(int greatest) {
    return rc::gen::oneOf(from(1, greatest), from(-greatest, -1));
}

template <class T>
rc::Gen<std::vector<T>> someOrNone(std::size_t none, const rc::Gen<T>& element) {
    return rc::gen::weightedOneOf<std::vector<T>>(
        {{none, rc::gen::just(std::vector<T>())},
         {2, rc::gen::resize(6, rc::gen::container<std::vector<T>>(element))}});
}

std::vector<NumberedWeekday> randomWeekdays(bool mayHaveNumbers, int greatest) {
    const auto numbers = mayHaveNumbers
                             ? rc::gen::weightedOneOf<int>(
                                   {{2, rc::gen::just(0)}, {2, ordinal(5)}, {1, ordinal(greatest)}})
                             : rc::gen::just(0);
    std::vector<NumberedWeekday> result;
    for (const auto& [number, weekday] :
         *someOrNone<std::pair<int, int>>(3, rc::gen::pair(numbers, from(0, 6)))) {
        result.push_back({number, weekday});
    }
    return result;
}

// Uses only the parts that the frequency allows.
RuleParts randomRule() {
    RuleParts rule;
    rule.frequency = static_cast<Frequency>(*from(0, 6));
    rule.interval =
        *rc::gen::weightedOneOf<int>({{4, rc::gen::just(1)}, {4, from(2, 7)}, {1, from(8, 100)}});
    rule.weekStart = *from(0, 6);
    const bool isYearly = rule.frequency == Frequency::yearly;
    rule.months = *someOrNone<int>(4, from(1, 12));
    if (isYearly) {
        rule.weeks = *someOrNone<int>(
            6, rc::gen::oneOf(ordinal(53), rc::gen::element(1, 52, 53, -1, -52, -53)));
    }
    if (isYearly || rule.isBelowDay()) {
        rule.yearDays = *someOrNone<int>(
            6, rc::gen::oneOf(ordinal(366), rc::gen::element(1, 60, 365, 366, -1, -366)));
    }
    if (rule.frequency != Frequency::weekly) {
        rule.monthDays = *someOrNone<int>(4, ordinal(31));
    }
    const bool mayHaveNumbers =
        rule.frequency == Frequency::monthly || (isYearly && rule.weeks.empty());
    rule.weekdayParts = randomWeekdays(mayHaveNumbers, isYearly ? 53 : 5);
    rule.hours = *someOrNone<int>(5, from(0, 23));
    rule.minutes = *someOrNone<int>(5, from(0, 59));
    rule.seconds = *someOrNone<int>(5, from(0, 60));
    if (rule.hasParts()) {
        rule.positions = *someOrNone<int>(4, rc::gen::oneOf(ordinal(4), ordinal(40)));
    }
    return rule;
}

std::ostream& operator<<(std::ostream& out, const Case& one) {
    return out << textOf(one.parts) << " start " << one.start << (one.wholeDays ? " days" : "")
               << (one.startCounts ? "" : " not counted") << " until " << one.until.value_or(0)
               << " gap " << one.gap;
}

std::optional<std::int64_t> chance(int one, const std::function<std::int64_t()>& value) {
    return *from(1, one) == 1 ? std::optional(value()) : std::nullopt;
}

} // namespace

bool RuleParts::hasParts() const {
    return !(months.empty() && weeks.empty() && yearDays.empty() && monthDays.empty() &&
             hours.empty() && minutes.empty() && seconds.empty() && weekdayParts.empty());
}

std::int64_t Case::randomLocalTime() const {
    const auto span = spanOf(parts.frequency) * secondsPerDay;
    return start + *from(-100, 1000) * (span / 1000) + *from(0, 100);
}

std::int64_t Case::existingLocalTime(std::int64_t localTime) const {
    return gap != 0 && localTime / 3600 % gap == 0 ? localTime + 3600 : localTime;
}

RecurrenceRequest Case::request(std::int64_t first, std::int64_t last) const {
    RecurrenceRequest result(rule);
    result.start = start;
    result.wholeDays = wholeDays;
    result.startCounts = startCounts;
    result.until = until;
    result.from = first;
    result.to = last;
    result.budget = ampleBudget;
    if (gap != 0) {
        result.existingLocalTime = [this](std::int64_t localTime) {
            return existingLocalTime(localTime);
        };
    }
    return result;
}

std::vector<std::int64_t> Case::localTimes(std::int64_t first, std::int64_t last) const {
    const RecurrenceStarts starts = expandRecurrence(request(first, last));
    RC_PRE(starts.localTimes.size() < 100'000); // the most that a search gives
    RC_ASSERT(starts.problem == "");
    return starts.localTimes;
}

rc::Gen<int> from(int least, int greatest) {
    return rc::gen::resize(rc::kNominalSize, rc::gen::inRange(least, greatest + 1));
}

int spanOf(Frequency frequency) {
    switch (frequency) {
    case Frequency::secondly:
        return 1;
    case Frequency::minutely:
        return 8;
    case Frequency::hourly:
        return 150;
    case Frequency::daily:
        return 3 * 366;
    case Frequency::weekly:
        return 5 * 366;
    default:
        return 14 * 366;
    }
}

std::int64_t randomDay() {
    const int year = *from(1990, 2032);
    const auto nearby = *rc::gen::oneOf(
        rc::gen::just(sys_days(std::chrono::year(year) / 1 / 1)),
        rc::gen::just(sys_days(std::chrono::year(year) / 2 / 28)),
        rc::gen::map(from(1, 12), [year](int month) {
            return sys_days(std::chrono::year(year) /
                            std::chrono::month(static_cast<unsigned>(month)) / std::chrono::last);
        }));
    return (nearby.time_since_epoch().count()) + *rc::gen::oneOf(from(-3, 3), from(0, 400));
}

Case randomCase() {
    Case one;
    one.parts = randomRule();
    one.start = randomDay() * secondsPerDay;
    one.wholeDays = !one.parts.isBelowDay() && *from(0, 3) == 0;
    if (!one.wholeDays) {
        one.start += *rc::gen::oneOf(from(0, 86399), from(0, 23), from(86390, 86399));
        one.gap = *rc::gen::element(0, 0, 0, 2, 5, 24);
    }
    one.startCounts = *from(0, 3) != 0;
    one.parts.count = chance(3, [] { return *from(1, 40); }).value_or(0);
    one.until = chance(3, [&one] { return one.randomLocalTime(); });
    const auto rule = parseRecurrenceRule(textOf(one.parts));
    RC_ASSERT(rule.hasValue());
    one.rule = *rule;
    RC_LOG() << one << "\n";
    return one;
}

std::pair<std::int64_t, std::int64_t> randomWindow(const Case& one) {
    const auto [first, last] = std::minmax({one.randomLocalTime(), one.randomLocalTime()});
    return {first, last};
}

RecurrenceRule hostileRule() {
    RuleParts parts = randomRule();
    const auto all = [](int least, int greatest) {
        std::vector<int> numbers;
        for (int number = least; number <= greatest; ++number) {
            numbers.push_back(number);
        }
        return *rc::gen::element(numbers, std::vector<int>());
    };
    parts.frequency = static_cast<Frequency>(*from(0, 6));
    parts.interval = *rc::gen::element(1, 1, 2, 61, 86399, 1'000'000'000);
    parts.hours = all(0, 23);
    parts.minutes = all(0, 59);
    parts.seconds = all(0, 60);
    parts.weeks = *someOrNone<int>(4, ordinal(53));
    parts.positions = parts.hasParts() ? all(*rc::gen::element(1, 200, -366), 366) : parts.weeks;
    parts.positions.erase(std::remove(parts.positions.begin(), parts.positions.end(), 0),
                          parts.positions.end());
    parts.count = *rc::gen::element(0, 0, 5, 2'000'000'000);
    RC_LOG() << textOf(parts) << "\n";
    const auto rule = parseRecurrenceRule(textOf(parts));
    RC_ASSERT(rule.hasValue());
    return *rule;
}

} // namespace quorvel::freedesktop
