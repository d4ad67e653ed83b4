#include "freedesktop/session/desktop_session.h"

#include <gmock/gmock.h>

#include "tests/freedesktop/session/private_bus.h"
#include "tests/freedesktop/session/settings_writer.h"

namespace quorvel::freedesktop {
namespace {

using namespace testing_session;
using testing::ElementsAre;
using testing::IsEmpty;
namespace fs = std::filesystem;

class DesktopSessionTest : public testing::Test {
protected:
    void follow() {
        SessionChanges changes;
        changes.onTimeZone = [this](const std::shared_ptr<const TimeZone>& zone) {
            zones.push_back(zone->identifier());
        };
        changes.onLocale = [this](const std::string& locale) { locales.push_back(locale); };
        changes.onClockFormat = [this](ClockFormat clockFormat) { formats.push_back(clockFormat); };
        changes.onResume = [this] { ++resumes; };
        session = std::make_unique<DesktopSession>(
            log, std::move(changes),
            HostTimeZone{zoneFile, [this] { return namedTimeZone(zoneName); }});
    }
    void setZone(const char* name) {
        zoneName = name;
        fs::create_symlink("zoneinfo/" + std::string(name), zoneFile + ".new");
        fs::rename(zoneFile + ".new", zoneFile);
    }

    EnvironmentVariable desktop{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus"};
    EnvironmentVariable noZone{"TZ", nullptr};
    EnvironmentVariable noLocale{"LC_ALL", nullptr};
    EnvironmentVariable noTime{"LC_TIME", nullptr};
    EnvironmentVariable language{"LANG", "fr_FR.UTF-8"};
    TemporaryFolder folder;
    std::string zoneFile = folder / "localtime";
    std::string zoneName = "Europe/Berlin";
    RecordedLog log;
    SettingsWriter interface { "org.gnome.desktop.interface" };
    SettingsWriter regions{"org.gnome.system.locale"};
    PrivateBus bus;
    FakeSystemServices services{bus};

    std::vector<std::string> zones;
    std::vector<std::string> locales;
    std::vector<ClockFormat> formats;
    int resumes = 0;
    std::unique_ptr<DesktopSession> session;
};

TEST_F(DesktopSessionTest, ReportsTheMachinesTimeZone) {
    setZone("Europe/Berlin");
    follow();
    runFor(0.05);
    EXPECT_THAT(zones, IsEmpty());
    setZone("Asia/Tokyo");
    EXPECT_TRUE(runUntil([this] { return !zones.empty(); }));
    EXPECT_EQ(zones.back(), "Asia/Tokyo");
}

TEST_F(DesktopSessionTest, WhatTheEnvironmentFixesDoesNotChange) {
    const EnvironmentVariable zone("TZ", "UTC");
    const EnvironmentVariable lcAll("LC_ALL", "it_IT.UTF-8");
    follow();
    setZone("Asia/Tokyo");
    regions.set("region", "de_DE.UTF-8");
    runFor(0.2);
    EXPECT_THAT(zones, IsEmpty());
    EXPECT_THAT(locales, testing::Each("it_IT"));
}

TEST_F(DesktopSessionTest, ReportsTheRegionAndTheSystemsLocale) {
    follow();
    regions.set("region", "de_DE.UTF-8");
    EXPECT_TRUE(runUntil([this] { return !locales.empty(); }));
    ASSERT_TRUE(runUntil([this] { return services.hasListener("org.freedesktop.locale1"); }));
    services.setLocale({"LANG=ja_JP.UTF-8"}, false);
    EXPECT_TRUE(runUntil([this] { return locales.size() >= 2; }));
    regions.reset("region");
    EXPECT_TRUE(runUntil([this] { return locales.size() >= 3; }));
    EXPECT_THAT(locales, ElementsAre("de_DE", "de_DE", "ja_JP"));
}

TEST_F(DesktopSessionTest, WithoutARegionTheEnvironmentCountsAgain) {
    regions.set("region", "de_DE.UTF-8");
    follow();
    regions.reset("region");
    EXPECT_TRUE(runUntil([this] { return !locales.empty(); }));
    EXPECT_THAT(locales, ElementsAre("fr_FR"));
}

TEST_F(DesktopSessionTest, ReportsTheClockFormat) {
    follow();
    interface.set("clock-format", "12h");
    EXPECT_TRUE(runUntil([this] { return formats.size() == 1; }));
    interface.reset("clock-format");
    EXPECT_TRUE(runUntil([this] { return formats.size() == 2; }));
    EXPECT_THAT(formats, ElementsAre(ClockFormat::twelveHours, ClockFormat::ofLocale));
}

TEST_F(DesktopSessionTest, ReportsWaking) {
    follow();
    ASSERT_TRUE(runUntil([this] { return services.hasListener("org.freedesktop.login1"); }));
    services.prepareForSleep(false);
    EXPECT_TRUE(runUntil([this] { return resumes == 1; }));
}

TEST_F(DesktopSessionTest, FollowsOnlyWhatHasACallback) {
    SessionChanges changes;
    changes.onResume = [this] { ++resumes; };
    session = std::make_unique<DesktopSession>(log, std::move(changes),
                                               HostTimeZone{zoneFile, hostTimeZone});
    ASSERT_TRUE(runUntil([this] { return services.hasListener("org.freedesktop.login1"); }));
    EXPECT_FALSE(services.hasListener("org.freedesktop.locale1"));
    setZone("Asia/Tokyo");
    regions.set("region", "de_DE.UTF-8");
    interface.set("clock-format", "12h");
    services.setLocale({"LANG=ja_JP.UTF-8"}, true);
    runFor(0.2);
    EXPECT_EQ(services.localeQuestions(), 0);
}

TEST_F(DesktopSessionTest, DoesNotCallAfterItsDestruction) {
    follow();
    ASSERT_TRUE(runUntil([this] { return services.hasListener("org.freedesktop.login1"); }));
    setZone("Asia/Tokyo");
    services.prepareForSleep(false);
    services.setLocale({"LANG=ja_JP.UTF-8"}, true);
    session.reset();
    regions.set("region", "de_DE.UTF-8");
    interface.set("clock-format", "12h");
    runFor(0.2);
    EXPECT_THAT(zones, IsEmpty());
    EXPECT_THAT(locales, IsEmpty());
    EXPECT_THAT(formats, IsEmpty());
    EXPECT_EQ(resumes, 0);
}

TEST_F(DesktopSessionTest, FollowingDoesNotWakeTheProcess) {
    setZone("Europe/Berlin");
    follow();
    ASSERT_TRUE(runUntil([this] { return services.hasListener("org.freedesktop.login1"); }));
    runFor(0.2);
    EXPECT_EQ(wakeUpsDuring(1), 0);
}

} // namespace
} // namespace quorvel::freedesktop
