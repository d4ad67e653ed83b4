#include "freedesktop/session/desktop_settings.h"

#include <gtest/gtest.h>

#include "tests/freedesktop/session/session_testing.h"
#include "tests/freedesktop/session/settings_writer.h"

namespace quorvel::freedesktop {
namespace {

using namespace testing_session;

constexpr const char* interfaceSchema = "org.gnome.desktop.interface";
constexpr const char* localeSchema = "org.gnome.system.locale";

class DesktopSettingsTest : public testing::Test {
protected:
    EnvironmentVariable session{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus"};
    SettingsWriter interface { interfaceSchema };
    SettingsWriter locale{localeSchema};
};

TEST_F(DesktopSettingsTest, DistinguishesTheUsersValueFromTheDefault) {
    const DesktopSetting setting(interfaceSchema, "clock-format");
    EXPECT_EQ(setting.userValue(), std::nullopt);
    ASSERT_TRUE(setting.value().has_value());
    interface.set("clock-format", "12h");
    EXPECT_EQ(setting.userValue(), "12h");
    EXPECT_EQ(setting.value(), "12h");
}

TEST_F(DesktopSettingsTest, WhatTheSystemDoesNotKnowHasNoValue) {
    for (const auto& [schema, key] : {std::pair("org.example.NoSuchSchema", "key"),
                                      std::pair(interfaceSchema, "no-such-key")}) {
        DesktopSetting setting(schema, key);
        setting.setOnChange([] { ADD_FAILURE(); });
        EXPECT_EQ(setting.value(), std::nullopt);
        EXPECT_EQ(setting.userValue(), std::nullopt);
    }
    EXPECT_EQ(DesktopSetting(interfaceSchema, "cursor-blink").value(), std::nullopt) << "no text";
}

TEST_F(DesktopSettingsTest, ValuesHaveTypes) {
    interface.set("text-scaling-factor", 1.5);
    interface.set("cursor-blink", false);
    const DesktopSetting number(interfaceSchema, "text-scaling-factor");
    EXPECT_EQ(number.numberValue(), 1.5);
    EXPECT_EQ(number.flagValue(), std::nullopt);
    EXPECT_EQ(number.value(), std::nullopt);
    const DesktopSetting flag(interfaceSchema, "cursor-blink");
    EXPECT_EQ(flag.flagValue(), false);
    EXPECT_EQ(flag.numberValue(), std::nullopt);
    EXPECT_EQ(DesktopSetting(interfaceSchema, "no-such-key").flagValue(), std::nullopt);
}

TEST_F(DesktopSettingsTest, WithoutADesktopSessionNothingHasAValue) {
    interface.set("clock-format", "12h");
    const EnvironmentVariable noBus("DBUS_SESSION_BUS_ADDRESS", nullptr);
    const EnvironmentVariable noFolder("XDG_RUNTIME_DIR", "/nonexistent");
    EXPECT_EQ(desktopClockFormat(), ClockFormat::ofLocale);
}

TEST_F(DesktopSettingsTest, TheClockFormatIsTheUsersOrTheLocales) {
    EXPECT_EQ(desktopClockFormat(), ClockFormat::ofLocale);
    interface.set("clock-format", "12h");
    EXPECT_EQ(desktopClockFormat(), ClockFormat::twelveHours);
    interface.set("clock-format", "24h");
    EXPECT_EQ(desktopClockFormat(), ClockFormat::twentyFourHours);
    interface.reset("clock-format");
    EXPECT_EQ(desktopClockFormat(), ClockFormat::ofLocale);
}

TEST_F(DesktopSettingsTest, TheRegionIsTheUsersOrNone) {
    const RegionSetting setting;
    EXPECT_EQ(setting.region(), std::nullopt);
    locale.set("region", "de_DE.UTF-8");
    EXPECT_EQ(setting.region(), "de_DE.UTF-8");
    locale.set("region", "");
    EXPECT_EQ(setting.region(), std::nullopt);
}

TEST_F(DesktopSettingsTest, ReportsChangesUntilItIsDestroyed) {
    int calls = 0;
    auto setting = std::make_unique<ClockFormatSetting>();
    setting->setOnChange([&calls] { ++calls; });
    runFor(0.02);
    EXPECT_EQ(calls, 0);
    interface.set("clock-format", "12h");
    EXPECT_TRUE(runUntil([&calls] { return calls == 1; }));
    EXPECT_EQ(setting->clockFormat(), ClockFormat::twelveHours);
    interface.set("font-name", "Cantarell 12");
    runFor(0.02);
    EXPECT_EQ(calls, 1) << "another setting";
    interface.set("clock-format", "24h");
    setting.reset();
    interface.set("clock-format", "12h");
    runFor(0.02);
    EXPECT_LE(calls, 2);
}

} // namespace
} // namespace quorvel::freedesktop
