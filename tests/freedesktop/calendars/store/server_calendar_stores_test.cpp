// The store with a server that answers as the test chooses.
#include "freedesktop/calendars/store/server_calendar_stores.h"

#include <atomic>
#include <cmath>
#include <thread>

#include <gmock/gmock.h>

#include "freedesktop/calendars/store/background_calendar_stores.h"
#include "freedesktop/dates/instant_text.h"

namespace quorvel::freedesktop {
namespace {

using eds::CalendarEvents;
using eds::CalendarList;
using eds::ServerFailure;
using testing::ElementsAre;
using testing::IsEmpty;

double secondsUntil(eds::Deadline deadline) {
    return std::chrono::duration<double>(deadline - std::chrono::steady_clock::now()).count();
}

struct Script {
    eds::ServerResult<CalendarList> list{
        CalendarList{{"home", "Home", "#102030", true}, {"work:1", "Work", "#405060", false}}};
    std::map<std::string, CalendarEvents> events;
    double listTakes = 0; // seconds
    std::vector<double> waits;
    std::vector<std::vector<std::string>> asked;
};

class ScriptedServer final : public eds::DataServer {
public:
    explicit ScriptedServer(Script& script)
        : m_script(script) {}

    eds::ServerResult<CalendarList> calendars(eds::Deadline deadline) override {
        m_script.waits.push_back(secondsUntil(deadline));
        std::this_thread::sleep_for(std::chrono::duration<double>(m_script.listTakes));
        return m_script.list;
    }
    std::vector<CalendarEvents> events(const std::vector<std::string>& calendars,
                                       eds::SearchedRange, eds::Deadline deadline) override {
        m_script.waits.push_back(secondsUntil(deadline));
        m_script.asked.push_back(calendars);
        std::vector<CalendarEvents> result;
        for (const std::string& calendar : calendars) {
            result.push_back(m_script.events[calendar]);
        }
        return result;
    }
    void setChangedHandler(std::function<void()>) override {}

private:
    Script& m_script;
};

class ServerCalendarStoresTest : public testing::Test {
protected:
    ServerCalendarStoresTest()
        : stores(
              std::make_unique<ScriptedServer>(script), utcTimeZone(),
              [this](const CalendarProblem& problem) {
                  problems.push_back(problem.file + ": " + problem.what.english());
              },
              DataServerWaits{2, 1}) {
        script.events["home"] =
            answer({{"late", "Late", "20260310T160000Z"}, {"same", "Same", "20260310T120000Z"}});
        script.events["work:1"] =
            answer({{"early", "Early", "20260310T080000Z"}, {"same", "Same", "20260310T120000Z"}});
    }

    struct OneEvent {
        std::string uid;
        std::string title;
        std::string start;
    };
    static CalendarEvents answer(const std::vector<OneEvent>& events) {
        std::string text = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n";
        for (const OneEvent& event : events) {
            text += "BEGIN:VEVENT\r\nUID:" + event.uid + "\r\nSUMMARY:" + event.title +
                    "\r\nDTSTART:" + event.start + "\r\nDURATION:PT1H\r\nEND:VEVENT\r\n";
        }
        return {"", std::make_shared<const std::string>(text + "END:VCALENDAR\r\n")};
    }

    platform::EKEventPredicate today(platform::EKCalendars calendars) const {
        return {*parseInstant("2026-03-10T00:00", *utcTimeZone()),
                *parseInstant("2026-03-11T00:00", *utcTimeZone()), std::move(calendars)};
    }
    std::vector<std::string> found() {
        const auto store = stores.makeEventStore();
        std::vector<std::string> identifiers;
        for (const auto& event : store->eventsMatchingPredicate(today(store->calendars()))) {
            identifiers.push_back(event->persistentEvent.eventIdentifier);
        }
        return identifiers;
    }

