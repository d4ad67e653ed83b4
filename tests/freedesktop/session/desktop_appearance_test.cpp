#include "freedesktop/session/desktop_appearance.h"

#include <chrono>

#include <gtest/gtest.h>

#include "tests/freedesktop/session/private_bus.h"
#include "tests/freedesktop/session/settings_writer.h"

namespace quorvel::freedesktop {
namespace {

using namespace testing_session;
using Version = FakePortal::Version;

class DesktopAppearanceTest : public testing::Test {
protected:
    void follow() {
        appearance = std::make_unique<DesktopAppearance>([this] { ++changes; });
    }
    bool becomes(ColorScheme scheme) {
        return runUntil([&] { return appearance->colorScheme() == scheme; });
    }

    SettingsWriter interface { "org.gnome.desktop.interface" };
    SettingsWriter accessibility{"org.gnome.desktop.a11y.interface"};
    int changes = 0;
    std::unique_ptr<DesktopAppearance> appearance;
};

class DesktopAppearanceWithoutPortalTest : public DesktopAppearanceTest {
protected:
    EnvironmentVariable session{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus"};
};

TEST_F(DesktopAppearanceWithoutPortalTest, TheSettingsOfTheSessionCount) {
    interface.set("color-scheme", "prefer-dark");
    interface.set("text-scaling-factor", 1.25);
    interface.set("font-name", "Inter 12");
    accessibility.set("high-contrast", true);
    follow();
    EXPECT_EQ(appearance->colorScheme(), ColorScheme::dark);
    EXPECT_TRUE(appearance->hasHighContrast());
    EXPECT_EQ(appearance->textScale(), 1.25);
    EXPECT_EQ(appearance->fontName(), "Inter 12");
    runFor(0.05);
    EXPECT_EQ(changes, 0);
}

TEST_F(DesktopAppearanceWithoutPortalTest, EveryChangeIsReported) {
    follow();
    EXPECT_EQ(appearance->colorScheme(), ColorScheme::noPreference);
    EXPECT_FALSE(appearance->hasHighContrast());
    EXPECT_EQ(appearance->textScale(), 1);
    interface.set("color-scheme", "prefer-light");
    EXPECT_TRUE(becomes(ColorScheme::light));
    EXPECT_EQ(changes, 1);
    interface.set("gtk-theme", "HighContrast");
    EXPECT_TRUE(runUntil([&] { return appearance->hasHighContrast(); }));
    EXPECT_EQ(changes, 2);
    accessibility.set("high-contrast", true);
    runFor(0.05);
    EXPECT_EQ(changes, 2) << "it had a high contrast before";
    interface.set("gtk-theme", "Adwaita");
    runFor(0.05);
    EXPECT_TRUE(appearance->hasHighContrast());
    interface.set("text-scaling-factor", 1.5);
    EXPECT_TRUE(runUntil([&] { return appearance->textScale() == 1.5; }));
    interface.set("font-name", "DejaVu Sans 10");
    EXPECT_TRUE(runUntil([&] { return appearance->fontName() == "DejaVu Sans 10"; }));
    EXPECT_EQ(changes, 4);
}

TEST_F(DesktopAppearanceWithoutPortalTest, NothingIsCalledAfterItsDestruction) {
    follow();
    interface.set("color-scheme", "prefer-dark");
    appearance.reset();
    const int before = changes;
    interface.set("color-scheme", "prefer-light");
    runFor(0.05);
    EXPECT_EQ(changes, before);
}

TEST_F(DesktopAppearanceTest, WithoutADesktopSessionEverythingHasItsDefault) {
    const EnvironmentVariable noBus("DBUS_SESSION_BUS_ADDRESS", nullptr);
    const EnvironmentVariable noFolder("XDG_RUNTIME_DIR", "/nonexistent");
    interface.set("color-scheme", "prefer-dark");
    follow();
    runFor(0.05);
    EXPECT_EQ(appearance->colorScheme(), ColorScheme::noPreference);
    EXPECT_EQ(appearance->textScale(), 1);
    EXPECT_EQ(appearance->fontName(), std::nullopt);
    EXPECT_EQ(changes, 0);
}

class DesktopAppearanceOnBusTest : public DesktopAppearanceTest {
protected:
    // The bus waits until nobody holds the process's connection.
    ~DesktopAppearanceOnBusTest() override { appearance.reset(); }

    FakePortal& addPortal(Version version) { return portal.emplace(bus, version); }

