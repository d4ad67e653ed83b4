#include "shells/gtk/key_command.h"

#include <gtest/gtest.h>

#include <gdk/gdk.h>

namespace quorvel::gtk {
namespace {

TEST(KeyCommands, HaveTheirOwnKeys) {
    EXPECT_EQ(keyCommand(GDK_KEY_Up, 0), KeyCommand::up);
    EXPECT_EQ(keyCommand(GDK_KEY_KP_Down, 0), KeyCommand::down);
    EXPECT_EQ(keyCommand(GDK_KEY_Page_Up, 0), KeyCommand::pageUp);
    EXPECT_EQ(keyCommand(GDK_KEY_Page_Down, 0), KeyCommand::pageDown);
    EXPECT_EQ(keyCommand(GDK_KEY_Home, 0), KeyCommand::first);
    EXPECT_EQ(keyCommand(GDK_KEY_KP_End, 0), KeyCommand::last);
    EXPECT_EQ(keyCommand(GDK_KEY_Return, 0), KeyCommand::runAction);
    EXPECT_EQ(keyCommand(GDK_KEY_KP_Enter, 0), KeyCommand::runAction);
    EXPECT_EQ(keyCommand(GDK_KEY_space, 0), KeyCommand::runAction);
    EXPECT_EQ(keyCommand(GDK_KEY_F5, 0), KeyCommand::present);
    EXPECT_EQ(keyCommand(GDK_KEY_Escape, 0), KeyCommand::close);
    EXPECT_EQ(keyCommand(GDK_KEY_a, 0), std::nullopt);
    EXPECT_EQ(keyCommand(GDK_KEY_Tab, 0), std::nullopt);
}

TEST(KeyCommands, KeysWithAModifierBelongToTheDesktop) {
    for (const unsigned modifier :
         {GDK_CONTROL_MASK, GDK_MOD1_MASK, GDK_SHIFT_MASK, GDK_SUPER_MASK}) {
        EXPECT_EQ(keyCommand(GDK_KEY_Escape, modifier), std::nullopt) << modifier;
        EXPECT_EQ(keyCommand(GDK_KEY_Up, modifier), std::nullopt) << modifier;
    }
    EXPECT_EQ(keyCommand(GDK_KEY_Up, GDK_LOCK_MASK), KeyCommand::up);
    EXPECT_EQ(keyCommand(GDK_KEY_Up, GDK_MOD2_MASK), KeyCommand::up) << "Num Lock";
}

TEST(MovedFocus, MovesByOneAndStopsAtTheEnds) {
    EXPECT_EQ(movedFocus(KeyCommand::down, 3, 10, 4), 4U);
    EXPECT_EQ(movedFocus(KeyCommand::down, 9, 10, 4), 9U);
    EXPECT_EQ(movedFocus(KeyCommand::up, 3, 10, 4), 2U);
    EXPECT_EQ(movedFocus(KeyCommand::up, 0, 10, 4), 0U);
}

TEST(MovedFocus, MovesByPagesAndToTheEnds) {
    EXPECT_EQ(movedFocus(KeyCommand::pageDown, 3, 10, 4), 7U);
    EXPECT_EQ(movedFocus(KeyCommand::pageDown, 7, 10, 4), 9U);
    EXPECT_EQ(movedFocus(KeyCommand::pageUp, 5, 10, 4), 1U);
    EXPECT_EQ(movedFocus(KeyCommand::pageUp, 2, 10, 4), 0U);
    EXPECT_EQ(movedFocus(KeyCommand::first, 5, 10, 4), 0U);
    EXPECT_EQ(movedFocus(KeyCommand::last, 5, 10, 4), 9U);
}

TEST(MovedFocus, BeginsAtTheFirstOrTheLastRow) {
    EXPECT_EQ(movedFocus(KeyCommand::down, std::nullopt, 10, 4), 0U);
    EXPECT_EQ(movedFocus(KeyCommand::pageDown, std::nullopt, 10, 4), 0U);
    EXPECT_EQ(movedFocus(KeyCommand::up, std::nullopt, 10, 4), 9U);
    EXPECT_EQ(movedFocus(KeyCommand::pageUp, std::nullopt, 10, 4), 9U);
}

TEST(MovedFocus, DoesNotMoveWithoutRowsOrForOtherCommands) {
    EXPECT_EQ(movedFocus(KeyCommand::down, std::nullopt, 0, 1), std::nullopt);
    EXPECT_EQ(movedFocus(KeyCommand::last, std::nullopt, 0, 1), std::nullopt);
    EXPECT_EQ(movedFocus(KeyCommand::runAction, 1, 10, 4), std::nullopt);
    EXPECT_EQ(movedFocus(KeyCommand::close, 1, 10, 4), std::nullopt);
    EXPECT_EQ(movedFocus(KeyCommand::present, 1, 10, 4), std::nullopt);
}

} // namespace
} // namespace quorvel::gtk