    Script script;
    std::vector<std::string> problems;
    ServerCalendarStores stores;
};

TEST_F(ServerCalendarStoresTest, EventsOfAllCalendarsComeInTheStoresOrder) {
    EXPECT_THAT(found(), ElementsAre("work%3A1:early", "home:same", "work%3A1:same", "home:late"));
    EXPECT_THAT(problems, IsEmpty());
    EXPECT_TRUE(stores.anyReadable());
    EXPECT_THAT(stores.deselectedCalendars(), ElementsAre("work%3A1"));
}

TEST_F(ServerCalendarStoresTest, OnlyTheCalendarsThatAreWantedAreAsked) {
    const auto store = stores.makeEventStore();
    const auto work = store->calendarWithIdentifier("work%3A1");
    ASSERT_TRUE(work);
    EXPECT_EQ(store->eventsMatchingPredicate(today({work, nullptr})).size(), 2U);
    EXPECT_THAT(store->eventsMatchingPredicate(today({})), IsEmpty());
    auto backwards = today({work});
    std::swap(backwards.startDate, backwards.endDate);
    EXPECT_THAT(store->eventsMatchingPredicate(backwards), IsEmpty());
    EXPECT_THAT(script.asked, ElementsAre(ElementsAre("work:1")));
}

TEST_F(ServerCalendarStoresTest, AStoreWaitsNoLongerThanItMayInAll) {
    script.listTakes = 0.3;
    found();
    found();
    ASSERT_EQ(script.waits.size(), 4U);
    EXPECT_NEAR(script.waits[0], 2, 0.05);
    EXPECT_NEAR(script.waits[1], 1.7, 0.1);
    EXPECT_NEAR(script.waits[2], 1, 0.05);
    EXPECT_NEAR(script.waits[3], 0.7, 0.1);
}

TEST_F(ServerCalendarStoresTest, WhatAnsweredIsShownAndTheRestIsNamedOnce) {
    const CalendarEvents right = script.events["work:1"];
    script.events["work:1"] = {"", ServerFailure()};
    EXPECT_THAT(found(), ElementsAre("home:same", "home:late"));
    found();
    const std::string silence = "the calendar 'Work' of Evolution Data Server: it has not answered "
                                "within 2 s: its events are shown when it does";
    const std::string later = "the calendar 'Work' of Evolution Data Server: it has not answered "
                              "within 1 s: its events are shown when it does";
    EXPECT_THAT(problems, ElementsAre(silence));
    EXPECT_TRUE(stores.anyReadable());
    script.events["work:1"] = right;
    EXPECT_EQ(found().size(), 4U);
    script.events["work:1"] = {"", ServerFailure()};
    found();
    EXPECT_THAT(problems, ElementsAre(silence, later));
    script.events["work:1"] = {
        "", ServerFailure{ServerFailure::Kind::failed, "it cannot be read: broken"}};
    found();
    EXPECT_EQ(problems.back(),
              "the calendar 'Work' of Evolution Data Server: it cannot be read: broken");
}

TEST_F(ServerCalendarStoresTest, NamesWhatTheLastStoreCouldNotRead) {
    const auto unreadable = [this] {
        found();
        std::vector<std::string> names;
        for (const CalendarProblem& problem : stores.unreadable()) {
            names.push_back(problem.file + ": " + problem.what.english());
        }
        return names;
    };
    EXPECT_THAT(unreadable(), IsEmpty());
    EXPECT_FALSE(stores.isLate());
    const CalendarEvents right = script.events["work:1"];
    script.events["work:1"] = {"", ServerFailure()};
    const std::string silent =
        "the calendar 'Work' of Evolution Data Server: it has not answered yet";
    EXPECT_THAT(unreadable(), ElementsAre(silent));
    EXPECT_THAT(unreadable(), ElementsAre(silent));
    EXPECT_TRUE(stores.isLate());
    script.events["work:1"] = {"", ServerFailure{ServerFailure::Kind::failed, "broken"}};
    EXPECT_THAT(unreadable(), ElementsAre("the calendar 'Work' of Evolution Data Server: broken"));
    EXPECT_FALSE(stores.isLate());
    const auto store = stores.makeEventStore();
    store->eventsMatchingPredicate(today({store->calendarWithIdentifier("home")}));
    EXPECT_THAT(stores.unreadable(), IsEmpty()) << "the other one was not asked";
    script.list = ServerFailure{ServerFailure::Kind::failed, "it does not start: no"};
    EXPECT_THAT(unreadable(), ElementsAre("Evolution Data Server: it does not start: no"));
    script.list = ServerFailure{ServerFailure::Kind::absent, "it is not installed"};
    stores.setOptional(true);
    EXPECT_THAT(unreadable(), IsEmpty());
}

TEST_F(ServerCalendarStoresTest, WhereNothingCanBeReadThereIsNothing) {
    EXPECT_FALSE(stores.anyReadable());
    script.events.clear();
    EXPECT_THAT(found(), IsEmpty());
    EXPECT_FALSE(stores.anyReadable());
    script.list = CalendarList();
    EXPECT_THAT(found(), IsEmpty());
    EXPECT_FALSE(stores.anyReadable());
    script.list = ServerFailure{ServerFailure::Kind::failed, "it does not start: no"};
    EXPECT_THAT(found(), IsEmpty());
    EXPECT_FALSE(stores.anyReadable());
    EXPECT_EQ(problems.back(), "Evolution Data Server: it does not start: no");
}

TEST_F(ServerCalendarStoresTest, AServerThatNeedNotBeThereIsNotMissed) {
    script.list = ServerFailure{ServerFailure::Kind::absent, "it is not installed"};
    stores.setOptional(true);
    found();
    EXPECT_THAT(problems, IsEmpty());
    stores.setOptional(false);
    found();
    EXPECT_THAT(problems, ElementsAre("Evolution Data Server: it is not installed"));
}

TEST_F(ServerCalendarStoresTest, AnEventThatCannotBeReadIsNamedOnce) {
    script.events["home"] = answer({{"odd", "Odd", "20261310T160000Z"}});
    found();
    script.events["home"] =
        answer({{"odd", "Odd", "20261310T160000Z"}, {"new", "New", "20260310T160000Z"}});
    EXPECT_THAT(found(), ElementsAre("work%3A1:early", "work%3A1:same", "home:new"));
    ASSERT_EQ(problems.size(), 1U);
    EXPECT_THAT(problems[0], testing::StartsWith("the calendar 'Home' of Evolution Data Server: "));
}

// Its waits are those of the background thread.
TEST_F(ServerCalendarStoresTest, InTheBackgroundASilentServerDelaysNobody) {
    script.listTakes = 1;
    script.list = ServerFailure();
    std::atomic<bool> isReported = false;
    std::atomic<bool> isChanged = false;
    BackgroundCalendarStores background(
        [&] {
            return std::make_unique<ServerCalendarStores>(
                std::make_unique<ScriptedServer>(script), utcTimeZone(),
                [&](const CalendarProblem&) { isReported = true; }, DataServerWaits{1, 1});
        },
        utcTimeZone(), [](const std::string&) {}, DataServerWaits{0, 0});
    background.setChangedHandler([&] { isChanged = true; });
    const auto begin = std::chrono::steady_clock::now();
    const auto store = background.makeEventStore();
    EXPECT_THAT(store->calendars(), IsEmpty());
    EXPECT_THAT(store->eventsMatchingPredicate(today({})), IsEmpty());
    EXPECT_TRUE(background.anyReadable()); // it may still answer
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(500));
    for (int i = 0; i < 500 && !isChanged; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_TRUE(isReported);
    EXPECT_TRUE(isChanged);
    EXPECT_FALSE(background.anyReadable());
}

TEST_F(ServerCalendarStoresTest, InTheBackgroundTheSameEventsAreFound) {
    BackgroundCalendarStores background(
        [&] {
            return std::make_unique<ServerCalendarStores>(std::make_unique<ScriptedServer>(script),
                                                          utcTimeZone(), nullptr);
        },
        utcTimeZone(), [](const std::string&) {}, DataServerWaits{10, 0});
    const auto store = background.makeEventStore();
    const auto calendars = store->calendars();
    std::vector<std::string> identifiers;
    for (const auto& event : store->eventsMatchingPredicate(today(calendars))) {
        identifiers.push_back(event->persistentEvent.eventIdentifier);
    }
    EXPECT_THAT(identifiers,
                ElementsAre("work%3A1:early", "home:same", "work%3A1:same", "home:late"));
    EXPECT_THAT(background.deselectedCalendars(), ElementsAre("work%3A1"));
}

TEST_F(ServerCalendarStoresTest, TheSourceIsNamedByItsSchemeAlone) {
    EXPECT_TRUE(isDataServer(CalendarSource::at("eds:")));
    EXPECT_FALSE(isDataServer(CalendarSource::at("eds:home")));
    EXPECT_FALSE(isDataServer(CalendarSource::inMemory("eds:", "")));
}

} // namespace
} // namespace quorvel::freedesktop
