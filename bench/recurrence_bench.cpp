// What repeating events cost, of which most have nothing to show: the two-day window over events
// that began in the four years before it, ours and libical's side by side.
//   Engine: the rule's text read, counted and expanded, as the calendars' store does it
//   EngineCounted: the same with each COUNT counted before, as in all but the first search
//   Libical: icalrecurrencetype_from_string and an icalrecur_iterator set to the window's beginning
// The last lines compare the two in turns. With --target it fails where a target is missed.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <libical/ical.h>

#include "freedesktop/calendar/ics_values.h"
#include "freedesktop/calendar/recurrence/recurrence.h"
#include "freedesktop/calendar/zone_clock.h"

namespace {

using namespace quorvel::freedesktop;
using namespace quorvel::freedesktop::recurrence;
using std::chrono::steady_clock;

constexpr int eventCount = 5300;
constexpr int years = 4;
constexpr std::int64_t secondsPerDay = 86400;
constexpr std::int64_t windowFrom = 20522 * secondsPerDay; // 2026-03-10
constexpr std::int64_t windowTo = windowFrom + 2 * secondsPerDay;
constexpr double greatestMilliseconds = 10;
constexpr double leastRatio = 20;

struct RepeatingEvent {
    std::int64_t start = 0;
    bool wholeDays = false;
    std::string rule;
    std::int64_t countEnd = 0; // where the rule has a COUNT
};

std::string untilText(std::int64_t reading) {
    const CivilTime time = ics::civilFromSeconds(reading);
    char text[32];
    std::snprintf(text, sizeof text, "%04d%02d%02dT%02d%02d%02d", time.year, time.month, time.day,
                  time.hour, time.minute, time.second);
    return text;
}

// What people's calendars hold: mostly weekly and yearly, some daily and monthly.
std::string ruleText(int number, std::int64_t start) {
    const std::string day = std::to_string(ics::civilFromSeconds(start).day % 28 + 1);
    const std::string count = std::to_string(5 + number % 60);
    const std::string until = untilText(start + (100 + number % 1000) * secondsPerDay);
    const std::string rules[] = {
        "FREQ=WEEKLY",
        "FREQ=WEEKLY;BYDAY=MO,WE,FR",
        "FREQ=YEARLY",
        "FREQ=WEEKLY;INTERVAL=2;BYDAY=TU",
        "FREQ=DAILY",
        "FREQ=WEEKLY;BYDAY=MO,TU,WE,TH,FR;UNTIL=" + until,
        "FREQ=MONTHLY;BYMONTHDAY=" + day,
        "FREQ=MONTHLY;BYDAY=2TU",
        "FREQ=WEEKLY;COUNT=" + count + ";BYDAY=TU,TH",
        "FREQ=YEARLY;BYMONTH=3;BYMONTHDAY=" + day,
        "FREQ=MONTHLY;BYDAY=-1FR",
        "FREQ=DAILY;COUNT=" + count,
        "FREQ=WEEKLY;WKST=SU;INTERVAL=3;BYDAY=SU,SA",
        "FREQ=MONTHLY;INTERVAL=3",
        "FREQ=YEARLY;BYMONTH=11;BYDAY=4TH",
        "FREQ=MONTHLY;BYDAY=MO,TU,WE,TH,FR;BYSETPOS=-1",
        "FREQ=DAILY;INTERVAL=3;UNTIL=" + until,
        "FREQ=MONTHLY;COUNT=" + count + ";BYMONTHDAY=-1",
    };
    return rules[static_cast<std::size_t>(number) % std::size(rules)];
}

std::vector<RepeatingEvent> makeEvents() {
    std::vector<RepeatingEvent> events;
    for (int i = 0; i < eventCount; ++i) {
        RepeatingEvent event;
        const std::int64_t daysBefore = static_cast<std::int64_t>(i) * 7919 % (years * 365) + 1;
        event.wholeDays = i % 5 == 0;
        event.start = windowFrom - daysBefore * secondsPerDay;
        event.start += event.wholeDays ? 0 : (7 * 4 + i % 48) * 900;
        event.rule = ruleText(i, event.start);
        events.push_back(std::move(event));
    }
    return events;
}

// The user's clock, which knows the window's days after the first search.
ics::ZoneClock& userClock() {
    static ics::ZoneClock clock(TimeZone::named("Europe/Berlin"));
    return clock;
}

std::size_t occurrences(RepeatingEvent& event, bool isCounted) {
    auto [rule, problem] = readRecurrenceRule(event.rule);
    if (!rule) {
        std::fprintf(stderr, "recurrence_bench: %s: %s\n", event.rule.c_str(), problem.c_str());
        std::exit(1);
    }
    const auto until = ics::untilOf(event.rule);
    RecurrenceRequest request(*rule);
    request.start = event.start;
    request.wholeDays = event.wholeDays;
    request.from = windowFrom;
    request.to = windowTo;
    if (until) {
        request.until = ics::civilSeconds(until->civil);
    }
    if (!event.wholeDays) {
        request.exists = [](std::int64_t reading) { return userClock().exists(reading); };
    }
    if (rule->count) {
        if (!isCounted) {
            event.countEnd = endOfCount(request).reading;
        }
        request.until = event.countEnd;
        rule->count.reset();
    }
    return expandRecurrence(request).readings.size();
}

std::size_t search(std::vector<RepeatingEvent>& events, bool isCounted) {
    std::size_t found = 0;
    for (RepeatingEvent& event : events) {
        found += occurrences(event, isCounted);
    }
    return found;
}

icaltimetype icalTime(std::int64_t reading, bool isDate) {
    const CivilTime civil = ics::civilFromSeconds(reading);
    icaltimetype time = icaltime_null_time();
    time.year = civil.year;
    time.month = civil.month;
    time.day = civil.day;
    time.hour = isDate ? 0 : civil.hour;
    time.minute = isDate ? 0 : civil.minute;
    time.second = isDate ? 0 : civil.second;
    time.is_date = isDate ? 1 : 0;
    return time;
}

struct IteratorDeleter {
    void operator()(icalrecur_iterator* iterator) const { icalrecur_iterator_free(iterator); }
};

std::size_t libicalOccurrences(const RepeatingEvent& event) {
    const icalrecurrencetype rule = icalrecurrencetype_from_string(event.rule.c_str());
    const std::unique_ptr<icalrecur_iterator, IteratorDeleter> iterator(
        icalrecur_iterator_new(rule, icalTime(event.start, event.wholeDays)));
    const icaltimetype from = icalTime(windowFrom, event.wholeDays);
    const icaltimetype to = icalTime(windowTo, event.wholeDays);
    icalrecur_iterator_set_start(iterator.get(), from); // does nothing for a COUNT
    std::size_t found = 0;
    while (true) {
        const icaltimetype next = icalrecur_iterator_next(iterator.get());
        if (icaltime_is_null_time(next) || icaltime_compare(next, to) > 0) {
            return found;
        }
        found += icaltime_compare(next, from) >= 0 ? 1 : 0;
    }
}

std::size_t libicalSearch(const std::vector<RepeatingEvent>& events) {
    std::size_t found = 0;
    for (const RepeatingEvent& event : events) {
        found += libicalOccurrences(event);
    }
    return found;
}

void Engine(benchmark::State& state) {
    auto events = makeEvents();
    for (auto _ : state) {
        benchmark::DoNotOptimize(search(events, false));
    }
    state.counters["found"] = static_cast<double>(search(events, false));
}
BENCHMARK(Engine)->Unit(benchmark::kMillisecond);

void EngineCounted(benchmark::State& state) {
    auto events = makeEvents();
    search(events, false);
    for (auto _ : state) {
        benchmark::DoNotOptimize(search(events, true));
    }
}
BENCHMARK(EngineCounted)->Unit(benchmark::kMillisecond);

void Libical(benchmark::State& state) {
    const auto events = makeEvents();
    for (auto _ : state) {
        benchmark::DoNotOptimize(libicalSearch(events));
    }
    state.counters["found"] = static_cast<double>(libicalSearch(events));
}
BENCHMARK(Libical)->Unit(benchmark::kMillisecond);

template <class Work>
double milliseconds(Work work) {
    const auto begin = steady_clock::now();
    benchmark::DoNotOptimize(work());
    return std::chrono::duration<double, std::milli>(steady_clock::now() - begin).count();
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// In turns, so that a noisy machine is noisy for both.
bool meetsTargets() {
    constexpr int rounds = 11;
    auto events = makeEvents();
    std::vector<double> ours;
    std::vector<double> theirs;
    std::vector<double> ratios;
    for (int i = 0; i < rounds; ++i) {
        ours.push_back(milliseconds([&] { return search(events, false); }));
        theirs.push_back(milliseconds([&] { return libicalSearch(events); }));
        ratios.push_back(theirs.back() / ours.back());
    }
    std::printf("%d repeating events, two days: ours %.2f ms (target %.0f), libical %.1f ms, "
                "%.1f times faster (target %.0f)\n",
                eventCount, median(ours), greatestMilliseconds, median(theirs), median(ratios),
                leastRatio);
    return median(ours) <= greatestMilliseconds && median(ratios) >= leastRatio;
}

} // namespace

int main(int argc, char** argv) {
    const bool mustMeet = argc > 1 && std::strcmp(argv[1], "--target") == 0;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return meetsTargets() || !mustMeet ? EXIT_SUCCESS : EXIT_FAILURE;
}
