// Uses real files, the real main loop, and a private message bus in place of the system's.
#include "shells/live/live_presenter.h"

#include <chrono>

#include <gmock/gmock.h>

#include "freedesktop/dates/instant_text.h"
#include "freedesktop/freedesktop_platform.h"
#include "freedesktop/session/desktop_session.h"
#include "platform/clock.h"
#include "platform/date_services.h"
#include "tests/freedesktop/session/private_bus.h"
#include "tests/freedesktop/session/settings_writer.h"

namespace quorvel::shells {
namespace {

using namespace testing_session;
using freedesktop::CalendarSource;
using freedesktop::ClockFormat;
using freedesktop::FreedesktopOptions;
using freedesktop::FreedesktopPlatform;
using freedesktop::namedTimeZone;
using platform::NSDate;
using testing::IsEmpty;
namespace fs = std::filesystem;

using SteadyClock = std::chrono::steady_clock;

double secondsSince(SteadyClock::time_point begin) {
    return std::chrono::duration<double>(SteadyClock::now() - begin).count();
}

class LivePresenterTest : public testing::Test {
protected:
    LivePresenterTest() {
        fs::create_directories(folder / "Preferences");
        fs::create_directories(folder / "calendars/home");
        write(folder / "one.ics", "1");
        options.timeZone = namedTimeZone("Europe/Berlin");
        options.locale = "en_US";
        options.preferencesFolder = folder / "Preferences";
        options.calendars = {CalendarSource::at(folder / "one.ics"),
                             CalendarSource::at(folder / "calendars"),
                             CalendarSource::inMemory("text", "")};
        options.logs = {log};
    }

    NSDate at(std::string_view text) const {
        return freedesktop::parseInstant(text, *options.timeZone).value();
    }
    // The clock starts there and runs.
    void startAt(std::string_view text) {
        options.now = at(text);
        options.clockRuns = true;
        start();
    }
    void start() {
        platform.emplace(options);
        presenter = std::make_unique<LivePresenter>(
            *platform,
            [this] {
                ++presentations;
                lastClock = platform->platform().clock.now();
                presenter->restart(rows);
            },
            freedesktop::HostTimeZone{folder / "localtime",
                                      [this] { return namedTimeZone(zoneName); }});
        presenter->restart(rows);
    }
    void addRow(std::string_view rowStart, std::string_view rowEnd) {
        RowDescription row;
        row.start = at(rowStart);
        row.end = at(rowEnd);
        rows.push_back(row);
    }

    bool isPresentedInTime(int times = 1) {
        const bool happened =
            runUntil([this, times] { return presentations >= times; }, 1); // within a second
        runFor(0.3);
        const bool exactly = presentations == times;
        presentations = 0;
        return happened && exactly;
    }
    bool isNotPresented() {
        runFor(0.7);
        return presentations == 0;
    }

