// A live host and the program that fetches calendars; a script stands for that program.
#include "shells/live/live_presenter.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <sstream>

#include <gtest/gtest.h>

#include "freedesktop/calendars/subscriptions/copy_status.h"
#include "freedesktop/freedesktop_platform.h"
#include "tests/freedesktop/session/session_testing.h"

namespace quorvel::shells {
namespace {

using namespace testing_session;
using freedesktop::CopyState;
using freedesktop::FreedesktopOptions;
using freedesktop::FreedesktopPlatform;
using freedesktop::SubscriptionCache;
namespace fs = std::filesystem;

constexpr double longWait = 20; // seconds
const std::string url = "https://example.org/team.ics";

class SubscriptionRefreshTest : public testing::Test {
protected:
    SubscriptionRefreshTest() {
        fs::create_directories(folder / "Preferences");
        options.timeZone = freedesktop::namedTimeZone("Europe/Berlin");
        options.locale = "en_US";
        options.preferencesFolder = folder / "Preferences";
        options.subscriptions = {cache.folder(), options.preferencesFolder, folder / "refresh"};
        options.logs = {log};
        writeProgram("");
    }

    // Each run adds its input and a line to the file `runs`.
    void writeProgram(const std::string& commands) const {
        write(folder / "refresh",
              "#!/bin/sh\n(cat; echo run \"$@\") >>'" + folder / "runs" + "'\n" + commands + "\n");
        fs::permissions(folder / "refresh", fs::perms::owner_all);
    }
    // The program fetches the calendar with these events, successfully.
    void letProgramFetch(const std::string& events) const {
        write(folder / "fetched.ics",
              "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n" + events + "END:VCALENDAR\r\n");
        CopyState state;
        state.triedAt = state.confirmedAt = freedesktop::systemSeconds() + 60;
        write(folder / "fetched.state", freedesktop::textOfState(state));
        ASSERT_TRUE(cache.makeFolder(url));
        writeProgram("cp '" + folder / "fetched.ics" + "' '" + cache.folderOf(url) + "/new'\n" +
                     "mv '" + cache.folderOf(url) + "/new' '" + cache.calendarFile(url) + "'\n" +
                     "sed -i 's/^\\(confirmed\\|tried\\) .*/\\1 '$(date +%s)'/' '" +
                     folder / "fetched.state" + "'\n" + "cp '" + folder / "fetched.state" + "' '" +
                     cache.stateFile(url) + "'");
    }
    void writeCopyOfAge(std::int64_t seconds) const {
        ASSERT_TRUE(cache.makeFolder(url));
        write(cache.calendarFile(url), "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nEND:VCALENDAR\r\n");
        CopyState state;
        state.triedAt = state.confirmedAt = freedesktop::systemSeconds() - seconds;
        ASSERT_TRUE(cache.writeState(url, state));
    }
    void subscribe() const {
        replace(folder / "Preferences/org.quorvel.quorvel.subscriptions.plist",
                "<plist version=\"1.0\"><array><dict><key>url</key><string>" + url +
                    "</string></dict></array></plist>");
    }

    void start() {
        platform.emplace(options);
        presenter = std::make_unique<LivePresenter>(*platform, [this] { present(); });
        present();
    }
    void present() {
        ++presentations;
        calendars = platform->platform().calendarStores.makeEventStore()->calendars().size();
        presenter->restart({});
    }
    std::string runs() const {
        std::ostringstream text;
        text << std::ifstream(folder / "runs").rdbuf();
        return text.str();
    }
    std::string oneRun() const { return url + "\nrun --cache " + cache.folder() + "\n"; }
    bool hasRun() {
        return runUntil([this] { return runs() == oneRun(); }, longWait);
    }

