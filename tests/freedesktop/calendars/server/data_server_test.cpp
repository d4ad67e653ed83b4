// The store against a real calendar server.
#include <atomic>
#include <chrono>
#include <thread>

#include <gmock/gmock.h>

#include "freedesktop/calendars/server/bus_sources_search.h"
#include "freedesktop/calendars/server/started_data_server.h"
#include "freedesktop/calendars/store/server_calendar_stores.h"
#include "freedesktop/dates/instant_text.h"
#include "tests/freedesktop/calendars/server/server_fixture.h"

namespace quorvel::freedesktop {
namespace {

using namespace testing_eds;
using std::chrono::steady_clock;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

double secondsSince(steady_clock::time_point begin) {
    return std::chrono::duration<double>(steady_clock::now() - begin).count();
}

class DataServerTest : public ServerTest {
protected:
    DataServerTest() {
        addCalendar({"test-home", "A home", "#336699"});
        addCalendar({"test-work", "B work", "#aabbcc", false});
    }

    void makeStores(DataServerWaits waits = {}) {
        stores = std::make_unique<ServerCalendarStores>(
            std::make_unique<eds::StartedDataServer>(QUORVEL_EDS_MODULE,
                                                     std::make_unique<eds::BusSourcesSearch>()),
            zone,
            [this](const CalendarProblem& problem) {
                problems += problem.file + ": " + problem.what.english() + "\n";
            },
            waits);
    }

    platform::NSDate at(std::string_view text) const { return parseInstant(text, *zone).value(); }

    std::string localTimeText(platform::NSDate instant) const {
        const CivilTime time = localTime(*zone, instant);
        char text[40];
        std::snprintf(text, sizeof text, "%02d%02dT%02d%02d%02d", time.month, time.day, time.hour,
                      time.minute, time.second);
        return text;
    }

    platform::EKEvents events(std::string_view from, std::string_view to) {
        if (!stores) {
            makeStores();
        }
        const auto store = stores->makeEventStore();
        return store->eventsMatchingPredicate({at(from), at(to), store->calendars()});
    }

    // "title start-end" an entry, in the user's zone; all-day ones with a "D".
    std::vector<std::string> found(std::string_view from = "2026-03-10T00:00",
                                   std::string_view to = "2026-03-12T00:00") {
        std::vector<std::string> result;
        for (const auto& event : events(from, to)) {
            result.push_back(event->title.value_or("-") + (event->isAllDay ? " D " : " ") +
                             localTimeText(event->startDate) + "-" + localTimeText(event->endDate));
        }
        return result;
    }

