// What a screen reader receives, through the accessibility library and without a bus in between.
#include <algorithm>
#include <climits>

#include "tests/shells/gtk/accessible_fixture.h"

namespace quorvel::gtk {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

TEST_F(AgendaAccessibleTest, IsAListOfNamedRows) {
    EXPECT_EQ(atk_object_get_role(list()), ATK_ROLE_LIST);
    ASSERT_EQ(atk_object_get_n_accessible_children(list()), 4);
    for (int index = 0; index < 4; ++index) {
        const auto item = row(index);
        ASSERT_TRUE(item);
        EXPECT_EQ(atk_object_get_role(item.get()), ATK_ROLE_LIST_ITEM);
        EXPECT_EQ(atk_object_get_name(item.get()), "row " + std::to_string(index));
        EXPECT_EQ(atk_object_get_parent(item.get()), list());
        EXPECT_EQ(atk_object_get_index_in_parent(item.get()), index);
        EXPECT_EQ(atk_object_get_n_accessible_children(item.get()), 0);
    }
}

TEST_F(AgendaAccessibleTest, ARowThatDoesNotExistHasNoObject) {
    for (const int index : {-1, INT_MIN, 4, INT_MAX}) {
        EXPECT_FALSE(row(index)) << index;
    }
    rows.count = 0;
    EXPECT_EQ(atk_object_get_n_accessible_children(list()), 0);
    EXPECT_FALSE(row(0));
    setRows(nullptr);
    EXPECT_EQ(atk_object_get_n_accessible_children(list()), 0);
    EXPECT_FALSE(row(0));
    EXPECT_EQ(rowAt(10, 10), -1);
}

TEST_F(AgendaAccessibleTest, TheListManagesTransientRows) {
    EXPECT_THAT(statesOf(list()),
                AllOf(Contains(ATK_STATE_MANAGES_DESCENDANTS), Contains(ATK_STATE_FOCUSABLE),
                      Contains(ATK_STATE_SHOWING)));
    EXPECT_THAT(statesOf(row(0).get()),
                AllOf(Contains(ATK_STATE_TRANSIENT), Contains(ATK_STATE_ENABLED),
                      Contains(ATK_STATE_SENSITIVE), Contains(ATK_STATE_FOCUSABLE),
                      Contains(ATK_STATE_VISIBLE), Not(Contains(ATK_STATE_FOCUSED)),
                      Not(Contains(ATK_STATE_DEFUNCT))));
}

TEST_F(AgendaAccessibleTest, VisibleRowsAreShowing) {
    const auto isShowing = [&](int index) {
        const auto states = statesOf(row(index).get());
        return std::count(states.begin(), states.end(), ATK_STATE_SHOWING) > 0;
    };
    EXPECT_TRUE(isShowing(0));
    EXPECT_TRUE(isShowing(2)); // from 81 to 121.5
    EXPECT_FALSE(isShowing(3));
    rows.scrolled = rowHeight;
    EXPECT_FALSE(isShowing(0));
    EXPECT_TRUE(isShowing(1));
    EXPECT_TRUE(isShowing(3));
    gtk_widget_hide(widget);
    EXPECT_FALSE(isShowing(1));
}

TEST_F(AgendaAccessibleTest, RowsHaveTheirFrameInTheList) {
    rows.scrolled = 50;
    EXPECT_THAT(extentsOf(row(2).get(), ATK_XY_PARENT), ElementsAre(0, 31, width, 41));
    for (const AtkCoordType coordinates : {ATK_XY_WINDOW, ATK_XY_SCREEN}) {
        const std::vector<int> place = extentsOf(list(), coordinates);
        EXPECT_GT(place[1], 0) << "below the button";
        EXPECT_THAT(extentsOf(row(2).get(), coordinates),
                    ElementsAre(place[0], place[1] + 31, width, 41));
        EXPECT_THAT(extentsOf(row(0).get(), coordinates),
                    ElementsAre(place[0], place[1] - 50, width, 41));
    }
    gtk_widget_hide(widget);
    extentsOf(row(0).get(), ATK_XY_SCREEN); // any result, but no overflow
}

TEST_F(AgendaAccessibleTest, FindsTheRowAtAPoint) {
    for (const AtkCoordType coordinates : {ATK_XY_WINDOW, ATK_XY_SCREEN}) {
        EXPECT_EQ(rowAt(0, 0, coordinates), 0);
        EXPECT_EQ(rowAt(width - 1, 40, coordinates), 0); // up to 40.5
        EXPECT_EQ(rowAt(5, 41, coordinates), 1);
        EXPECT_EQ(rowAt(5, 81, coordinates), 2);
        EXPECT_EQ(rowAt(5, height - 1, coordinates), 2);
    }
    EXPECT_EQ(rowAt(-1, 5), -1);
    EXPECT_EQ(rowAt(width, 5), -1);
    EXPECT_EQ(rowAt(5, -1), -1);
    EXPECT_EQ(rowAt(5, height), -1) << "the fourth row is there, but not visible";
    rows.scrolled = -10;
    EXPECT_EQ(rowAt(5, 9), -1) << "above the first";
    EXPECT_EQ(rowAt(5, 10), 0);
    rows.scrolled = 0;
    rows.count = 2;
    EXPECT_EQ(rowAt(5, 90), -1) << "below the last";
    gtk_widget_hide(widget);
    const ObjectHandle<AtkObject> hidden(
        atk_component_ref_accessible_at_point(ATK_COMPONENT(list()), 5, 5, ATK_XY_SCREEN));
    EXPECT_FALSE(hidden);
}

TEST_F(AgendaAccessibleTest, RunsTheActionOfARow) {
    const auto item = row(2);
    AtkAction* action = ATK_ACTION(item.get());
    ASSERT_EQ(atk_action_get_n_actions(action), 1);
    EXPECT_STREQ(atk_action_get_name(action, 0), "activate");
    EXPECT_TRUE(atk_action_do_action(action, 0));
    EXPECT_THAT(rows.run, ElementsAre(2U));
    for (const int index : {-1, 1, INT_MAX}) {
        EXPECT_EQ(atk_action_get_name(action, index), nullptr);
        EXPECT_FALSE(atk_action_do_action(action, index));
    }
    const auto inert = row(1);
    EXPECT_EQ(atk_action_get_n_actions(ATK_ACTION(inert.get())), 0);
    EXPECT_EQ(atk_action_get_name(ATK_ACTION(inert.get()), 0), nullptr);
    EXPECT_FALSE(atk_action_do_action(ATK_ACTION(inert.get()), 0));
    EXPECT_THAT(rows.run, ElementsAre(2U));
}

// A row of a list without the keyboard focus does not receive keys.
TEST_F(AgendaAccessibleTest, ARowHasTheFocusOnlyWhileItsListHas) {
    focus(button);
    rows.focused = 1;
    recordSignals(list(), "list");
    const auto item = row(1);
    recordSignals(item.get(), "row");
    updateAccessibleFocus(widget);
    EXPECT_THAT(statesOf(item.get()), Not(Contains(ATK_STATE_FOCUSED)));
    EXPECT_THAT(takeRecorded(), IsEmpty());

    focus(widget);
    EXPECT_THAT(statesOf(item.get()), Contains(ATK_STATE_FOCUSED));
    EXPECT_THAT(takeRecorded(), AllOf(Contains("row: focused"), Contains("list: to row 1")));
    EXPECT_THAT(statesOf(row(2).get()), Not(Contains(ATK_STATE_FOCUSED)));

    focus(button);
    EXPECT_THAT(statesOf(item.get()), Not(Contains(ATK_STATE_FOCUSED)));
    EXPECT_THAT(takeRecorded(), Contains("row: not focused"));
}

TEST_F(AgendaAccessibleTest, ReportsWhereTheFocusMoves) {
    focus(widget);
    const auto second = row(1);
    const auto third = row(2);
    recordSignals(list(), "list");
    recordSignals(second.get(), "second");
    recordSignals(third.get(), "third");
    rows.focused = 1;
    updateAccessibleFocus(widget);
    EXPECT_THAT(takeRecorded(), ElementsAre("second: focused", "list: to row 1"));
    updateAccessibleFocus(widget);
    EXPECT_THAT(takeRecorded(), IsEmpty()) << "it has not moved";
    rows.focused = 2;
    updateAccessibleFocus(widget);
    EXPECT_THAT(takeRecorded(),
                ElementsAre("second: not focused", "third: focused", "list: to row 2"));
    rows.focused.reset();
    updateAccessibleFocus(widget);
    EXPECT_THAT(takeRecorded(), ElementsAre("third: not focused"));
    rows.focused = 99; // no such row
    updateAccessibleFocus(widget);
    EXPECT_THAT(takeRecorded(), IsEmpty());
}

TEST_F(AgendaAccessibleTest, ARowCanGrabTheFocus) {
    focus(button);
    EXPECT_TRUE(atk_component_grab_focus(ATK_COMPONENT(row(2).get())));
    EXPECT_EQ(rows.focused, 2U);
    EXPECT_TRUE(gtk_widget_is_focus(widget));
}

TEST_F(AgendaAccessibleTest, ChangedRowsHaveNewObjects) {
    focus(widget);
    rows.focused = 0;
    const auto old = row(0);
    recordSignals(list(), "list");
    recordSignals(old.get(), "old");
    rows.firstName = "Lunch";
    updateAccessibleRows(widget);
    EXPECT_THAT(takeRecorded(),
                ElementsAre("old: defunct", "list: visible data changed", "list: to Lunch"));
    expectDefunct(old.get());
    EXPECT_STREQ(atk_object_get_name(old.get()), "row 0");
    const auto fresh = row(0);
    EXPECT_NE(fresh, old);
    EXPECT_STREQ(atk_object_get_name(fresh.get()), "Lunch");
    EXPECT_THAT(statesOf(fresh.get()), Contains(ATK_STATE_FOCUSED));
    EXPECT_THAT(rows.run, IsEmpty());
}

TEST_F(AgendaAccessibleTest, CreatesNothingWithoutAScreenReader) {
    updateAccessibleRows(widget);
    rows.focused = 1;
    updateAccessibleFocus(widget);
    EXPECT_EQ(rows.nameCalls, 0);
}

TEST_F(AgendaAccessibleTest, ObjectsMayOutliveTheWidget) {
    const ObjectHandle<AtkObject> ownedList(static_cast<AtkObject*>(g_object_ref(list())));
    const auto owned = row(0);
    const auto other = row(3);
    destroy();
    rows.fails = true; // nothing may call them
    expectDefunct(owned.get());
    EXPECT_THAT(statesOf(ownedList.get()), Contains(ATK_STATE_DEFUNCT));
    EXPECT_EQ(atk_object_get_n_accessible_children(ownedList.get()), 0);
    EXPECT_EQ(atk_object_ref_accessible_child(ownedList.get(), 0), nullptr);
    EXPECT_EQ(
        atk_component_ref_accessible_at_point(ATK_COMPONENT(ownedList.get()), 1, 1, ATK_XY_WINDOW),
        nullptr);
    EXPECT_THAT(failures, IsEmpty());
}

TEST_F(AgendaAccessibleTest, ARowMayOutliveItsList) {
    const auto owned = row(0);
    destroy();
    expectDefunct(owned.get());
}

TEST_F(AgendaAccessibleTest, CreatesTenThousandRowsOnDemandAndReleasesThem) {
    rows.count = 10000;
    ASSERT_EQ(atk_object_get_n_accessible_children(list()), 10000);
    EXPECT_EQ(rows.nameCalls, 0);
    int alive = 0;
    int most = 0;
    const auto first = row(0);
    for (int index = 0; index < 10000; ++index) {
        const auto item = row(index);
        EXPECT_EQ(atk_object_get_index_in_parent(item.get()), index);
        ++alive;
        g_object_weak_ref(
            G_OBJECT(item.get()), [](gpointer count, GObject*) { --*static_cast<int*>(count); },
            &alive);
        most = std::max(most, alive);
    }
    EXPECT_LE(most, 102);
    EXPECT_EQ(rows.nameCalls, 10000) << "each once";
    EXPECT_EQ(row(0), first) << "an object with an owner stays the row's";
    EXPECT_EQ(row(9950), row(9950));

    recordSignals(list(), "list");
    rows.frameCalls = 0;
    rows.scrolled = 5000 * rowHeight;
    EXPECT_EQ(rowAt(5, 5), 5000);
    EXPECT_LT(rows.frameCalls, 20);
    rows.nameCalls = 0;
    updateAccessibleRows(widget);
    EXPECT_EQ(rows.nameCalls, 0);
    EXPECT_THAT(takeRecorded(), ElementsAre("list: visible data changed"));
    EXPECT_EQ(alive, 1) << "the object with an owner";
}

TEST_F(AgendaAccessibleTest, ExceptionsOfTheRowsDoNotReachTheLibrary) {
    focus(widget);
    rows.focused = 0;
    const auto item = row(0);
    AtkAction* action = ATK_ACTION(item.get());
    const std::vector<int> place = extentsOf(list(), ATK_XY_WINDOW);
    rows.fails = true;
    const auto expectFailure = [&](const char* what) {
        EXPECT_THAT(std::exchange(failures, {}), AllOf(Each("no answer"), Not(IsEmpty()))) << what;
    };
    EXPECT_EQ(atk_object_get_n_accessible_children(list()), 0);
    expectFailure("count");
    EXPECT_FALSE(row(1));
    expectFailure("child");
    EXPECT_EQ(atk_component_ref_accessible_at_point(ATK_COMPONENT(list()), place[0] + 5,
                                                    place[1] + 5, ATK_XY_WINDOW),
              nullptr);
    expectFailure("point");
    EXPECT_THAT(statesOf(item.get()), Not(Contains(ATK_STATE_SHOWING)));
    expectFailure("states");
    EXPECT_EQ(atk_action_get_n_actions(action), 0);
    expectFailure("actions");
    EXPECT_EQ(atk_action_get_name(action, 0), nullptr);
    expectFailure("name of the action");
    EXPECT_FALSE(atk_action_do_action(action, 0));
    expectFailure("action");
    EXPECT_EQ(extentsOf(item.get(), ATK_XY_PARENT)[3], 0);
    expectFailure("extents");
    EXPECT_FALSE(atk_component_grab_focus(ATK_COMPONENT(item.get())));
    expectFailure("focus");
    focus(button);
    expectFailure("lost focus");
    EXPECT_STREQ(atk_object_get_name(item.get()), "row 0");
    EXPECT_THAT(failures, IsEmpty());
}

TEST_F(AgendaAccessibleTest, NamesAreValidUnicodeAndShort) {
    const auto nameFor = [this](const std::string& title) {
        rows.firstName = title;
        updateAccessibleRows(widget);
        return std::string(atk_object_get_name(row(0).get()));
    };
    list();
    const std::string unknown = "\xEF\xBF\xBD";
    EXPECT_EQ(nameFor("Café Sol"), "Café Sol");
    EXPECT_EQ(nameFor("a\xED\xA0\x80z"), "a" + unknown + unknown + unknown + "z"); // half a pair
    EXPECT_EQ(nameFor(std::string("a\0z", 3)), "a" + unknown + "z");
    EXPECT_EQ(nameFor("caf\xE9"), "caf" + unknown);
    EXPECT_EQ(nameFor(std::string(1000, 'x')), std::string(1000, 'x'));
    EXPECT_EQ(nameFor(std::string(1 << 20, 'x')), std::string(1000, 'x'));
    const std::string wide = "\xF0\x9F\x8D\xB0"; // four bytes
    std::string cakes = "x";
    for (int i = 0; i < 5000; ++i) {
        cakes += wide;
    }
    const std::string shortened = nameFor(cakes);
    EXPECT_EQ(shortened, cakes.substr(0, 1 + 999 * wide.size()));
    EXPECT_TRUE(g_utf8_validate(shortened.data(), -1, nullptr));
    EXPECT_EQ(g_utf8_strlen(nameFor(std::string(1 << 20, '\xED')).c_str(), -1), 1000);
}

} // namespace
} // namespace quorvel::gtk
