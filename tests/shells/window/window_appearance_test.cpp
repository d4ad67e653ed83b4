#include "shells/window/window_appearance.h"

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include "tests/freedesktop/session/session_testing.h"
#include "tests/freedesktop/session/settings_writer.h"

namespace quorvel::window {
namespace {

using namespace testing_session;

// What the toolkit reads its theme for.
class ThemeReadings {
public:
    ThemeReadings() {
        using Handler = void (*)(GObject*, GParamSpec*, int*);
        const Handler wasRead = [](GObject*, GParamSpec*, int* number) { ++*number; };
        m_handler = g_signal_connect(gtk_settings_get_default(),
                                     "notify::gtk-application-prefer-dark-theme",
                                     G_CALLBACK(wasRead), &m_number);
    }
    ~ThemeReadings() { g_signal_handler_disconnect(gtk_settings_get_default(), m_handler); }
    ThemeReadings(const ThemeReadings&) = delete;
    ThemeReadings& operator=(const ThemeReadings&) = delete;

    int number() const { return m_number; }

private:
    int m_number = 0;
    gulong m_handler = 0;
};

bool isThemeDark() {
    gboolean isDark = FALSE;
    g_object_get(gtk_settings_get_default(), "gtk-application-prefer-dark-theme", &isDark, nullptr);
    return isDark != FALSE;
}

bool areDark(const shells::Appearance& colors) {
    return colors.backdrop.green < colors.title.green;
}

class WindowAppearanceTest : public testing::Test {
protected:
    WindowAppearanceTest() { interface.set("color-scheme", "prefer-dark"); }

    // One without a portal; without any, the settings would not be read.
    EnvironmentVariable session{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus"};
    SettingsWriter interface { "org.gnome.desktop.interface" };
};

TEST_F(WindowAppearanceTest, TheThemeIsThatOfTheColours) {
    EXPECT_TRUE(areDark(WindowAppearance().colors()));
    EXPECT_TRUE(isThemeDark());
    interface.set("color-scheme", "prefer-light");
    EXPECT_FALSE(areDark(WindowAppearance().colors()));
    EXPECT_FALSE(isThemeDark());
}

TEST_F(WindowAppearanceTest, TheThemeIsNotReadAgainForTheSamePreference) {
    const WindowAppearance first;
    const ThemeReadings readings;
    const WindowAppearance second;
    EXPECT_EQ(readings.number(), 0);
    interface.set("color-scheme", "prefer-light");
    const WindowAppearance third;
    EXPECT_EQ(readings.number(), 1);
}

TEST_F(WindowAppearanceTest, AChangeOfTheDesktopIsFollowedAndReported) {
    WindowAppearance appearance;
    int changes = 0;
    appearance.setOnChange([&] {
        ++changes;
        EXPECT_FALSE(isThemeDark());
    });
    interface.set("color-scheme", "prefer-light");
    EXPECT_TRUE(runUntil([&] { return !areDark(appearance.colors()); }));
    EXPECT_EQ(changes, 1);
}

TEST_F(WindowAppearanceTest, WithoutAnObserverAChangeIsStillFollowed) {
    const WindowAppearance appearance;
    interface.set("color-scheme", "prefer-light");
    EXPECT_TRUE(runUntil([&] { return !areDark(appearance.colors()); }));
    EXPECT_FALSE(isThemeDark());
}

} // namespace
} // namespace quorvel::window