    // Asks repeatedly, as a host does that is notified of changes.
    bool isFoundIn(double seconds, const std::vector<std::string>& expected) {
        const auto begin = steady_clock::now();
        while (secondsSince(begin) < seconds) {
            if (found() == expected) {
                return true;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
        return false;
    }

    void addDaily(const std::string& calendar = "test-home") {
        add(calendar, eventText("UID:daily|SUMMARY:Daily|DTSTART:20260301T120000Z|"
                                "DTEND:20260301T130000Z|RRULE:FREQ=DAILY"));
    }
    void addSingle(const std::string& calendar = "test-home", const std::string& title = "Once") {
        add(calendar, eventText("UID:once-" + title + "|SUMMARY:" + title +
                                "|DTSTART:20260310T080000Z|DTEND:20260310T090000Z"));
    }

    std::shared_ptr<const TimeZone> zone = namedTimeZone("Europe/Berlin");
    std::string problems;
    std::unique_ptr<ServerCalendarStores> stores;
};

TEST_F(DataServerTest, EnabledCalendarsHaveNamesColoursAndIdentifiersAndComeByTitle) {
    addCalendar({"test-off", "C disabled", "#112233", true, false});
    makeStores();
    const auto store = stores->makeEventStore();
    std::vector<std::string> titles;
    for (const auto& calendar : store->calendars()) {
        titles.push_back(calendar->title);
    }
    EXPECT_THAT(titles, ElementsAre("A home", "B work", "Birthdays & Anniversaries", "Personal"));
    const auto home = store->calendarWithIdentifier("test-home");
    ASSERT_TRUE(home);
    EXPECT_EQ(home->title, "A home");
    EXPECT_EQ(home->CGColor, (platform::UIColor{0x33 / 255.0, 0x66 / 255.0, 0x99 / 255.0, 1}));
    EXPECT_EQ(store->calendarWithIdentifier("test-off"), nullptr);
    EXPECT_THAT(stores->deselectedCalendars(), ElementsAre("test-work"));
    EXPECT_TRUE(stores->hasCalendar("test-work"));
    EXPECT_EQ(problems, "");
}

TEST_F(DataServerTest, OccurrencesOfEveryKindAreFoundInTheirPlaces) {
    add("test-home", eventText("UID:zoned|SUMMARY:Zoned|"
                               "DTSTART;TZID=/freeassociation.sourceforge.net/America/New_York:"
                               "20260310T090000|DTEND;TZID=/freeassociation.sourceforge.net/"
                               "America/New_York:20260310T100000"));
    add("test-home", eventText("UID:floating|SUMMARY:Floating|DTSTART:20260310T090000|"
                               "DTEND:20260310T093000"));
    add("test-home", eventText("UID:day|SUMMARY:Day|DTSTART;VALUE=DATE:20260310|"
                               "DTEND;VALUE=DATE:20260311"));
    add("test-work", eventText("UID:days|SUMMARY:Days|DTSTART;VALUE=DATE:20260309|"
                               "DTEND;VALUE=DATE:20260311"));
    add("test-work", eventText("UID:weekly|SUMMARY:Weekly|DTSTART;TZID=Europe/Berlin:"
                               "20260303T150000|DTEND;TZID=Europe/Berlin:20260303T153000|"
                               "RRULE:FREQ=DAILY;COUNT=9|EXDATE;TZID=Europe/Berlin:"
                               "20260310T150000"));
    EXPECT_THAT(found(),
                ElementsAre("Days D 0309T000000-0310T235959", "Day D 0310T000000-0310T235959",
                            "Floating 0310T090000-0310T093000", "Zoned 0310T140000-0310T150000",
                            "Weekly 0311T150000-0311T153000"));
    EXPECT_EQ(problems, "");
}

TEST_F(DataServerTest, AZoneThatIsKnownNowhereElseIsTheServers) {
    const std::string definition =
        "BEGIN:VTIMEZONE\r\nTZID:Our Office\r\nBEGIN:STANDARD\r\nDTSTART:19700101T000000\r\n"
        "TZOFFSETFROM:+0530\r\nTZOFFSETTO:+0530\r\nEND:STANDARD\r\nEND:VTIMEZONE\r\n";
    addZone("test-home", definition);
    add("test-home", eventText("UID:office|SUMMARY:Office|DTSTART;TZID=Our Office:20260310T120000|"
                               "DTEND;TZID=Our Office:20260310T130000"));
    EXPECT_THAT(found(), ElementsAre("Office 0310T073000-0310T083000"));
}

TEST_F(DataServerTest, IdentifiersNameTheCalendarTheEventAndTheOccurrence) {
    addSingle();
    addDaily();
    const auto store = events("2026-03-10T00:00", "2026-03-11T00:00");
    ASSERT_EQ(store.size(), 2U);
    EXPECT_EQ(store[0]->persistentEvent.eventIdentifier, "test-home:once-Once");
    const auto noon = static_cast<long>(at("2026-03-10T12:00Z").timeIntervalSinceReferenceDate);
    EXPECT_EQ(store[1]->persistentEvent.eventIdentifier,
              "test-home:daily:RID=" + std::to_string(noon));
    EXPECT_EQ(store[1]->calendar->calendarIdentifier, "test-home");
}

// The calendar stays loaded, as this test is its client.
TEST_F(DataServerTest, AnOccurrenceThatIsChangedWhileTheCalendarIsLoadedIsFound) {
    addDaily();
    ASSERT_THAT(found(),
                ElementsAre("Daily 0310T130000-0310T140000", "Daily 0311T130000-0311T140000"));
    modify("test-home",
           eventText("UID:daily|SUMMARY:Moved|RECURRENCE-ID:20260310T120000Z|"
                     "DTSTART:20260310T160000Z|DTEND:20260310T163000Z"),
           E_CAL_OBJ_MOD_THIS);
    modify("test-home",
           eventText("UID:daily|SUMMARY:From afar|RECURRENCE-ID:20260601T120000Z|"
                     "DTSTART:20260310T180000Z|DTEND:20260310T183000Z"),
           E_CAL_OBJ_MOD_THIS);
    modify("test-home",
           eventText("UID:daily|SUMMARY:Far away|RECURRENCE-ID:20260311T120000Z|"
                     "DTSTART:20270311T120000Z|DTEND:20270311T123000Z"),
           E_CAL_OBJ_MOD_THIS);
    const std::vector<std::string> expected{"Moved 0310T170000-0310T173000",
                                            "From afar 0310T190000-0310T193000"};
    EXPECT_EQ(found(), expected);
    makeStores(); // and by a new connection
    EXPECT_EQ(found(), expected);
}

TEST_F(DataServerTest, ASingleEventThatIsMovedWhileTheCalendarIsLoadedIsFound) {
    add("test-home", eventText("UID:moving|SUMMARY:Moving|DTSTART:20250101T080000Z|"
                               "DTEND:20250101T090000Z"));
    EXPECT_THAT(found(), IsEmpty());
    modify("test-home",
           eventText("UID:moving|SUMMARY:Moving|DTSTART:20260310T080000Z|DTEND:20260310T090000Z"),
           E_CAL_OBJ_MOD_ALL);
    EXPECT_THAT(found(), ElementsAre("Moving 0310T090000-0310T100000"));
    remove("test-home", "moving");
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(DataServerTest, FloatingTimesAndDaysFollowTheUsersZone) {
    add("test-home", eventText("UID:floating|SUMMARY:Floating|DTSTART:20260310T090000|"
                               "DTEND:20260310T093000"));
    add("test-home", eventText("UID:day|SUMMARY:Day|DTSTART;VALUE=DATE:20260310"));
    makeStores();
    for (const char* const name : {"Asia/Tokyo", "America/New_York", "Pacific/Kiritimati"}) {
        zone = namedTimeZone(name);
        stores->setTimeZone(zone);
        EXPECT_THAT(
            found("2026-03-10T00:00", "2026-03-10T23:59"),
            ElementsAre("Day D 0310T000000-0310T235959", "Floating 0310T090000-0310T093000"))
            << name;
    }
}

TEST_F(DataServerTest, RangesAreFoundWhereverTheyLie) {
    add("test-home", eventText("UID:old|SUMMARY:Old|DTSTART:19650310T080000Z|"
                               "DTEND:19650310T090000Z"));
    add("test-home", eventText("UID:new|SUMMARY:New|DTSTART:20990310T080000Z|"
                               "DTEND:20990310T090000Z"));
    EXPECT_THAT(found("1965-01-01T00:00", "1966-01-01T00:00"),
                ElementsAre("Old 0310T090000-0310T100000"));
    EXPECT_THAT(found("2099-01-01T00:00", "2100-01-01T00:00"),
                ElementsAre("New 0310T090000-0310T100000"));
    EXPECT_THAT(found("2026-01-02T00:00", "2026-01-01T00:00"), IsEmpty());
}

TEST_F(DataServerTest, AServerThatStandsStillIsNotWaitedForAndNamed) {
    addSingle();
    disconnect();
    makeStores({1, 0.2});
    ASSERT_THAT(found(), ElementsAre("Once 0310T090000-0310T100000"));
    stop(factoryProcesses());
    const auto begin = steady_clock::now();
    EXPECT_THAT(found(), IsEmpty());
    EXPECT_LT(secondsSince(begin), 0.4);
    EXPECT_GT(secondsSince(begin), 0.19);
    EXPECT_THAT(problems, HasSubstr("the calendar 'A home' of Evolution Data Server: it has not "
                                    "answered within 0.2 s"));
    EXPECT_FALSE(stores->anyReadable());
    goOn();
    EXPECT_TRUE(isFoundIn(5, {"Once 0310T090000-0310T100000"}));
    EXPECT_TRUE(stores->anyReadable());
}

TEST_F(DataServerTest, TheFirstWaitIsTheLonger) {
    addSingle();
    disconnect();
    kill(factoryProcesses());
    makeStores({0.6, 0.1});
    stop(registryProcess());
    auto begin = steady_clock::now();
    EXPECT_THAT(found(), IsEmpty());
    EXPECT_GT(secondsSince(begin), 0.59);
    EXPECT_LT(secondsSince(begin), 0.8);
    begin = steady_clock::now();
    EXPECT_THAT(found(), IsEmpty());
    EXPECT_LT(secondsSince(begin), 0.2);
    EXPECT_EQ(problems, "Evolution Data Server: it has not answered within 0.6 s: its events are "
                        "shown when it does\n");
    goOn();
    EXPECT_TRUE(isFoundIn(10, {"Once 0310T090000-0310T100000"}));
}

TEST_F(DataServerTest, AConnectionIsGivenUpAtOnceWhereTheServerStandsStill) {
    addSingle();
    disconnect();
    makeStores({3, 0.1});
    ASSERT_THAT(found(), ElementsAre("Once 0310T090000-0310T100000"));
    stop(factoryProcesses());
    stop(registryProcess());
    EXPECT_THAT(found(), IsEmpty());
    const auto begin = steady_clock::now();
    stores.reset();
    EXPECT_LT(secondsSince(begin), 0.5);
}

TEST_F(DataServerTest, AServerThatDiesIsFoundAgain) {
    addSingle();
    disconnect();
    makeStores({30, 30});
    ASSERT_THAT(found(), ElementsAre("Once 0310T090000-0310T100000"));
    kill(factoryProcesses());
    EXPECT_THAT(found(), ElementsAre("Once 0310T090000-0310T100000"));
    kill(registryProcess());
    EXPECT_THAT(found(), ElementsAre("Once 0310T090000-0310T100000"));
    kill(factoryProcesses());
    kill(registryProcess());
    EXPECT_THAT(found(), ElementsAre("Once 0310T090000-0310T100000"));
    EXPECT_EQ(problems, "");
}

class FollowedServerTest : public DataServerTest {
protected:
    void follow() {
        makeStores({30, 30});
        stores->setChangedHandler([this] {
            isCalledOnThisThread = isCalledOnThisThread || std::this_thread::get_id() == thisThread;
            ++changes;
        });
    }
    bool isToldIn(double seconds) {
        const auto begin = steady_clock::now();
        while (changes == 0 && secondsSince(begin) < seconds) {
            // The process has one registry, which emits its signals on the thread of the fixture.
            while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        return changes.exchange(0) > 0;
    }
    // What a change has left behind is over.
    void settle() {
        while (isToldIn(1.2)) {
        }
    }
    ~FollowedServerTest() override { stores.reset(); }

    std::atomic<int> changes = 0;
    const std::thread::id thisThread = std::this_thread::get_id();
    std::atomic<bool> isCalledOnThisThread = false;
};

TEST_F(FollowedServerTest, ChangesOfEventsAreTold) {
    follow();
    EXPECT_THAT(found(), IsEmpty());
    settle();
    addSingle();
    EXPECT_TRUE(isToldIn(40));
    EXPECT_THAT(found(), ElementsAre("Once 0310T090000-0310T100000"));
    modify("test-home",
           eventText("UID:once-Once|SUMMARY:Twice|DTSTART:20260310T080000Z|DTEND:20260310T090000Z"),
           E_CAL_OBJ_MOD_ALL);
    EXPECT_TRUE(isToldIn(40));
    EXPECT_THAT(found(), ElementsAre("Twice 0310T090000-0310T100000"));
    remove("test-home", "once-Once");
    EXPECT_TRUE(isToldIn(40));
    EXPECT_THAT(found(), IsEmpty());
    settle();
    stores->setChangedHandler(nullptr);
    EXPECT_THAT(found(), IsEmpty()); // the server has heard of it by then
    addSingle();
    EXPECT_FALSE(isToldIn(1.5));
}

// Some signals of the server come on the main thread; the handler must not be called there.
TEST_F(FollowedServerTest, ChangesAreToldOnTheWorkersThreadAlone) {
    addSingle();
    follow();
    EXPECT_THAT(found(), ElementsAre("Once 0310T090000-0310T100000"));
    settle();
    modify("test-home",
           eventText("UID:once-Once|SUMMARY:Twice|DTSTART:20260310T080000Z|DTEND:20260310T090000Z"),
           E_CAL_OBJ_MOD_ALL);
    EXPECT_TRUE(isToldIn(40));
    EXPECT_FALSE(isCalledOnThisThread);
}

TEST_F(FollowedServerTest, NothingIsToldWhereNothingChanges) {
    addSingle();
    follow();
    EXPECT_THAT(found(), ElementsAre("Once 0310T090000-0310T100000"));
    settle();
    for (int i = 0; i < 3; ++i) {
        EXPECT_THAT(found(), ElementsAre("Once 0310T090000-0310T100000"));
        EXPECT_FALSE(isToldIn(0.7));
    }
}

TEST_F(FollowedServerTest, AFollowedCalendarThatDoesNotChangeIsNotAskedAgain) {
    addSingle();
    follow();
    EXPECT_THAT(found(), ElementsAre("Once 0310T090000-0310T100000"));
    settle();
    stop(factoryProcesses());
    const auto begin = steady_clock::now();
    EXPECT_THAT(found(), ElementsAre("Once 0310T090000-0310T100000"));
    EXPECT_LT(secondsSince(begin), 0.2);
}

TEST_F(FollowedServerTest, AFollowedCalendarIsGivenUpAtOnceWhereTheServerStandsStill) {
    addSingle();
    follow();
    EXPECT_THAT(found(), ElementsAre("Once 0310T090000-0310T100000"));
    stop(factoryProcesses());
    stop(registryProcess());
    stores->setChangedHandler(nullptr);
    stores->setChangedHandler([this] { ++changes; });
    const auto begin = steady_clock::now();
    stores.reset();
    EXPECT_LT(secondsSince(begin), 0.5);
}

TEST_F(FollowedServerTest, ChangesOfCalendarsAreTold) {
    follow();
    EXPECT_THAT(found(), IsEmpty());
    settle();
    addCalendar({"test-third", "D third", "#000000"});
    EXPECT_TRUE(isToldIn(40));
    EXPECT_TRUE(stores->makeEventStore()->calendarWithIdentifier("test-third"));
    settle();
    changeCalendar("test-third", [](ESource* source) {
        e_source_selectable_set_selected(
            E_SOURCE_SELECTABLE(e_source_get_extension(source, E_SOURCE_EXTENSION_CALENDAR)),
            FALSE);
    });
    EXPECT_TRUE(isToldIn(40));
    stores->makeEventStore();
    EXPECT_THAT(stores->deselectedCalendars(), ElementsAre("test-work", "test-third"));
    settle();
    removeCalendar("test-third");
    EXPECT_TRUE(isToldIn(40));
    EXPECT_FALSE(stores->makeEventStore()->calendarWithIdentifier("test-third"));
}

TEST_F(FollowedServerTest, ADeathIsToldAndWhatComesAfterItToo) {
    addSingle();
    disconnect();
    follow();
    EXPECT_THAT(found(), ElementsAre("Once 0310T090000-0310T100000"));
    settle();
    kill(factoryProcesses());
    EXPECT_TRUE(isToldIn(40));
    EXPECT_THAT(found(), ElementsAre("Once 0310T090000-0310T100000"));
    settle();
    addSingle("test-work", "Other");
    EXPECT_TRUE(isToldIn(40));
    EXPECT_THAT(found(),
                ElementsAre("Once 0310T090000-0310T100000", "Other 0310T090000-0310T100000"));
}

TEST_F(FollowedServerTest, AnAnswerThatComesLateIsTold) {
    addSingle();
    disconnect();
    kill(factoryProcesses());
    kill(registryProcess());
    addCalendar({"test-late", "E late", "#000000"}); // starts the registry
    stop(registryProcess());
    makeStores({0.3, 0.3});
    stores->setChangedHandler([this] { ++changes; });
    EXPECT_THAT(found(), IsEmpty());
    EXPECT_FALSE(isToldIn(0.5));
    goOn();
    EXPECT_TRUE(isToldIn(40));
    EXPECT_TRUE(isFoundIn(5, {"Once 0310T090000-0310T100000"}));
}

} // namespace
} // namespace quorvel::freedesktop
