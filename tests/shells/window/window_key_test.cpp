#include "shells/window/window_key.h"

#include <gdk/gdk.h>
#include <gtest/gtest.h>

namespace quorvel::window {
namespace {

TEST(WindowKey, ClosesAndQuits) {
    EXPECT_EQ(windowKey(GDK_KEY_w, GDK_CONTROL_MASK), WindowKey::close);
    EXPECT_EQ(windowKey(GDK_KEY_q, GDK_CONTROL_MASK), WindowKey::quit);
    EXPECT_EQ(windowKey(GDK_KEY_Q, GDK_CONTROL_MASK | GDK_LOCK_MASK), WindowKey::quit);
}

TEST(WindowKey, OpensTheMenus) {
    EXPECT_EQ(windowKey(GDK_KEY_F10, 0), WindowKey::menu);
    EXPECT_EQ(windowKey(GDK_KEY_F10, GDK_SHIFT_MASK), WindowKey::rowMenu);
    EXPECT_EQ(windowKey(GDK_KEY_Menu, GDK_MOD2_MASK), WindowKey::rowMenu);
}

TEST(WindowKey, ShowsTheShortcutsOnEveryKeyboard) {
    EXPECT_EQ(windowKey(GDK_KEY_question, GDK_CONTROL_MASK | GDK_SHIFT_MASK), WindowKey::shortcuts);
    EXPECT_EQ(windowKey(GDK_KEY_question, GDK_CONTROL_MASK), WindowKey::shortcuts);
    EXPECT_EQ(windowKey(GDK_KEY_F1, GDK_CONTROL_MASK), WindowKey::shortcuts);
}

TEST(WindowKey, LeavesOtherKeysToTheRowsAndTheDesktop) {
    for (const int key : {GDK_KEY_w, GDK_KEY_q, GDK_KEY_r, GDK_KEY_question, GDK_KEY_Escape}) {
        EXPECT_EQ(windowKey(static_cast<unsigned>(key), 0), std::nullopt);
    }
    EXPECT_EQ(windowKey(GDK_KEY_q, GDK_CONTROL_MASK | GDK_SHIFT_MASK), std::nullopt);
    EXPECT_EQ(windowKey(GDK_KEY_q, GDK_CONTROL_MASK | GDK_MOD1_MASK), std::nullopt);
    EXPECT_EQ(windowKey(GDK_KEY_F10, GDK_MOD1_MASK), std::nullopt);
}

} // namespace
} // namespace quorvel::window
