// Stores that answer at once, over inner stores that take as long as the test chooses.
#include "freedesktop/calendars/store/background_calendar_stores.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <future>
#include <mutex>
#include <set>
#include <stdexcept>
#include <thread>

#include <gmock/gmock.h>

namespace quorvel::freedesktop {
namespace {

using platform::EKCalendar;
using platform::EKCalendars;
using platform::EKEvent;
using platform::EKEventPredicate;
using platform::EKEvents;
using testing::ElementsAre;
using testing::IsEmpty;

using Clock = std::chrono::steady_clock;
constexpr double soon = 0.25;    // seconds: longer than any answer that does not wait
constexpr double patience = 10;  // seconds: for what must happen
constexpr double settlement = 1; // seconds: in which everything has happened
constexpr double lateAtNight = 86'399;

double secondsSince(Clock::time_point begin) {
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

bool isTrueWithin(double seconds, const std::function<bool()>& condition) {
    const Clock::time_point begin = Clock::now();
    while (!condition()) {
        if (secondsSince(begin) > seconds) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

struct FakeEvent {
    std::string title;
    std::string calendar; // its identifier
    double start = 0;     // seconds; an hour long
};

// What the inner stores have, and what they were asked. For several threads: a mutex guards
// everything.
class Script {
public:
    struct Content {
        std::vector<std::string> calendars{"home", "work"};
        std::vector<std::string> deselected{"work"};
        std::vector<FakeEvent> events{{"breakfast", "home", 8 * 3600.0},
                                      {"meeting", "work", 14 * 3600.0}};
        bool isAnyReadable = true;
        bool isLate = false;
        std::vector<CalendarProblem> unreadable;
        bool throws = false;
    };
    struct Asked {
        int stores = 0;
        std::vector<EKEventPredicate> predicates;
        std::vector<std::string> zones;
        bool isOptional = false;
        std::set<std::thread::id> threads;
        int alive = 0;                        // inner stores
        std::multiset<std::thread::id> freed; // events, by the thread that freed them
    };

    void change(const std::function<void(Content&)>& change) {
        const std::lock_guard lock(m_mutex);
        change(m_content);
    }
    Content content() const {
        const std::lock_guard lock(m_mutex);
        return m_content;
    }
    void note(const std::function<void(Asked&)>& note) {
        const std::lock_guard lock(m_mutex);
        m_asked.threads.insert(std::this_thread::get_id());
        note(m_asked);
    }
    void noteFreed() {
        const std::lock_guard lock(m_mutex);
        m_asked.freed.insert(std::this_thread::get_id());
    }
    Asked asked() const {
        const std::lock_guard lock(m_mutex);
        return m_asked;
    }

    // While the gate is closed, the inner stores stand still.
    void close() { setOpen(false); }
    void open() { setOpen(true); }
    void pass() {
        std::unique_lock lock(m_mutex);
        m_opened.wait(lock, [this] { return m_isOpen; });
    }

    void setHandler(std::function<void()> onChanged) {
        const std::lock_guard lock(m_mutex);
        m_onChanged = std::move(onChanged);
    }
    // As a server does whose calendars have changed.
    void reportChange() {
        std::function<void()> onChanged;
        {
            const std::lock_guard lock(m_mutex);
            onChanged = m_onChanged;
        }
        onChanged();
    }

private:
    void setOpen(bool isOpen) {
        const std::lock_guard lock(m_mutex);
        m_isOpen = isOpen;
        m_opened.notify_all();
    }

    mutable std::mutex m_mutex;
    std::condition_variable m_opened;
    Content m_content;
    Asked m_asked;
    bool m_isOpen = true;
    std::function<void()> m_onChanged;
};

class FakeStore final : public platform::EKEventStore {
public:
    explicit FakeStore(Script& script)
        : m_script(script) {
        for (const std::string& identifier : script.content().calendars) {
            m_calendars.push_back(
                std::make_shared<const EKCalendar>(EKCalendar{identifier, identifier, {}}));
        }
    }
    EKCalendars calendars() override { return m_calendars; }
    std::shared_ptr<const EKCalendar> calendarWithIdentifier(std::string_view) override {
        return nullptr;
    }
    EKEvents eventsMatchingPredicate(const EKEventPredicate& predicate) override {
        m_script.note([&](Script::Asked& asked) { asked.predicates.push_back(predicate); });
        EKEvents events{nullptr};
        for (const FakeEvent& one : m_script.content().events) {
            EKEvent event;
            event.title = one.title;
            event.startDate = {one.start};
            event.endDate = {one.start + 3600};
            for (const auto& calendar : predicate.calendars) {
                if (calendar->calendarIdentifier == one.calendar &&
                    event.endDate > predicate.startDate && event.startDate <= predicate.endDate) {
                    event.calendar = calendar;
                    events.push_back(noted(event));
                }
            }
        }
        return events;
    }

private:
    std::shared_ptr<const EKEvent> noted(const EKEvent& event) {
        const auto free = [&script = m_script](const EKEvent* one) {
            script.noteFreed();
            const std::unique_ptr<const EKEvent> owned(one);
        };
        return {std::make_unique<const EKEvent>(event).release(), free};
    }

    Script& m_script;
    EKCalendars m_calendars;
};

class FakeStores final : public LiveCalendarStores {
public:
    explicit FakeStores(Script& script)
        : m_script(script) {
        m_script.note([](Script::Asked& asked) { ++asked.alive; });
    }
    ~FakeStores() override {
        m_script.note([](Script::Asked& asked) { --asked.alive; });
    }
    void setOptional(bool isOptional) override {
        m_script.note([&](Script::Asked& asked) { asked.isOptional = isOptional; });
    }
    void setTimeZone(std::shared_ptr<const TimeZone> userZone) override {
        m_script.note([&](Script::Asked& asked) {
            asked.zones.push_back(std::string(userZone->identifier()));
        });
    }
    void setChangedHandler(std::function<void()> onChanged) override {
        m_script.setHandler(std::move(onChanged));
    }
    std::unique_ptr<platform::EKEventStore> makeEventStore() override {
        m_script.note([](Script::Asked& asked) { ++asked.stores; });
        m_script.pass();
        if (m_script.content().throws) {
            throw std::runtime_error("it has failed");
        }
        return std::make_unique<FakeStore>(m_script);
    }
    bool anyReadable() const override { return m_script.content().isAnyReadable; }
    bool hasCalendar(std::string_view) const override { return false; }
    std::vector<std::string> deselectedCalendars() const override {
        return m_script.content().deselected;
    }
    std::vector<CalendarProblem> unreadable() const override {
        return m_script.content().unreadable;
    }
    bool isLate() const override { return m_script.content().isLate; }

private:
    Script& m_script;
};

class BackgroundCalendarStoresTest : public testing::Test {
protected:
    ~BackgroundCalendarStoresTest() override { script.open(); }

    void make(DataServerWaits waits) {
        stores = std::make_unique<BackgroundCalendarStores>(
            [this] { return std::make_unique<FakeStores>(script); }, utcTimeZone(),
            [this](const std::string& what) {
                const std::lock_guard lock(problemsMutex);
                problems.push_back(what);
                problemThread = std::this_thread::get_id();
            },
            waits);
        stores->setChangedHandler([this] { ++changes; });
    }

    // What a presentation shows: the calendars, and the titles until the end of the day.
    std::string present() {
        const Clock::time_point begin = Clock::now();
        const auto store = stores->makeEventStore();
        const EKCalendars calendars = store->calendars();
        std::string text;
        for (const auto& calendar : calendars) {
            text += calendar->calendarIdentifier + " ";
        }
        text += ":";
        for (const auto& event :
             store->eventsMatchingPredicate({{now}, {lateAtNight}, calendars})) {
            text += " " + event->title.value_or("-");
        }
        presentationTook = secondsSince(begin);
        return text;
    }
    bool isChangeReported() {
        return isTrueWithin(patience, [this] { return changes > 0; });
    }
    // As a live host: presents again as long as changes are reported, while the time goes on.
    int presentUntilNothingChanges() {
        int presentations = 0;
        while (isTrueWithin(settlement, [this] { return changes.exchange(0) > 0; })) {
            now += 1;
            shown = present();
            if (++presentations == 50) {
                break;
            }
        }
        return presentations;
    }
    std::vector<std::string> reportedProblems() {
        const std::lock_guard lock(problemsMutex);
        return problems;
    }

    // These outlive the stores, whose background thread uses them.
    Script script;
    std::atomic<int> changes = 0;
    std::mutex problemsMutex;
    std::vector<std::string> problems;
    std::thread::id problemThread;

    std::unique_ptr<BackgroundCalendarStores> stores;
    double now = 6 * 3600.0;
    std::string shown;
    double presentationTook = 0;
};

constexpr const char* everything = "home work : breakfast meeting";

TEST_F(BackgroundCalendarStoresTest, WhereNothingIsKnownYetTheCallerDoesNotWait) {
    script.close();
    make({0, 0});
    EXPECT_TRUE(stores->anyReadable());
    EXPECT_EQ(present(), ":");
    EXPECT_LT(presentationTook, soon);
    EXPECT_TRUE(stores->anyReadable());
    EXPECT_FALSE(stores->hasCalendar("home"));
    EXPECT_THAT(stores->deselectedCalendars(), IsEmpty());
    EXPECT_EQ(changes, 0);
}

TEST_F(BackgroundCalendarStoresTest, ALateAnswerIsReportedAndShown) {
    script.close();
    make({0, 0});
    present();
    script.open();
    EXPECT_TRUE(isChangeReported());
    presentUntilNothingChanges();
    EXPECT_EQ(shown, everything);
    EXPECT_TRUE(stores->anyReadable());
    EXPECT_TRUE(stores->hasCalendar("home"));
    EXPECT_FALSE(stores->hasCalendar("other"));
    EXPECT_THAT(stores->deselectedCalendars(), ElementsAre("work"));
}

// A store without calendars would have asked for all of them.
TEST_F(BackgroundCalendarStoresTest, TheFirstAnswerBringsTheEventsOfAllCalendars) {
    script.close();
    make({0, 0});
    present();
    script.open();
    EXPECT_TRUE(isChangeReported());
    isTrueWithin(settlement, [] { return false; });
    script.close();
    EXPECT_EQ(present(), everything);
}

TEST_F(BackgroundCalendarStoresTest, TheFirstStoreWaitsForItsAnswers) {
    make({patience, 0});
    EXPECT_EQ(present(), everything);
    EXPECT_EQ(presentUntilNothingChanges(), 0);
}

TEST_F(BackgroundCalendarStoresTest, AStoreWaitsNoLongerThanItMayInAll) {
    script.close();
    make({0.3, 0.1});
    EXPECT_EQ(present(), ":");
    EXPECT_GT(presentationTook, 0.29);
    EXPECT_LT(presentationTook, 0.3 + soon);
    present();
    EXPECT_GT(presentationTook, 0.09);
    EXPECT_LT(presentationTook, 0.1 + soon);
}

TEST_F(BackgroundCalendarStoresTest, LaterStoresShowTheLatestResultWhileTheInnerStoresStandStill) {
    make({patience, 0});
    present();
    script.close();
    script.change([](Script::Content& content) { content.events.clear(); });
    EXPECT_EQ(present(), everything);
    EXPECT_LT(presentationTook, soon);
    now = 10 * 3600.0;
    EXPECT_EQ(present(), "home work : meeting");
    const auto store = stores->makeEventStore();
    const auto work = store->calendarWithIdentifier("work");
    ASSERT_TRUE(work);
    EXPECT_EQ(store->calendarWithIdentifier("other"), nullptr);
    EXPECT_EQ(store->eventsMatchingPredicate({{0}, {lateAtNight}, {work}}).size(), 1U);
    EXPECT_THAT(store->eventsMatchingPredicate({{0}, {lateAtNight}, {}}), IsEmpty());
}

TEST_F(BackgroundCalendarStoresTest, EventsAreSharedRatherThanCopied) {
    make({patience, 0});
    present();
    script.close();
    const auto store = stores->makeEventStore();
    const EKEventPredicate predicate{{now}, {lateAtNight}, store->calendars()};
    const auto first = store->eventsMatchingPredicate(predicate);
    const auto second = store->eventsMatchingPredicate(predicate);
    ASSERT_EQ(first.size(), 2U);
    EXPECT_EQ(first, second);
}

TEST_F(BackgroundCalendarStoresTest, RequestsThatWereNotTakenYetAreJoined) {
    script.close();
    make({0, 0});
    present();
    ASSERT_TRUE(isTrueWithin(patience, [this] { return script.asked().stores == 1; }));
    for (int i = 0; i < 20; ++i) {
        now += 1;
        present();
    }
    script.open();
    isTrueWithin(settlement, [] { return false; });
    EXPECT_EQ(script.asked().stores, 2);
    const auto predicates = script.asked().predicates;
    ASSERT_FALSE(predicates.empty());
    EXPECT_EQ(predicates.back().startDate.timeIntervalSinceReferenceDate, now);
}

TEST_F(BackgroundCalendarStoresTest, APresentationThatFollowsEndsTheChangesAlthoughTimeGoesOn) {
    make({0, 0});
    shown = present(); // may have everything already
    EXPECT_LE(presentUntilNothingChanges(), 3);
    EXPECT_EQ(shown, everything);
    for (int i = 0; i < 5; ++i) {
        now += 3600; // breakfast ends meanwhile
        present();
        EXPECT_EQ(presentUntilNothingChanges(), 0) << i;
    }
    EXPECT_EQ(present(), "home work : meeting");
}

TEST_F(BackgroundCalendarStoresTest, AChangeOfTheInnerStoresIsFoundAndReported) {
    make({patience, 0});
    present();
    for (const char* const title : {"lunch", "tea", "dinner"}) {
        script.change([&](Script::Content& content) { content.events[1].title = title; });
        script.reportChange();
        EXPECT_TRUE(isChangeReported()) << title;
        EXPECT_EQ(presentUntilNothingChanges(), 1) << title;
        EXPECT_EQ(shown, std::string("home work : breakfast ") + title);
    }
}

TEST_F(BackgroundCalendarStoresTest, AChangeThatMakesNoDifferenceIsNotReported) {
    make({patience, 0});
    present();
    const int before = script.asked().stores;
    script.reportChange();
    EXPECT_TRUE(isTrueWithin(patience, [&] { return script.asked().stores > before; }));
    EXPECT_EQ(presentUntilNothingChanges(), 0);
}

TEST_F(BackgroundCalendarStoresTest, ChangesThatFollowEachOtherQuicklyAreJoined) {
    make({patience, 0});
    present();
    const int before = script.asked().stores;
    const Clock::time_point begin = Clock::now();
    while (secondsSince(begin) < 1.2) {
        script.reportChange();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    script.change([](Script::Content& content) { content.events.clear(); });
    script.reportChange();
    EXPECT_TRUE(isChangeReported());
    EXPECT_LE(script.asked().stores - before, 5);
}

// Listings are compared as well.
TEST_F(BackgroundCalendarStoresTest, AddedCalendarsAreReportedAndShown) {
    make({patience, 0});
    present();
    script.change([](Script::Content& content) {
        content.calendars.emplace_back("added");
        content.events.push_back({"concert", "added", 20 * 3600.0});
    });
    script.reportChange();
    EXPECT_EQ(presentUntilNothingChanges(), 1);
    EXPECT_EQ(shown, "home work added : breakfast meeting concert");
    script.change([](Script::Content& content) { content.deselected.clear(); });
    script.reportChange();
    EXPECT_EQ(presentUntilNothingChanges(), 1);
    EXPECT_THAT(stores->deselectedCalendars(), IsEmpty());
}

TEST_F(BackgroundCalendarStoresTest, AHostThatSearchesNoLongerComesToRest) {
    make({patience, 0});
    present();
    script.change([](Script::Content& content) { content.events.clear(); });
    script.reportChange();
    EXPECT_TRUE(isChangeReported());
    int presentations = 0;
    while (isTrueWithin(settlement, [this] { return changes.exchange(0) > 0; })) {
        stores->makeEventStore();
        ASSERT_LT(++presentations, 5);
    }
    EXPECT_EQ(presentations, 1);
}

TEST_F(BackgroundCalendarStoresTest, WhatCannotBeReadIsReportedOnceItIsKnown) {
    script.change([](Script::Content& content) {
        content.calendars.clear();
        content.isAnyReadable = false;
    });
    script.close();
    make({0, 0});
    present();
    EXPECT_TRUE(stores->anyReadable());
    script.open();
    EXPECT_EQ(presentUntilNothingChanges(), 1);
    EXPECT_FALSE(stores->anyReadable());
    script.change([](Script::Content& content) { content = {}; });
    script.reportChange();
    presentUntilNothingChanges();
    EXPECT_EQ(shown, everything);
    EXPECT_TRUE(stores->anyReadable());
}

TEST_F(BackgroundCalendarStoresTest, AnEmptyAgendaIsReportedOnceItIsKnown) {
    script.change([](Script::Content& content) { content.events.clear(); });
    script.close();
    make({0, 0});
    EXPECT_TRUE(stores->isLate());
    present();
    EXPECT_TRUE(stores->isLate());
    script.open();
    EXPECT_GE(presentUntilNothingChanges(), 1);
    EXPECT_FALSE(stores->isLate());
    present();
    EXPECT_FALSE(stores->isLate()) << "the events of the last time are shown";
}

TEST_F(BackgroundCalendarStoresTest, WhatTheInnerStoresCouldNotReadIsPassedOn) {
    make({0, 0});
    present();
    presentUntilNothingChanges();
    EXPECT_THAT(stores->unreadable(), IsEmpty());
    const CalendarProblem problem{"the calendar 'Work'", 0, "it has not answered yet"};
    script.change([&](Script::Content& content) {
        content.unreadable = {problem};
        content.isLate = true;
    });
    script.reportChange();
    EXPECT_EQ(presentUntilNothingChanges(), 1);
    EXPECT_THAT(stores->unreadable(), ElementsAre(problem));
    EXPECT_TRUE(stores->isLate());
    script.change([](Script::Content& content) { content = {}; });
    script.reportChange();
    EXPECT_EQ(presentUntilNothingChanges(), 1);
    EXPECT_THAT(stores->unreadable(), IsEmpty());
    EXPECT_FALSE(stores->isLate());
}

TEST_F(BackgroundCalendarStoresTest, WhatTheInnerStoresThrowIsAProblem) {
    script.change([](Script::Content& content) { content.throws = true; });
    make({patience, patience});
    EXPECT_EQ(present(), ":");
    EXPECT_LT(presentationTook, patience / 2);
    EXPECT_FALSE(stores->anyReadable());
    const auto reported = reportedProblems();
    ASSERT_FALSE(reported.empty());
    EXPECT_EQ(reported[0], "it has failed");
    EXPECT_NE(problemThread, std::this_thread::get_id());
    script.change([](Script::Content& content) { content.throws = false; });
    EXPECT_EQ(present(), everything);
}

TEST_F(BackgroundCalendarStoresTest, StoresThatCannotBeMadeAreMadeLater) {
    std::atomic<bool> throws = true;
    std::atomic<int> reported = 0;
    stores = std::make_unique<BackgroundCalendarStores>(
        [&]() -> std::unique_ptr<LiveCalendarStores> {
            if (throws) {
                throw std::runtime_error("no");
            }
            return std::make_unique<FakeStores>(script);
        },
        utcTimeZone(), [&](const std::string&) { ++reported; },
        DataServerWaits{patience, patience});
    EXPECT_EQ(present(), ":");
    EXPECT_FALSE(stores->anyReadable());
    EXPECT_GT(reported, 0);
    throws = false;
    EXPECT_EQ(present(), everything);
    stores.reset();
}

TEST_F(BackgroundCalendarStoresTest, SettingsReachTheInnerStores) {
    make({patience, patience});
    stores->setOptional(true);
    present();
    EXPECT_TRUE(script.asked().isOptional);
    EXPECT_THAT(script.asked().zones, ElementsAre("UTC"));
    stores->setTimeZone(namedTimeZone("Asia/Tokyo"));
    stores->setOptional(false);
    present();
    present();
    EXPECT_FALSE(script.asked().isOptional);
    EXPECT_THAT(script.asked().zones, ElementsAre("UTC", "Asia/Tokyo"));
}

TEST_F(BackgroundCalendarStoresTest, TheInnerStoresLiveOnOneThreadOfTheirOwn) {
    make({patience, patience});
    EXPECT_TRUE(isTrueWithin(patience, [this] { return script.asked().alive == 1; }));
    present();
    present();
    stores.reset();
    const Script::Asked asked = script.asked();
    EXPECT_EQ(asked.alive, 0);
    EXPECT_EQ(asked.threads.size(), 1U);
    EXPECT_FALSE(asked.threads.contains(std::this_thread::get_id()));
}

TEST_F(BackgroundCalendarStoresTest, EventsAreFreedInTheBackground) {
    make({patience, patience});
    for (int i = 0; i < 20; ++i) {
        now += 1;
        present();
    }
    const auto freed = script.asked().freed;
    EXPECT_GT(freed.size(), 20U);
    EXPECT_EQ(freed.count(std::this_thread::get_id()), 0U);
}

TEST_F(BackgroundCalendarStoresTest, TheEndWaitsForTheCurrentCallAndReportsNothing) {
    script.close();
    make({0, 0});
    present();
    ASSERT_TRUE(isTrueWithin(patience, [this] { return script.asked().stores == 1; }));
    auto end = std::async(std::launch::async, [this] { stores.reset(); });
    EXPECT_EQ(end.wait_for(std::chrono::milliseconds(100)), std::future_status::timeout);
    script.open();
    end.get();
    EXPECT_EQ(script.asked().alive, 0);
    EXPECT_THAT(script.asked().predicates, IsEmpty()); // the next call is no longer made
    EXPECT_EQ(changes, 0);
}

TEST_F(BackgroundCalendarStoresTest, AStoreMayOutliveItsMaker) {
    make({patience, patience});
    const auto store = stores->makeEventStore();
    stores.reset();
    const Clock::time_point begin = Clock::now();
    EXPECT_EQ(store->calendars().size(), 2U);
    EXPECT_THAT(store->eventsMatchingPredicate({{0}, {lateAtNight}, store->calendars()}),
                IsEmpty());
    EXPECT_LT(secondsSince(begin), soon);
}

TEST_F(BackgroundCalendarStoresTest, ThreadsMayTakeTurns) {
    make({patience, 0});
    std::async(std::launch::async, [this] { shown = present(); }).get();
    EXPECT_EQ(shown, everything);
    EXPECT_EQ(present(), everything);
    std::async(std::launch::async, [this] { stores.reset(); }).get();
    EXPECT_EQ(script.asked().alive, 0);
}

} // namespace
} // namespace quorvel::freedesktop
