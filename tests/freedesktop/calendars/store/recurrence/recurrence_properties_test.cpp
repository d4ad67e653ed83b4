// Random rules: against a slow reference that tests every day (below a day at every hour, minute
// or second), against themselves in other windows, and against their budget.
//
// The seed is fixed, so that a run can be repeated; RC_PARAMS="seed=7 max_success=5000" goes
// elsewhere.
#include "icalendar/recurrence/recurrence.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <limits>
#include <map>
#include <random>
#include <set>

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include "base/time_units.h"
#include "tests/freedesktop/calendars/store/store_fixture.h"

namespace quorvel::freedesktop {
namespace {

using namespace icalendar;
using std::chrono::days;
using std::chrono::sys_days;

const bool hasSeed = setenv("RC_PARAMS", "seed=20261121 max_success=1000", 0) == 0;

constexpr std::int64_t ampleBudget = 1'000'000'000;
constexpr std::int64_t endOfTime = 253402300799; // the last second of 9999
constexpr int sunday = 0;
constexpr const char* weekdayNames[] = {"SU", "MO", "TU", "WE", "TH", "FR", "SA"};
constexpr std::pair<Frequency, const char*> frequencyNames[] = {
    {Frequency::secondly, "SECONDLY"}, {Frequency::minutely, "MINUTELY"},
    {Frequency::hourly, "HOURLY"},     {Frequency::daily, "DAILY"},
    {Frequency::weekly, "WEEKLY"},     {Frequency::monthly, "MONTHLY"},
    {Frequency::yearly, "YEARLY"}};

// ---- a rule before it is written

struct NumberedWeekday {
    int number = 0; // 0: every one
    int weekday = sunday;
};

struct RuleParts {
    Frequency frequency = Frequency::daily;
    std::int64_t interval = 1;
    std::int64_t count = 0; // 0: none
    int weekStart = 1;
    std::vector<int> months, weeks, yearDays, monthDays, hours, minutes, seconds, positions;
    std::vector<NumberedWeekday> weekdayParts;