    EnvironmentVariable desktop{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus"};
    EnvironmentVariable noZone{"TZ", nullptr};
    EnvironmentVariable noLocale{"LC_ALL", nullptr};
    TemporaryFolder folder;
    std::string zoneName = "Europe/Berlin";
    std::shared_ptr<RecordedLog> log = std::make_shared<RecordedLog>();
    SettingsWriter interface { "org.gnome.desktop.interface" };
    SettingsWriter regions{"org.gnome.system.locale"};
    PrivateBus bus;
    FakeSystemServices services{bus};

    FreedesktopOptions options;
    std::optional<FreedesktopPlatform> platform;
    std::vector<RowDescription> rows;
    int presentations = 0;
    NSDate lastClock;
    std::unique_ptr<LivePresenter> presenter;
};

TEST_F(LivePresenterTest, AtMidnight) {
    startAt("2026-03-10T23:59:59.7");
    EXPECT_EQ(presentations, 0);
    EXPECT_TRUE(isPresentedInTime());
    EXPECT_GE(lastClock, at("2026-03-11T00:00:00"));
    EXPECT_LT(lastClock, at("2026-03-11T00:00:01"));
    EXPECT_TRUE(isNotPresented());
}

TEST_F(LivePresenterTest, AtTheStartAndEndOfARow) {
    addRow("2026-03-10T10:00:00.3", "2026-03-10T10:00:01.2");
    startAt("2026-03-10T10:00:00");
    EXPECT_TRUE(isPresentedInTime());
    EXPECT_GE(lastClock, *rows[0].start);
    EXPECT_TRUE(isPresentedInTime());
    EXPECT_GE(lastClock, *rows[0].end);
    EXPECT_LT(lastClock.timeIntervalSinceDate(*rows[0].end), 0.5);
    EXPECT_TRUE(isNotPresented());
}

TEST_F(LivePresenterTest, RowsThatEndTogetherAreOnePresentation) {
    for (int i = 0; i < 5; ++i) {
        addRow("2026-03-10T09:00:00", "2026-03-10T10:00:00.2");
    }
    startAt("2026-03-10T10:00:00");
    EXPECT_TRUE(isPresentedInTime());
}

TEST_F(LivePresenterTest, OnlyTheLatestRowsCount) {
    addRow("2026-03-10T09:00:00", "2026-03-10T10:00:00.2");
    startAt("2026-03-10T10:00:00");
    presenter->restart({});
    EXPECT_TRUE(isNotPresented());
}

TEST_F(LivePresenterTest, AFixedClockCausesNoPresentation) {
    options.now = at("2026-03-10T23:59:59.9");
    start();
    EXPECT_TRUE(isNotPresented());
}

TEST_F(LivePresenterTest, WhenTheClockIsSetOrTheSystemWakes) {
    addRow("2026-03-10T09:00:00", "2026-03-10T10:00:00.2");
    startAt("2026-03-10T10:00:00");
    Kernel::instance().saysClockWasSet = true;
    EXPECT_TRUE(isPresentedInTime());
    ASSERT_TRUE(runUntil([this] { return services.hasListener("org.freedesktop.login1"); }));
    services.prepareForSleep(true);
    EXPECT_TRUE(isNotPresented());
    services.prepareForSleep(false);
    EXPECT_TRUE(isPresentedInTime());
}

TEST_F(LivePresenterTest, WhenAFileOfSettingsIsWrittenOrReplaced) {
    const std::string settings = folder / "Preferences/org.quorvel.quorvelprefs.plist";
    start();
    write(settings, "{}");
    EXPECT_TRUE(isPresentedInTime());
    replace(settings, "{a=b;}");
    EXPECT_TRUE(isPresentedInTime());
    fs::remove(settings);
    EXPECT_TRUE(isPresentedInTime());
    write(folder / "Preferences/.settings.swp", "");
    write(folder / "Preferences/4913", "");
    EXPECT_TRUE(isNotPresented());
}

TEST_F(LivePresenterTest, WhenTheSettingsFolderAppears) {
    options.preferencesFolder = folder / "config/quorvel/Preferences";
    start();
    fs::create_directories(options.preferencesFolder);
    EXPECT_TRUE(isPresentedInTime());
    write(options.preferencesFolder + "/org.quorvel.quorvelprefs.plist", "{}");
    EXPECT_TRUE(isPresentedInTime());
}

TEST_F(LivePresenterTest, WhenACalendarIsWrittenReplacedAddedOrRemoved) {
    start();
    write(folder / "one.ics", "2");
    EXPECT_TRUE(isPresentedInTime());
    replace(folder / "one.ics", "3");
    EXPECT_TRUE(isPresentedInTime());
    write(folder / "calendars/home/event.ics", "1");
    EXPECT_TRUE(isPresentedInTime());
    write(folder / "calendars/home/color", "#FF0000");
    EXPECT_TRUE(isPresentedInTime());
    fs::create_directories(folder / "calendars/office");
    EXPECT_TRUE(isPresentedInTime());
    write(folder / "calendars/office/event.ics", "1");
    EXPECT_TRUE(isPresentedInTime());
    fs::remove_all(folder / "calendars/office");
    EXPECT_TRUE(isPresentedInTime());
    fs::remove(folder / "one.ics");
    EXPECT_TRUE(isPresentedInTime());
    write(folder / "calendars/home/event.ics.tmp", "1");
    write(folder / "two.ics", "1");
    EXPECT_TRUE(isNotPresented());
    EXPECT_THAT(log->lines(), IsEmpty());
}

TEST_F(LivePresenterTest, WhenThunderbirdChangesItsCalendars) {
    fs::create_directories(folder / "profile/calendar-data");
    write(folder / "profile/prefs.js", "1");
    options.calendars = {CalendarSource::at("thunderbird:" + (folder / "profile"))};
    start();
    write(folder / "profile/calendar-data/local.sqlite", "1");
    EXPECT_TRUE(isPresentedInTime());
    write(folder / "profile/calendar-data/local.sqlite-wal", "1"); // as long as Thunderbird runs
    EXPECT_TRUE(isPresentedInTime());
    write(folder / "profile/prefs.js", "2");
    EXPECT_TRUE(isPresentedInTime());
    write(folder / "profile/calendar-data/local.sqlite-shm", "1");
    write(folder / "profile/global-messages-db.sqlite", "1");
    EXPECT_TRUE(isNotPresented());
}

TEST_F(LivePresenterTest, ABurstIsOnePresentation) {
    start();
    for (int i = 0; i < 50; ++i) {
        write(folder / ("calendars/home/" + std::to_string(i) + ".ics"), "1");
        runFor(0.002);
    }
    EXPECT_TRUE(isPresentedInTime());
}

TEST_F(LivePresenterTest, ASteadyStreamOfChangesDoesNotPostponeItForever) {
    start();
    const auto begin = SteadyClock::now();
    while (presentations == 0 && secondsSince(begin) < 5) {
        write(folder / "one.ics", "1");
        runFor(0.01);
    }
    EXPECT_LT(secondsSince(begin), 1);
    while (secondsSince(begin) < 2) {
        write(folder / "one.ics", "1");
        runFor(0.01);
    }
    EXPECT_GE(presentations, 2);
    EXPECT_LE(presentations, 6);
}

TEST_F(LivePresenterTest, ANewTimeZoneReachesThePlatformFirst) {
    start();
    zoneName = "Asia/Tokyo";
    write(folder / "localtime", "Tokyo");
    EXPECT_TRUE(isPresentedInTime());
    EXPECT_EQ(platform->timeZone()->identifier(), "Asia/Tokyo");
    const auto hour = platform->platform().dateServices.components(platform::NSHourCalendarUnit,
                                                                   at("2026-03-10T10:00:00"));
    EXPECT_EQ(hour.hour, 18);
    write(folder / "localtime", "Tokyo again");
    EXPECT_TRUE(isNotPresented()) << "the same zone";
}

TEST_F(LivePresenterTest, ANewLocaleReachesThePlatformFirst) {
    start();
    regions.set("region", "de_DE.UTF-8");
    EXPECT_TRUE(isPresentedInTime());
    EXPECT_EQ(platform->locale(), "de_DE");
    EXPECT_EQ(platform->platform().dateServices.stringFromDate({false, {}, {}, "EEEE"},
                                                               at("2026-03-10T10:00:00")),
              "Dienstag");
    regions.set("region", "de_DE");
    EXPECT_TRUE(isNotPresented()) << "the same locale";
    regions.reset("region");
    presentations = 0;
    runFor(0.7);
    presentations = 0;
    ASSERT_TRUE(runUntil([this] { return services.hasListener("org.freedesktop.locale1"); }));
    services.setLocale({"LANG=it_IT.UTF-8"}, false);
    EXPECT_TRUE(isPresentedInTime());
    EXPECT_EQ(platform->locale(), "it_IT");
}

TEST_F(LivePresenterTest, ANewClockFormatReachesThePlatformFirst) {
    start();
    const auto time = [this] {
        const platform::NSDateFormatter formatter{false,
                                                  platform::NSDateFormatterStyle::none,
                                                  platform::NSDateFormatterStyle::shortStyle,
                                                  {}};
        return platform->platform().dateServices.stringFromDate(formatter,
                                                                at("2026-03-10T14:30:00"));
    };
    EXPECT_EQ(time(), "2:30 PM");
    interface.set("clock-format", "24h");
    EXPECT_TRUE(isPresentedInTime());
    EXPECT_EQ(time(), "14:30");
    interface.set("clock-format", "12h");
    EXPECT_TRUE(isPresentedInTime());
    EXPECT_EQ(time(), "2:30 PM");
}

TEST_F(LivePresenterTest, ChoicesOfTheUserOverrideTheSession) {
    options.followsTimeZone = false;
    options.followsLocale = false;
    start();
    ASSERT_TRUE(runUntil([this] { return services.hasListener("org.freedesktop.login1"); }));
    zoneName = "Asia/Tokyo";
    write(folder / "localtime", "Tokyo");
    regions.set("region", "de_DE.UTF-8");
    interface.set("clock-format", "24h");
    services.setLocale({"LANG=it_IT.UTF-8"}, true);
    EXPECT_TRUE(isNotPresented());
    EXPECT_EQ(platform->locale(), "en_US");
    EXPECT_EQ(platform->timeZone()->identifier(), "Europe/Berlin");
    EXPECT_EQ(platform->clockFormat(), ClockFormat::ofLocale);
}

TEST_F(LivePresenterTest, APausePostponesAllChangesToOnePresentation) {
    addRow("2026-03-10T09:00:00", "2026-03-10T10:00:00.2");
    startAt("2026-03-10T10:00:00");
    presenter->setPaused(true);
    write(folder / "one.ics", "2");
    EXPECT_TRUE(isNotPresented());
    presenter->setPaused(false);
    EXPECT_EQ(presentations, 0) << "not from within the call";
    EXPECT_TRUE(isPresentedInTime());
    presenter->setPaused(true);
    presenter->setPaused(false);
    EXPECT_TRUE(isNotPresented());
}

TEST_F(LivePresenterTest, APresentationByTheHostCoversEarlierChanges) {
    start();
    write(folder / "one.ics", "2");
    runFor(0.05);
    presenter->restart(rows);
    EXPECT_TRUE(isNotPresented());
    presenter->setPaused(true);
    write(folder / "one.ics", "3");
    runFor(0.3);
    presenter->restart(rows);
    presenter->setPaused(false);
    EXPECT_TRUE(isNotPresented());
}

TEST_F(LivePresenterTest, PresentsNothingAfterItsDestruction) {
    addRow("2026-03-10T09:00:00", "2026-03-10T10:00:00.4");
    startAt("2026-03-10T10:00:00");
    ASSERT_TRUE(runUntil([this] { return services.hasListener("org.freedesktop.login1"); }));
    write(folder / "one.ics", "2");
    runFor(0.01); // the change is known, but its presentation still waits
    write(folder / "Preferences/a.plist", "{}");
    zoneName = "Asia/Tokyo";
    write(folder / "localtime", "Tokyo");
    regions.set("region", "de_DE.UTF-8");
    interface.set("clock-format", "24h");
    services.prepareForSleep(false);
    services.setLocale({"LANG=it_IT.UTF-8"}, false);
    presenter.reset();
    EXPECT_TRUE(isNotPresented());
    EXPECT_EQ(platform->timeZone()->identifier(), "Europe/Berlin");
}

TEST_F(LivePresenterTest, APresentationMayDestroyIt) {
    platform.emplace(options);
    presenter = std::make_unique<LivePresenter>(*platform, [this] {
        ++presentations;
        presenter.reset();
    });
    presenter->restart({});
    write(folder / "one.ics", "2");
    EXPECT_TRUE(isPresentedInTime());
    write(folder / "one.ics", "3");
    EXPECT_TRUE(isNotPresented());
}

TEST_F(LivePresenterTest, WaitingCausesNoWakeUps) {
    addRow("2026-03-10T09:00:00", "2026-03-10T11:00:00");
    startAt("2026-03-10T10:00:00");
    write(folder / "one.ics", "2");
    EXPECT_TRUE(isPresentedInTime());
    ASSERT_TRUE(runUntil([this] { return services.hasListener("org.freedesktop.locale1"); }));
    runFor(0.2);
    EXPECT_EQ(wakeUpsDuring(1.5), 0);
}

} // namespace
} // namespace quorvel::shells
