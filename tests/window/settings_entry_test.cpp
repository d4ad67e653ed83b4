// The entry "Settings" of the window's menu, and that of the desktop's menu for the program, start
// the settings' own program. Not among the tests for the thread sanitizer: that program starts no
// threads, and GTK's own calls end it or stall it there.
#include <algorithm>

#include <gio/gio.h>
#include <gmock/gmock.h>

#include "freedesktop/glib/handles.h"
#include "tests/window/window_fixture.h"

namespace quorvel::window {
namespace {

class SettingsEntryTest : public WindowTest {
protected:
    SettingsEntryTest() {
        m_environment["GDK_DEBUG"] = "gl-disable"; // drawing by software OpenGL is slow
        m_environment["GSK_RENDERER"] = "cairo";
    }

    // Waits for the window of the settings and closes it, by its own key.
    void expectSettings(unsigned long menu = 0) {
        unsigned long settings = 0;
        ASSERT_TRUE(becomesTrue(20, [&] {
            for (const unsigned long window : m_display->windows()) {
                settings =
                    window != menu && std::to_string(window) != this->window() ? window : settings;
            }
            return settings != 0;
        })) << errors();
        const auto isOpen = [&] { return std::ranges::count(m_display->windows(), settings) == 1; };
        EXPECT_TRUE(becomesTrue(20, [&] {
            tryInput({"windowfocus", std::to_string(settings), "key", "ctrl+q"});
            rest(0.2);
            return !isOpen();
        }));
        EXPECT_EQ(m_program->exitStatus(0.3), std::nullopt) << errors();
    }
};

// As a desktop does that shows the actions of a desktop entry which is activated over the bus.
void activateAction(const char* action) {
    using freedesktop::ObjectHandle;
    const ObjectHandle<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    ASSERT_TRUE(bus);
    const freedesktop::VariantHandle answer(g_dbus_connection_call_sync(
        bus.get(), "org.quorvel.Quorvel", "/org/quorvel/Quorvel", "org.freedesktop.Application",
        "ActivateAction", g_variant_new("(sava{sv})", action, nullptr, nullptr), nullptr,
        G_DBUS_CALL_FLAGS_NO_AUTO_START, 5000, nullptr, nullptr));
    EXPECT_TRUE(answer);
}

TEST_F(SettingsEntryTest, OpensTheSettingsInAWindowOfTheirOwn) {
    writeThreeEvents();
    show();
    key("F10");
    const unsigned long menu = secondWindow();
    ASSERT_NE(menu, 0U);
    key("s");
    expectSettings(menu);
}

TEST_F(SettingsEntryTest, OpensThemForTheDesktopsMenu) {
    writeThreeEvents();
    show();
    activateAction("settings");
    expectSettings();
}

} // namespace
} // namespace quorvel::window