    bool hasParts() const {
        return !(months.empty() && weeks.empty() && yearDays.empty() && monthDays.empty() &&
                 hours.empty() && minutes.empty() && seconds.empty() && weekdayParts.empty());
    }
    bool isBelowDay() const { return frequency < Frequency::daily; }
};

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

// ---- random ones

rc::Gen<int> from(int least, int greatest) {
    return rc::gen::resize(rc::kNominalSize, rc::gen::inRange(least, greatest + 1));
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

// Only what a rule of its frequency may say.
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

// How far from the start a case goes, in days: the finer the frequency, the less.
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

struct Case {
    RuleParts parts;
    RecurrenceRule rule;
    std::int64_t start = 0;
    bool wholeDays = false;
    bool startCounts = true;
    std::optional<std::int64_t> until;
    int gap = 0; // the clock skips the hours whose number is divisible by this

    std::int64_t randomLocalTime() const {
        const auto span = spanOf(parts.frequency) * secondsPerDay;
        return start + *from(-100, 1000) * (span / 1000) + *from(0, 100);
    }
    std::int64_t existingLocalTime(std::int64_t localTime) const {
        return gap != 0 && localTime / 3600 % gap == 0 ? localTime + 3600 : localTime;
    }

    RecurrenceRequest request(std::int64_t first, std::int64_t last) const {
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

    std::vector<std::int64_t> localTimes(std::int64_t first, std::int64_t last) const {
        const RecurrenceStarts starts = expandRecurrence(request(first, last));
        RC_PRE(starts.localTimes.size() < 100'000); // the most that a search gives
        RC_ASSERT(starts.problem == "");
        return starts.localTimes;
    }
};

std::ostream& operator<<(std::ostream& out, const Case& one) {
    return out << textOf(one.parts) << " start " << one.start << (one.wholeDays ? " days" : "")
               << (one.startCounts ? "" : " not counted") << " until " << one.until.value_or(0)
               << " gap " << one.gap;
}

// Days near which rules differ most, and others.
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

std::optional<std::int64_t> chance(int one, const std::function<std::int64_t()>& value) {
    return *from(1, one) == 1 ? std::optional(value()) : std::nullopt;
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

// ---- the reference

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

class Reference {
public:
    explicit Reference(const Case& one)
        : m_case(one)
        , m_rule(one.parts)
        , m_start(sys_days(days((one.start - one.start % secondsPerDay) / secondsPerDay))) {
        takeFromStart();
    }

    std::vector<std::int64_t> through(std::int64_t last) const {
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

private:
    using Periods = std::map<std::int64_t, std::vector<std::int64_t>>; // by their number

    void takeFromStart() {
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

    Periods periodsThrough(std::int64_t last) const {
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

    std::vector<std::int64_t> picked(const std::vector<std::int64_t>& period) const {
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

    sys_days weekBegin(sys_days day) const {
        while (weekdayOf(day) != m_rule.weekStart) {
            day -= days(1);
        }
        return day;
    }

    // The first week that has four days or more in the year.
    sys_days firstWeek(int year) const {
        const sys_days begin = weekBegin(newYear(year));
        return begin + days(7) - newYear(year) >= days(4) ? begin : begin + days(7);
    }

    int weekYear(sys_days day) const {
        int year = yearOf(day) + 1;
        while (firstWeek(year) > day) {
            --year;
        }
        return year;
    }

    bool passesWeek(sys_days day) const {
        const int year = weekYear(day);
        const auto number = static_cast<int>((day - firstWeek(year)).count() / 7) + 1;
        const auto many = static_cast<int>((firstWeek(year + 1) - firstWeek(year)).count() / 7);
        return contains(m_rule.weeks, number) || contains(m_rule.weeks, number - many - 1);
    }

    bool passesOrdinal(const std::vector<int>& ordinals, sys_days day, sys_days begin,
                       sys_days end) const {
        return contains(ordinals, static_cast<int>((day - begin).count()) + 1) ||
               contains(ordinals, static_cast<int>((day - end).count()));
    }

    bool passesWeekday(sys_days day, sys_days begin, sys_days end) const {
        int fromFront = 0;
        int fromBack = 0;
        for (sys_days other = begin; other < end; other += days(1)) {
            const bool isSame = weekdayOf(other) == weekdayOf(day);
            fromFront += isSame && other <= day ? 1 : 0;
            fromBack -= isSame && other >= day ? 1 : 0;
        }
        return std::any_of(m_rule.weekdayParts.begin(), m_rule.weekdayParts.end(),
                           [&](const NumberedWeekday& part) {
                               return part.weekday == weekdayOf(day) &&
                                      (part.number == 0 || part.number == fromFront ||
                                       part.number == fromBack);
                           });
    }

    bool passes(sys_days day) const {
        const std::chrono::year_month_day civil(day);
        const sys_days month = civil.year() / civil.month() / 1;
        const sys_days monthEnd =
            sys_days(civil.year() / civil.month() / std::chrono::last) + days(1);
        const sys_days year = newYear(yearOf(day));
        const sys_days yearEnd = newYear(yearOf(day) + 1);
        const bool countsInMonths =
            m_rule.frequency == Frequency::monthly || !m_rule.months.empty();
        return (m_rule.months.empty() ||
                contains(m_rule.months, static_cast<int>(unsigned(civil.month())))) &&
               (m_rule.weeks.empty() || passesWeek(day)) &&
               (m_rule.yearDays.empty() || passesOrdinal(m_rule.yearDays, day, year, yearEnd)) &&
               (m_rule.monthDays.empty() ||
                passesOrdinal(m_rule.monthDays, day, month, monthEnd)) &&
               (m_rule.weekdayParts.empty() ||
                (countsInMonths ? passesWeekday(day, month, monthEnd)
                                : passesWeekday(day, year, yearEnd)));
    }

    std::int64_t periodNumber(sys_days day) const {
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

    // A part that adds times: its own values, else those of the start. No clock shows a second 60.
    static std::set<std::int64_t> expanded(const std::vector<int>& numbers, std::int64_t start) {
        std::set<std::int64_t> result(numbers.begin(), numbers.end());
        if (numbers.empty()) {
            result.insert(start);
        }
        result.erase(60);
        return result;
    }

    std::int64_t startTime() const { return m_case.start % secondsPerDay; }

    void addTimes(sys_days day, Periods& periods) const {
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

    static bool narrows(const std::vector<int>& numbers, std::int64_t value) {
        return !numbers.empty() && !contains(numbers, static_cast<int>(value));
    }

    // Every hour, minute or second of the day.
    void addUnits(sys_days day, Periods& periods) const {
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

    const Case& m_case;
    RuleParts m_rule; // completed from the start
    sys_days m_start;
};

std::vector<std::int64_t> cut(const std::vector<std::int64_t>& localTimes, std::int64_t first,
                              std::int64_t last) {
    std::vector<std::int64_t> result;
    std::copy_if(localTimes.begin(), localTimes.end(), std::back_inserter(result),
                 [&](std::int64_t localTime) { return localTime >= first && localTime <= last; });
    return result;
}

// Two local times around the start, in order.
std::pair<std::int64_t, std::int64_t> randomWindow(const Case& one) {
    const auto [first, last] = std::minmax({one.randomLocalTime(), one.randomLocalTime()});
    return {first, last};
}

// ---- the properties

TEST(RecurrenceProperties, AgreesWithASlowReference) {
    std::size_t found = 0;
    EXPECT_TRUE(rc::check("agrees with a slow reference", [&found] {
        const Case one = randomCase();
        const auto [first, last] = randomWindow(one);
        const auto expected = cut(Reference(one).through(last), first, last);
        RC_ASSERT(one.localTimes(first, last) == expected);
        found += expected.size();
    }));
    EXPECT_GT(found, 10'000U);
}

TEST(RecurrenceProperties, AWindowIsCutFromALargerOne) {
    std::size_t found = 0;
    EXPECT_TRUE(rc::check("a window is cut from a larger one", [&found] {
        const Case one = randomCase();
        const auto [first, last] = randomWindow(one);
        const auto span = spanOf(one.parts.frequency) * secondsPerDay;
        const auto whole = one.localTimes(one.start - span, last + span / 20);
        RC_ASSERT(one.localTimes(first, last) == cut(whole, first, last));
        found += whole.size();
    }));
    EXPECT_GT(found, 10'000U);
}

TEST(RecurrenceProperties, AdjacentWindowsMakeOne) {
    std::size_t found = 0;
    EXPECT_TRUE(rc::check("adjacent windows make one", [&found] {
        const Case one = randomCase();
        const auto [first, last] = randomWindow(one);
        const std::int64_t between =
            first + static_cast<std::int64_t>(static_cast<double>(last - first) *
                                              (*from(0, 1000) / 1000.0));
        auto both = one.localTimes(first, between);
        const auto second = one.localTimes(between + 1, last);
        both.insert(both.end(), second.begin(), second.end());
        RC_ASSERT(one.localTimes(first, last) == both);
        found += both.size();
    }));
    EXPECT_GT(found, 10'000U);
}

// Taken for the end of the rule instead of its count, it changes nothing.
TEST(RecurrenceProperties, TheEndOfACountIsThatOfTheEnumeration) {
    std::size_t counted = 0;
    EXPECT_TRUE(rc::check("the end of a count is that of the enumeration", [&counted] {
        Case one = randomCase();
        one.parts.count = *from(1, 200);
        one.rule.count = one.parts.count;
        RecurrenceRequest asked = one.request(std::numeric_limits<std::int64_t>::min(), endOfTime);
        asked.budget = standardBudget;
        const CountEnd end = endOfCount(asked);
        RC_ASSERT(end.stepsSpent <= asked.budget);
        asked.to = end.lastLocalTime;
        const auto [first, last] = randomWindow(one);
        if (!end.isCounted) {
            const auto reached = expandRecurrence(asked).localTimes;
            if (!reached.empty()) {
                RC_ASSERT(end.lastLocalTime == reached.back());
            }
            return;
        }
        const auto all = one.localTimes(asked.from, endOfTime);
        std::set<std::int64_t> countedTimes;
        for (const std::int64_t localTime : all) {
            countedTimes.insert(one.existingLocalTime(localTime));
        }
        RC_ASSERT(std::ssize(countedTimes) <= one.parts.count);
        if (!all.empty()) {
            RC_ASSERT(end.lastLocalTime == all.back());
        }
        const auto expected = one.localTimes(first, last);
        one.rule.count.reset();
        one.until = end.lastLocalTime;
        RC_ASSERT(one.localTimes(first, last) == expected);
        ++counted;
    }));
    EXPECT_GT(counted, 700U);
}

// All that a hostile rule may say, whether its frequency has a use for it or not.
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

TEST(RecurrenceProperties, TheBudgetIsKept) {
    std::size_t spent = 0;
    EXPECT_TRUE(rc::check("the budget is respected", [&spent] {
        const RecurrenceRule rule = hostileRule();
        RecurrenceRequest request(rule);
        request.start = randomDay() * secondsPerDay + *from(0, 86399);
        request.wholeDays = *from(0, 3) == 0;
        request.from = request.start + *from(-1000, 100'000) * 7200;
        request.to = request.from + *rc::gen::element(0, 2, 366, 100'000) * secondsPerDay;
        request.budget = *rc::gen::element(1, 10, 2'000, 200'000);
        const RecurrenceStarts starts = expandRecurrence(request);
        RC_ASSERT(starts.stepsSpent <= request.budget);
        RC_ASSERT(std::ssize(starts.localTimes) <= request.budget + 1);
        RC_ASSERT(std::is_sorted(starts.localTimes.begin(), starts.localTimes.end()));
        RC_ASSERT(std::adjacent_find(starts.localTimes.begin(), starts.localTimes.end()) ==
                  starts.localTimes.end());
        if (rule.count) {
            RC_ASSERT(endOfCount(request).stepsSpent <= request.budget);
        }
        // What there is, is right as far as it goes.
        request.budget = 2 * standardBudget;
        const RecurrenceStarts more = expandRecurrence(request);
        RC_ASSERT(starts.localTimes.size() <= more.localTimes.size());
        RC_ASSERT(std::equal(starts.localTimes.begin(), starts.localTimes.end(),
                             more.localTimes.begin()));
        spent += starts.problem.empty() ? 0 : 1;
    }));
    EXPECT_GT(spent, 20U);
}

// ---- files

std::string randomEvent(int number) {
    const std::string uid = "UID:" + std::to_string(number);
    const std::string title = std::string("|SUMMARY:") + *rc::gen::element("a", "b");
    const std::string day = "202603" + std::to_string(*from(10, 14));
    const bool isAllDay = *from(0, 1) == 0;
    const std::string time = isAllDay ? "" : *rc::gen::element("T000000", "T090000");
    const std::string rule = *rc::gen::element<std::string>("", "", "|RRULE:FREQ=DAILY;COUNT=3",
                                                            "|RRULE:FREQ=WEEKLY;BYDAY=TU,WE");
    std::string text = eventText(uid + title + "|DTSTART:" + day + time + rule);
    if (!rule.empty() && *from(0, 1) == 0) { // the first instance is moved
        text += eventText(uid + "|SUMMARY:moved|RECURRENCE-ID:" + day + time +
                          "|DTSTART:20260312T090000");
    }
    return text;
}

std::vector<std::string> randomEvents() {
    std::vector<std::string> events;
    const int count = *from(1, 8);
    for (int i = 0; i < count; ++i) {
        events.push_back(randomEvent(i));
    }
    return events;
}

template <class T>
std::vector<T> shuffled(std::vector<T> list) {
    std::mt19937 random(static_cast<unsigned>(*from(0, 1'000'000)));
    std::shuffle(list.begin(), list.end(), random);
    return list;
}

std::vector<std::string> listed(const std::vector<CalendarSource>& sources) {
    FileCalendarStores stores(utcTimeZone(), [](const CalendarProblem& problem) {
        ADD_FAILURE() << problem.file << ": " << problem.what;
    });
    stores.setSources(sources);
    const auto store = stores.makeEventStore();
    const platform::NSDate begin = dateOf(*utcTimeZone(), {2026, 3, 9, 0, 0, 0});
    const platform::NSDate end = begin.dateByAddingTimeInterval(14 * 86400.0);
    std::vector<std::string> result;
    for (const auto& event : store->eventsMatchingPredicate({begin, end, store->calendars()})) {
        result.push_back(event->persistentEvent.eventIdentifier + " " + event->title.value_or("-") +
                         (event->isAllDay ? " day " : " ") +
                         std::to_string(event->startDate.timeIntervalSinceDate(begin)) + " " +
                         std::to_string(event->endDate.timeIntervalSinceDate(begin)));
    }
    return result;
}

std::string joined(const std::vector<std::string>& texts) {
    std::string result;
    for (const std::string& text : texts) {
        result += text;
    }
    return result;
}

TEST(OccurrenceProperties, TheOrderOfFilesAndEventsIsNoMatter) {
    std::size_t count = 0;
    EXPECT_TRUE(rc::check("the order of files and events is no matter", [&count] {
        std::vector<CalendarSource> sources;
        std::vector<CalendarSource> others;
        for (const char* name : {"one", "two", "three"}) {
            const auto events = randomEvents();
            sources.push_back(CalendarSource::inMemory(name, calendarText(joined(events))));
            others.push_back(
                CalendarSource::inMemory(name, calendarText(joined(shuffled(events)))));
        }
        const auto expected = listed(sources);
        RC_ASSERT(listed(shuffled(others)) == expected);
        count += expected.size();
    }));
    EXPECT_GT(count, 5'000U);
}

class FolderProperties : public StoreFixture {};

TEST_F(FolderProperties, TheNamesOfAFoldersFilesAreNoMatter) {
    constexpr int mostFolders = 100; // files are slow
    std::size_t count = 0;
    std::size_t number = 0;
    int folders = 0;
    EXPECT_TRUE(rc::check("the names of a folder's files are no matter", [&] {
        if (++folders > mostFolders) {
            return;
        }
        const auto events = randomEvents();
        const auto writeFiles = [&](const std::vector<std::string>& texts) {
            std::filesystem::remove_all(folder / "work");
            write("work/displayname", "Work");
            for (const std::string& text : texts) { // a name that was read before is not read again
                write("work/" + std::to_string(++number) + ".ics", calendarText(text));
            }
            return listed({CalendarSource::at((folder / "work").string())});
        };
        const auto expected = writeFiles(events);
        RC_ASSERT(writeFiles(shuffled(events)) == expected);
        count += expected.size();
    }));
    EXPECT_GT(count, 300U);
}

} // namespace
} // namespace quorvel::freedesktop
