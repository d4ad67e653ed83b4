// How the store searches: by range and calendar, and within its limits of time and number.
#include "tests/freedesktop/calendars/store/store_fixture.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <limits>

#include "base/civil_calendar.h"

namespace quorvel::freedesktop {
namespace {

using IcalStore = StoreFixture;

// ---- ranges and calendars

TEST_F(IcalStore, KeepsWhatOverlapsTheRange) {
    useText(eventText("UID:1|SUMMARY:before|DTSTART:20260310T080000|DTEND:20260310T100000") +
            eventText("UID:2|SUMMARY:reaches|DTSTART:20260310T080000|DTEND:20260310T100001") +
            eventText("UID:3|SUMMARY:instant|DTSTART:20260310T100000") +
            eventText("UID:4|SUMMARY:last|DTSTART:20260310T120000|DTEND:20260310T130000") +
            eventText("UID:5|SUMMARY:after|DTSTART:20260310T120001"));
    EXPECT_EQ(found("20260310T100000", "20260310T120000"),
              "reaches 20260310T080000-20260310T100001\n"
              "instant 20260310T100000-20260310T100000\n"
              "last 20260310T120000-20260310T130000\n");
}

TEST_F(IcalStore, AsksAgainWithinTheHourAsIfForTheFirstTime) {
    useText(eventText("UID:1|SUMMARY:ends|DTSTART:20260310T080000|DTEND:20260310T103000") +
            eventText("UID:2|SUMMARY:stays|DTSTART:20260310T110000|DTEND:20260310T120000"));
    const std::string stays = "stays 20260310T110000-20260310T120000\n";
    EXPECT_EQ(found("20260310T101500", "20260310T235959"),
              "ends 20260310T080000-20260310T103000\n" + stays);
    EXPECT_EQ(found("20260310T104500", "20260310T235959"), stays);
    EXPECT_EQ(found("20260310T101500", "20260310T103000"),
              "ends 20260310T080000-20260310T103000\n");
    const auto store = stores.makeEventStore();
    EXPECT_TRUE(
        store->eventsMatchingPredicate({date("20260310T101500"), date("20260310T235959"), {}})
            .empty());
}

TEST_F(IcalStore, SearchesTheGivenCalendarsOnly) {
    stores.setSources({CalendarSource::inMemory(
                           "one", calendarText(eventText("UID:1|SUMMARY:a|DTSTART:20260310"))),
                       CalendarSource::inMemory(
                           "two", calendarText(eventText("UID:2|SUMMARY:b|DTSTART:20260310")))});
    const auto store = stores.makeEventStore();
    const auto calendars = store->calendars();
    ASSERT_EQ(calendars.size(), 2U);
    const auto count = [&](const platform::EKCalendars& wanted) {
        return store->eventsMatchingPredicate({date("20260310"), date("20260311"), wanted}).size();
    };
    EXPECT_EQ(count(calendars), 2U);
    EXPECT_EQ(count({calendars[1], nullptr}), 1U);
    EXPECT_EQ(count({}), 0U);
    EXPECT_EQ(store->calendarWithIdentifier(calendars[0]->calendarIdentifier), calendars[0]);
    EXPECT_EQ(store->calendarWithIdentifier("none"), nullptr);
}

TEST_F(IcalStore, CutsARangeToFourYears) {
    useText(eventText("UID:1|DTSTART;VALUE=DATE:20200101|RRULE:FREQ=YEARLY"));
    EXPECT_EQ(events("20210101T120000", "20400101").size(), 5U); // 2021 is still going on
    EXPECT_EQ(events("20400101", "20210101").size(), 0U);
    const auto store = stores.makeEventStore();
    const double endless = std::numeric_limits<double>::infinity();
    EXPECT_TRUE(
        store->eventsMatchingPredicate({{-endless}, {endless}, store->calendars()}).empty());
    EXPECT_TRUE(store
                    ->eventsMatchingPredicate(
                        {{std::numeric_limits<double>::quiet_NaN()}, {0}, store->calendars()})
                    .empty());
}

// A narrow search finds what a wide one finds there: nothing is passed over by its day.
TEST_F(IcalStore, DenseRulesAreFoundFarFromTheirStart) {
    const std::string rule = "RRULE:FREQ=MINUTELY;BYSECOND=0,10,20,30,40,50";
    useText(eventText("UID:1|DTSTART:20050301T000000Z|" + rule) +
            eventText("UID:2|DTSTART;TZID=America/New_York:20050301T000000|" + rule));
    EXPECT_EQ(events("20260310T120000", "20260310T121000").size(), 2 * 61U);
    EXPECT_EQ(events("20260329T020000", "20260329T031000").size(), 2 * 61U)
        << "over a clock change";
    EXPECT_EQ(problems, "");
}

// Of such a rule even a week holds more than can be found.
TEST_F(IcalStore, EverySecondIsFoundWhereItIsAskedFor) {
    useText(eventText("UID:1|DTSTART:20050301T000000Z|RRULE:FREQ=SECONDLY"));
    EXPECT_EQ(events("20260312T120000", "20260312T130000").size(), 3601U);
    EXPECT_EQ(events("20260312T123000", "20260312T130000").size(), 1801U);
    EXPECT_EQ(events("20260312T140000", "20260312T150000").size(), 3601U) << "another hour";
    EXPECT_EQ(problems, "");
}

TEST_F(IcalStore, NarrowSearchesAgreeWithAWideOne) {
    std::string content;
    const char* zones[] = {"", ";TZID=Pacific/Kiritimati", ";TZID=Pacific/Pago_Pago",
                           ";TZID=Asia/Kathmandu"};
    for (int i = 0; i < 60; ++i) {
        const std::string day = std::to_string(20260301 + i % 28);
        const std::string uid = "UID:" + std::to_string(i) + "|SUMMARY:" + std::to_string(i);
        content += eventText(uid + "|DTSTART" + zones[i % 4] + ":" + day + "T" +
                             std::to_string(100000 + (i % 14) * 10000) + "|DURATION:P" +
                             std::to_string(i % 5) + "DT" + std::to_string(i % 30) + "H" +
                             (i % 3 == 0 ? "|RRULE:FREQ=DAILY;INTERVAL=9;COUNT=3" : "") +
                             (i % 7 == 0 ? "|RDATE:20260215T120000Z,20260401T000000Z" : ""));
        content += eventText(uid + "d|DTSTART;VALUE=DATE:" + day);
    }
    useText(content);
    const auto wide = events("20260101", "20260601");
    ASSERT_GT(wide.size(), 150U);
    const platform::NSDate first = date("20260210");
    for (int hours = 0; hours < 24 * 60; hours += 5) {
        const platform::NSDate from = first.dateByAddingTimeInterval(hours * 3600.0);
        const platform::NSDate to = from.dateByAddingTimeInterval(7200);
        std::vector<std::string> expected;
        for (const auto& event : wide) {
            if ((event->endDate > from || event->startDate == from) && event->startDate <= to) {
                expected.push_back(event->persistentEvent.eventIdentifier);
            }
        }
        std::vector<std::string> narrow;
        const auto store = stores.makeEventStore();
        for (const auto& event : store->eventsMatchingPredicate({from, to, store->calendars()})) {
            narrow.push_back(event->persistentEvent.eventIdentifier);
        }
        EXPECT_EQ(narrow, expected) << hours;
    }
}

// ---- hostile and crowded files

TEST_F(IcalStore, HostileEventsLoseNobodyElse) {
    std::string content;
    for (int i = 0; i < 200; ++i) {
        content += eventText("UID:h" + std::to_string(i) +
                             "|SUMMARY:h|DTSTART:19700101T000000|RRULE:FREQ=HOURLY;COUNT=99999999;"
                             "BYMONTH=2;BYMONTHDAY=30");
    }
    content +=
        eventText("UID:s|SUMMARY:h|DTSTART:19700101T000000|RRULE:FREQ=SECONDLY;COUNT=2000000000");
    useText(content + eventText("UID:good|SUMMARY:good|DTSTART:20260310T100000"));
    const auto before = std::chrono::steady_clock::now();
    const std::string all = found("20260310", "20260311");
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - before;
    EXPECT_EQ(all, "good 20260310T100000-20260310T100000\n");
    EXPECT_LT(taken.count(), 20.0);
    EXPECT_NE(problems.find("a recurrence rule is not followed to its end"), std::string::npos);
}

TEST_F(IcalStore, HostileRepeatsAreBoundedTogether) {
    std::string text;
    for (int i = 0; i < 200; ++i) {
        text +=
            eventText("UID:" + std::to_string(i) + "|DTSTART:20260310T000000Z|RRULE:FREQ=SECONDLY");
    }
    useText(text + eventText("UID:single|SUMMARY:single|DTSTART:20260311T000000Z"));
    const auto found = events("20260310", "20260312");
    EXPECT_GT(found.size(), 37'000U);
    EXPECT_LE(found.size(), 37'501U);
    EXPECT_TRUE(std::any_of(found.begin(), found.end(),
                            [](const auto& event) { return event->title == "single"; }));
    EXPECT_NE(problems.find("too many"), std::string::npos);
}

// Half of what is left is a calendar's share, however many events others have.
TEST_F(IcalStore, CrowdedDayIsSharedByTheCalendars) {
    const auto crowd = [](int count) {
        std::string text;
        for (int i = 0; i < count; ++i) {
            text += eventText("UID:" + std::to_string(i) + "|DTSTART:20260310T100000");
        }
        return calendarText(text);
    };
    write("a.ics", crowd(50'003));
    write("b.ics", crowd(30'000));
    write("c.ics", crowd(1));
    stores.setSources({CalendarSource::at(folder)});
    EXPECT_EQ(events("20260310", "20260311").size(), 50'000U + 25'000U + 1);
    const std::string left = ": there are too many events: from this one on they are left out\n";
    EXPECT_EQ(problems, (folder / "a.ics").string() + ":200003" + left +
                            (folder / "b.ics").string() + ":100003" + left);
    write("a.ics", crowd(3));
    EXPECT_EQ(events("20260310", "20260311").size(), 3U + 30'000U + 1)
        << "what was cut before is not taken as it was";
}

// ---- many events of one UID

// A moment so many seconds into March 2026, as an iCalendar writes it in UTC.
std::string momentText(int seconds) {
    const CivilTime time = civilFromSeconds(civilSeconds({2026, 3, 1, 0, 0, 0}) + seconds);
    char text[24];
    std::snprintf(text, sizeof text, "%04d%02d%02dT%02d%02d%02dZ", time.year, time.month, time.day,
                  time.hour, time.minute, time.second);
    return text;
}

// Lines of a thousand moments each, a second apart.
std::string momentLines(const std::string& property, int count) {
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += (i % 1000 == 0 ? "|" + property + ":" : ",") + momentText(i);
    }
    return text;
}

double processorSeconds() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

constexpr double mostSeconds = 20; // with sanitizers; quadratic time would be minutes

TEST_F(IcalStore, ShowsEveryEventOfOneUidThatIsEquallyNew) {
    std::string text;
    for (int i = 0; i < 300; ++i) {
        text += eventText("UID:1|DTSTART:" + momentText(i * 3600));
    }
    useText(text);
    EXPECT_EQ(events("20260301", "20260320").size(), 300U);
    EXPECT_EQ(problems, "");
}

TEST_F(IcalStore, ManyEventsOfOneUidTakeNoQuadraticTime) {
    std::string text;
    for (int i = 0; i < 100'000; ++i) {
        text += eventText("UID:1|DTSTART:" + momentText(i * 3600));
    }
    const double before = processorSeconds();
    useText(text);
    EXPECT_EQ(events("20260309T120000Z", "20260310T113000Z").size(), 24U);
    EXPECT_LT(processorSeconds() - before, mostSeconds);
}

TEST_F(IcalStore, ManyOverriddenEventsOfOneUidTakeNoQuadraticTime) {
    std::string text;
    for (int i = 0; i < 20'000; ++i) {
        const std::string time = momentText(i);
        text += eventText("UID:1|SUMMARY:e|DTSTART:" + time) +
                eventText("UID:1|SUMMARY:o|RECURRENCE-ID:" + time + "|DTSTART:" + time);
    }
    const double before = processorSeconds();
    useText(text);
    const auto all = events("20260301", "20260302");
    EXPECT_EQ(std::count_if(all.begin(), all.end(),
                            [](const auto& event) { return event->title == "o"; }),
              20'000);
    EXPECT_EQ(all.size(), 20'000U);
    EXPECT_LT(processorSeconds() - before, mostSeconds);
}

TEST_F(IcalStore, ManyOverridesOfOneInstanceTakeNoQuadraticTime) {
    std::string text = eventText("UID:1|SUMMARY:e|DTSTART:20260310T090000Z");
    for (int i = 0; i < 20'000; ++i) {
        text += eventText("UID:1|SUMMARY:" + std::to_string(i) +
                          "|RECURRENCE-ID:20260310T090000Z|DTSTART:20260310T100000Z");
    }
    const double before = processorSeconds();
    useText(text);
    EXPECT_EQ(found("20260310", "20260311"), "19999 20260310T110000-20260310T110000\n");
    EXPECT_LT(processorSeconds() - before, mostSeconds);
}

TEST_F(IcalStore, ManyExceptionsOfManyOldOverridesTakeNoQuadraticTime) {
    std::string text = eventText("UID:1|SEQUENCE:1|SUMMARY:e|DTSTART:20260310T090000Z" +
                                 momentLines("EXDATE", 20'000));
    for (int i = 0; i < 20'000; ++i) {
        text += eventText("UID:1|SUMMARY:o|RECURRENCE-ID:" + momentText(i) +
                          "|DTSTART:20260310T100000Z");
    }
    const double before = processorSeconds();
    useText(text);
    EXPECT_EQ(found("20260310", "20260311"), "e 20260310T100000-20260310T100000\n");
    EXPECT_LT(processorSeconds() - before, mostSeconds);
}

TEST_F(IcalStore, NamesTheLimitOfOverridesThatHoldForWhatFollows) {
    std::string text = eventText("UID:1|SUMMARY:e|DTSTART:20260301T000000Z|RRULE:FREQ=HOURLY");
    for (int i = 0; i < 101; ++i) {
        const std::string time = momentText(i * 3600);
        text += eventText("UID:1|RECURRENCE-ID;RANGE=THISANDFUTURE:" + time + "|DTSTART:" + time);
    }
    useText(text);
    events("20260301", "20260302");
    EXPECT_EQ(problems, "test:3: more than 100 of its overrides hold for what follows; the later "
                        "ones are left out of that\n");
}

TEST_F(IcalStore, NamesTheLimitOfListedDates) {
    useText(eventText("UID:1|SUMMARY:e|DTSTART:20260301T000000Z" + momentLines("RDATE", 100'001)));
    events("20260301", "20260302");
    EXPECT_NE(problems.find("more than 100000 of its dates"), std::string::npos) << problems;
}

} // namespace
} // namespace quorvel::freedesktop
