// Random rules: against a slow reference that tests every day (below a day at every hour, minute
// or second), against themselves in other windows, and against their budget.
//
// The seed is fixed, so that a run can be repeated; RC_PARAMS="seed=7 max_success=5000" goes
// elsewhere.
#include "icalendar/recurrence/recurrence.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <random>
#include <set>

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include "base/time_units.h"
#include "tests/freedesktop/calendars/store/recurrence/random_recurrence.h"
#include "tests/freedesktop/calendars/store/recurrence/recurrence_reference.h"
#include "tests/freedesktop/calendars/store/store_fixture.h"

namespace quorvel::freedesktop {
namespace {

using namespace icalendar;

const bool hasSeed = setenv("RC_PARAMS", "seed=20261121 max_success=1000", 0) == 0;

constexpr std::int64_t endOfTime = 253402300799; // the last second of 9999

std::vector<std::int64_t> cut(const std::vector<std::int64_t>& localTimes, std::int64_t first,
                              std::int64_t last) {
    std::vector<std::int64_t> result;
    std::copy_if(localTimes.begin(), localTimes.end(), std::back_inserter(result),
                 [&](std::int64_t localTime) { return localTime >= first && localTime <= last; });
    return result;
}

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
        ADD_FAILURE() << problem.file << ": " << problem.what.english();
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