    EnvironmentVariable desktop{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus"};
    EnvironmentVariable system{"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/bus"};
    TemporaryFolder folder;
    SubscriptionCache cache{folder / "subscriptions"};
    std::shared_ptr<RecordedLog> log = std::make_shared<RecordedLog>();
    FreedesktopOptions options;
    std::optional<FreedesktopPlatform> platform;
    std::unique_ptr<LivePresenter> presenter;
    int presentations = 0;
    std::size_t calendars = 0;
};

TEST_F(SubscriptionRefreshTest, DueCalendarIsFetchedAndShown) {
    subscribe();
    letProgramFetch("");
    start();
    EXPECT_EQ(calendars, 0U);
    EXPECT_TRUE(runUntil([this] { return calendars == 1; }, longWait));
    EXPECT_EQ(runs(), oneRun());
    EXPECT_TRUE(platform->unreadableCalendars().empty());
}

TEST_F(SubscriptionRefreshTest, CurrentCopyIsNotFetched) {
    subscribe();
    writeCopyOfAge(3000);
    start();
    EXPECT_EQ(calendars, 1U);
    EXPECT_NEAR(*platform->secondsUntilRefresh(), 600, 30);
    runFor(0.5);
    EXPECT_EQ(runs(), "");
}

TEST_F(SubscriptionRefreshTest, CopyThatBecomesDueIsFetched) {
    subscribe();
    writeCopyOfAge(3598);
    start();
    EXPECT_TRUE(hasRun());
}

TEST_F(SubscriptionRefreshTest, NothingIsFetchedWhilePaused) {
    subscribe();
    platform.emplace(options);
    presenter = std::make_unique<LivePresenter>(*platform, [this] { present(); });
    presenter->setPaused(true);
    presenter->restart({});
    runFor(0.5);
    EXPECT_EQ(runs(), "");
    presenter->setPaused(false);
    EXPECT_TRUE(hasRun());
}

TEST_F(SubscriptionRefreshTest, CurrentCopyIsFetchedWhenTheUserWantsIt) {
    subscribe();
    writeCopyOfAge(100);
    start();
    EXPECT_EQ(runs(), "");
    presenter->fetchCalendars();
    EXPECT_TRUE(hasRun());
}

TEST_F(SubscriptionRefreshTest, TheUserGetsNoCopyMoreOftenThanOnceAMinute) {
    subscribe();
    writeCopyOfAge(30);
    start();
    presenter->fetchCalendars();
    runFor(0.5);
    EXPECT_EQ(runs(), "");
    writeCopyOfAge(-30); // the clock was set back
    presenter->fetchCalendars();
    EXPECT_TRUE(hasRun());
    runFor(0.3);
    presenter->fetchCalendars(); // the program has recorded nothing
    runFor(0.5);
    EXPECT_EQ(runs(), oneRun());
}

TEST_F(SubscriptionRefreshTest, TheUserDoesNotStartASecondProgram) {
    subscribe();
    writeCopyOfAge(100);
    writeProgram("sleep 1");
    start();
    presenter->fetchCalendars();
    EXPECT_TRUE(hasRun());
    presenter->fetchCalendars();
    runFor(0.3);
    EXPECT_EQ(runs(), oneRun());
}

TEST_F(SubscriptionRefreshTest, NewSubscriptionIsFetched) {
    start();
    EXPECT_EQ(platform->secondsUntilRefresh(), std::nullopt);
    letProgramFetch("");
    subscribe();
    EXPECT_TRUE(runUntil([this] { return calendars == 1; }, longWait));
    EXPECT_EQ(runs(), oneRun());
}

TEST_F(SubscriptionRefreshTest, ChangeOfTheStateIsPresented) {
    subscribe();
    writeCopyOfAge(100);
    start();
    EXPECT_TRUE(platform->unreadableCalendars().empty());
    CopyState state = cache.readState(url);
    state.error = "the server cannot be reached";
    ASSERT_TRUE(cache.writeState(url, state));
    EXPECT_TRUE(runUntil([this] { return presentations == 2; }, longWait));
    ASSERT_EQ(platform->unreadableCalendars().size(), 1U);
    EXPECT_EQ(platform->unreadableCalendars()[0].file, "example.org");
    EXPECT_EQ(platform->unreadableCalendars()[0].what.english(),
              "it is 1 minute old: the server cannot be reached");
}

TEST_F(SubscriptionRefreshTest, ProgramThatRecordsNothingIsNotStartedAgainAndAgain) {
    subscribe();
    start();
    EXPECT_TRUE(hasRun());
    for (int i = 0; i < 20; ++i) {
        present();
        runFor(0.03);
    }
    EXPECT_EQ(runs(), oneRun());
}

TEST_F(SubscriptionRefreshTest, MissingProgramIsLoggedOnce) {
    subscribe();
    fs::remove(folder / "refresh");
    start();
    EXPECT_TRUE(runUntil([this] { return !log->lines().empty(); }, longWait));
    present();
    runFor(0.2);
    ASSERT_EQ(log->lines().size(), 1U);
    EXPECT_TRUE(log->lines()[0].starts_with("QRV: the program '" + folder / "refresh" +
                                            "' cannot be started: "))
        << log->lines()[0];
}

TEST_F(SubscriptionRefreshTest, NothingHappensAfterTheEnd) {
    subscribe();
    writeProgram("sleep 1");
    start();
    EXPECT_TRUE(hasRun());
    presenter.reset();
    platform.reset();
    runFor(1.5);
    EXPECT_EQ(presentations, 1);
    EXPECT_EQ(runs(), oneRun());
}

TEST_F(SubscriptionRefreshTest, WithoutSubscriptionsNothingWakesUp) {
    start();
    runFor(0.3);
    const int before = presentations;
    EXPECT_EQ(wakeUpsDuring(1), 0);
    EXPECT_EQ(presentations, before);
    EXPECT_EQ(runs(), "");
}

} // namespace
} // namespace quorvel::shells
