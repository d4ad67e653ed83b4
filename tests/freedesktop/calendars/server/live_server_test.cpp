// A live host over a real calendar server.
#include <chrono>

#include <gmock/gmock.h>

#include "freedesktop/dates/instant_text.h"
#include "freedesktop/desktop/linked_desktop.h"
#include "freedesktop/freedesktop_platform.h"
#include "shells/live/live_presenter.h"
#include "tests/freedesktop/calendars/server/server_fixture.h"
#include "tests/freedesktop/session/session_testing.h"

namespace quorvel::shells {
namespace {

using namespace testing_eds;
using freedesktop::CalendarSource;
using freedesktop::FreedesktopOptions;
using freedesktop::FreedesktopPlatform;
using testing::ElementsAre;
using testing::IsEmpty;
using testing_session::runFor;
using testing_session::runUntil;

class LiveServerTest : public ServerTest {
protected:
    // `backgroundServerWaits` as in the options of the platform.
    explicit LiveServerTest(
        std::optional<freedesktop::DataServerWaits> backgroundServerWaits = std::nullopt) {
        addCalendar({"test-home", "A home", "#336699"});
        FreedesktopOptions options;
        options.backgroundServerWaits = backgroundServerWaits;
        options.timeZone = freedesktop::utcTimeZone();
        options.locale = "en_US";
        options.preferencesFolder = "/nonexistent/Preferences";
        options.calendars = {CalendarSource::at("eds:")};
        options.dataServerModule = QUORVEL_EDS_MODULE;
        options.desktop = std::make_shared<freedesktop::LinkedDesktop>();
        platform = std::make_unique<FreedesktopPlatform>(options);
        presenter = std::make_unique<LivePresenter>(*platform, [this] { present(); });
        present();
        runFor(1.5); // what the making of the calendar has left behind
        presentations = 0;
    }

    void present() {
        ++presentations;
        const auto store = platform->platform().calendarStores.makeEventStore();
        titles.clear();
        for (const auto& event : store->eventsMatchingPredicate(
                 {freedesktop::parseInstant("2026-03-10T00:00Z", *freedesktop::utcTimeZone())
                      .value(),
                  freedesktop::parseInstant("2026-03-11T00:00Z", *freedesktop::utcTimeZone())
                      .value(),
                  store->calendars()})) {
            titles.push_back(event->title.value_or("-"));
        }
        presenter->restart({});
    }
    bool isShown(const std::vector<std::string>& expected) {
        return runUntil([&] { return titles == expected; }, 20);
    }

    std::unique_ptr<FreedesktopPlatform> platform;
    std::unique_ptr<LivePresenter> presenter;
    std::vector<std::string> titles;
    int presentations = 0;
};

TEST_F(LiveServerTest, PresentsAgainWhenTheServersCalendarsChange) {
    EXPECT_THAT(titles, IsEmpty());
    add("test-home", eventText("UID:one|SUMMARY:One|DTSTART:20260310T080000Z"));
    EXPECT_TRUE(isShown({"One"}));
    remove("test-home", "one");
    EXPECT_TRUE(isShown({}));
    EXPECT_TRUE(platform->hasReadableCalendars());
}

TEST_F(LiveServerTest, DoesNothingWhereNothingChanges) {
    runFor(2);
    EXPECT_EQ(presentations, 0);
}

TEST_F(LiveServerTest, StartsAServerThatHasDied) {
    add("test-home", eventText("UID:one|SUMMARY:One|DTSTART:20260310T080000Z"));
    EXPECT_TRUE(isShown({"One"}));
    disconnect();
    runFor(1.5);
    presentations = 0;
    kill(factoryProcesses());
    EXPECT_TRUE(runUntil([&] { return presentations > 0; }, 20));
    EXPECT_TRUE(isShown({"One"})); // at once, unless the server needs longer than it is waited for
    EXPECT_EQ(factoryProcesses().size(), 1U);
}

TEST_F(LiveServerTest, ShowsWhatComesAfterItWasNotWaitedFor) {
    add("test-home", eventText("UID:one|SUMMARY:One|DTSTART:20260310T080000Z"));
    EXPECT_TRUE(isShown({"One"}));
    disconnect();
    stop(registryProcess()); // without which no calendar is opened
    kill(factoryProcesses());
    EXPECT_TRUE(runUntil(
        [&] {
            present(); // the end of the factory may be heard of a moment later
            return titles.empty();
        },
        10));
    goOn();
    EXPECT_TRUE(isShown({"One"}));
}

TEST_F(LiveServerTest, NothingIsToldAfterTheHostIsGone) {
    presenter.reset();
    add("test-home", eventText("UID:one|SUMMARY:One|DTSTART:20260310T080000Z"));
    runFor(1.5);
    EXPECT_EQ(presentations, 0);
}

class BackgroundServerTest : public LiveServerTest {
protected:
    BackgroundServerTest()
        : LiveServerTest(freedesktop::DataServerWaits{0, 0}) {}

    std::vector<std::string> calendarTitles() const {
        std::vector<std::string> result;
        for (const auto& calendar :
             platform->platform().calendarStores.makeEventStore()->calendars()) {
            result.push_back(calendar->title);
        }
        return result;
    }
};

TEST_F(BackgroundServerTest, PresentsAgainWhenTheServersCalendarsChange) {
    add("test-home", eventText("UID:one|SUMMARY:One|DTSTART:20260310T080000Z"));
    EXPECT_TRUE(isShown({"One"}));
    remove("test-home", "one");
    EXPECT_TRUE(isShown({}));
    EXPECT_TRUE(platform->hasReadableCalendars());
}

TEST_F(BackgroundServerTest, DoesNothingWhereNothingChanges) {
    present();
    presentations = 0;
    runFor(2);
    EXPECT_EQ(presentations, 0);
}

TEST_F(BackgroundServerTest, AServerThatStandsStillDelaysNobody) {
    add("test-home", eventText("UID:one|SUMMARY:One|DTSTART:20260310T080000Z"));
    EXPECT_TRUE(isShown({"One"}));
    disconnect();
    runFor(1.5);
    stop(registryProcess()); // without which no calendar is opened
    kill(factoryProcesses());
    const auto begin = std::chrono::steady_clock::now();
    present();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(300));
    EXPECT_THAT(titles, ElementsAre("One"));
    EXPECT_TRUE(runUntil([this] { return titles.empty(); }, 10)); // the background gave up waiting
    goOn();
    EXPECT_TRUE(isShown({"One"}));
}

TEST_F(BackgroundServerTest, TheCalendarsOfFilesKeepTheirPlace) {
    const auto files =
        CalendarSource::inMemory("file", "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nX-WR-CALNAME:A file\r\n"
                                         "END:VCALENDAR\r\n");
    const auto first = calendarTitles();
    ASSERT_FALSE(first.empty());
    EXPECT_EQ(platform->storeOfCalendar("test-home"), "Evolution Data Server");
    auto expected = first;
    expected.push_back("A file");
    platform->setCalendars({CalendarSource::at("eds:"), files});
    EXPECT_EQ(calendarTitles(), expected);
    expected.pop_back();
    expected.insert(expected.begin(), "A file");
    platform->setCalendars({files, CalendarSource::at("eds:")});
    EXPECT_EQ(calendarTitles(), expected);
}

} // namespace
} // namespace quorvel::shells
