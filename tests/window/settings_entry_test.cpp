// The menu's entry "Settings" starts the settings' own program. Not among the tests for the thread
// sanitizer: that program starts no threads, and GTK's own calls end it or stall it there.
#include <algorithm>

#include <gmock/gmock.h>

#include "tests/window/window_fixture.h"

namespace quorvel::window {
namespace {

class SettingsEntryTest : public WindowTest {
protected:
    SettingsEntryTest() {
        m_environment["GDK_DEBUG"] = "gl-disable"; // drawing by software OpenGL is slow
        m_environment["GSK_RENDERER"] = "cairo";
    }
};

TEST_F(SettingsEntryTest, OpensTheSettingsInAWindowOfTheirOwn) {
    writeThreeEvents();
    show();
    key("F10");
    const unsigned long menu = secondWindow();
    ASSERT_NE(menu, 0U);
    key("s");
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

} // namespace
} // namespace quorvel::window