    PrivateBus bus{G_BUS_TYPE_SESSION};
    std::optional<FakePortal> portal;
};

TEST_F(DesktopAppearanceOnBusTest, ThePortalCountsMoreThanTheSettings) {
    for (const Version version : {Version::one, Version::two}) {
        interface.set("color-scheme", "prefer-light");
        accessibility.set("high-contrast", true);
        addPortal(version).set("color-scheme", 1);
        portal->set("contrast", 0);
        follow();
        EXPECT_EQ(appearance->colorScheme(), ColorScheme::light) << "until the portal answers";
        EXPECT_TRUE(becomes(ColorScheme::dark));
        EXPECT_TRUE(runUntil([&] { return !appearance->hasHighContrast(); }));
        EXPECT_EQ(appearance->colorScheme(), ColorScheme::dark);
        appearance.reset();
    }
}

TEST_F(DesktopAppearanceOnBusTest, FollowsThePortal) {
    addPortal(Version::two).set("color-scheme", 1);
    follow();
    ASSERT_TRUE(becomes(ColorScheme::dark));
    runFor(0.05);
    changes = 0;
    portal->change("color-scheme", 2);
    EXPECT_TRUE(becomes(ColorScheme::light));
    portal->change("contrast", 1);
    EXPECT_TRUE(runUntil([&] { return appearance->hasHighContrast(); }));
    portal->change("color-scheme", 0);
    EXPECT_TRUE(becomes(ColorScheme::noPreference));
    EXPECT_EQ(changes, 3);
    portal->change("color-scheme", 0);
    runFor(0.05);
    EXPECT_EQ(changes, 3) << "the same value";
}

TEST_F(DesktopAppearanceOnBusTest, WhatThePortalDoesNotKnowComesFromTheSettings) {
    addPortal(Version::two).set("color-scheme", 2);
    accessibility.set("high-contrast", true);
    follow();
    ASSERT_TRUE(becomes(ColorScheme::light));
    runFor(0.05);
    EXPECT_TRUE(appearance->hasHighContrast());
}

TEST_F(DesktopAppearanceOnBusTest, APortalThatHangsIsNotWaitedFor) {
    addPortal(Version::hanging);
    interface.set("color-scheme", "prefer-dark");
    const auto before = std::chrono::steady_clock::now();
    follow();
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::milliseconds(500));
    EXPECT_EQ(appearance->colorScheme(), ColorScheme::dark);
    ASSERT_TRUE(runUntil([&] { return portal->calls() >= 2; }));
    interface.set("color-scheme", "prefer-light");
    EXPECT_TRUE(becomes(ColorScheme::light)) << "the settings count";
    portal->change("color-scheme", 1);
    EXPECT_TRUE(becomes(ColorScheme::dark)) << "its signals count nevertheless";
    appearance.reset(); // with its calls on their way
    runFor(0.05);
}

TEST_F(DesktopAppearanceOnBusTest, FaultyAnswersAreIgnored) {
    addPortal(Version::faulty);
    interface.set("color-scheme", "prefer-dark");
    follow();
    ASSERT_TRUE(runUntil([&] { return portal->calls() >= 2; }));
    portal->emitChange("org.freedesktop.appearance", "color-scheme", g_variant_new_string("light"));
    portal->emitChange("org.freedesktop.appearance", "accent-color", g_variant_new_uint32(2));
    portal->emitChange("org.example.appearance", "color-scheme", g_variant_new_uint32(2));
    runFor(0.1);
    EXPECT_EQ(appearance->colorScheme(), ColorScheme::dark);
    EXPECT_EQ(changes, 0);
    portal->change("color-scheme", 77);
    EXPECT_TRUE(becomes(ColorScheme::noPreference));
}

TEST_F(DesktopAppearanceOnBusTest, APortalThatStartsLaterIsRead) {
    interface.set("color-scheme", "prefer-light");
    follow();
    runFor(0.2);
    EXPECT_EQ(appearance->colorScheme(), ColorScheme::light);
    addPortal(Version::one).set("color-scheme", 1);
    EXPECT_TRUE(becomes(ColorScheme::dark));
    portal.reset();
    runFor(0.1);
    EXPECT_EQ(appearance->colorScheme(), ColorScheme::dark) << "it is expected to return";
    addPortal(Version::two).set("color-scheme", 2);
    EXPECT_TRUE(becomes(ColorScheme::light));
}

TEST_F(DesktopAppearanceOnBusTest, ABusThatGoesAwayChangesNothing) {
    addPortal(Version::two).set("color-scheme", 1);
    follow();
    ASSERT_TRUE(becomes(ColorScheme::dark));
    portal.reset();
    bus.stop();
    runFor(0.15);
    EXPECT_EQ(appearance->colorScheme(), ColorScheme::dark);
    EXPECT_EQ(appearance->textScale(), 1);
}

TEST_F(DesktopAppearanceOnBusTest, FollowingDoesNotWakeTheProcess) {
    addPortal(Version::two).set("color-scheme", 1);
    follow();
    ASSERT_TRUE(becomes(ColorScheme::dark));
    runFor(0.2);
    EXPECT_EQ(wakeUpsDuring(0.5), 0);
}

} // namespace
} // namespace quorvel::freedesktop
