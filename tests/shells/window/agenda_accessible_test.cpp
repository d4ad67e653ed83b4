// What a screen reader gets, asked through the accessibility library without a bus in between.
#include "shells/window/agenda_accessible.h"

#include <climits>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "shells/window/gtk_handles.h"
#include "shells/window/row_list.h"
#include "tests/freedesktop/session/session_testing.h"

namespace quorvel::window {
namespace {

using platform::CGFloat;
using platform::CGRect;
using platform::CGRectMake;
using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing_session::runUntil;

constexpr int width = 320;
constexpr int height = 100;
constexpr CGFloat rowHeight = 40.5;

// Rows of one height, each with its number for a name and, if it is even, an action.
class NumberedRows final : public RowList {
public:
    std::size_t rowCount() const override { return answer(count); }
    std::string rowName(std::size_t row) const override {
        ++namings;
        return answer(row == 0 && !firstName.empty() ? firstName : "row " + std::to_string(row));
    }
    bool rowHasAction(std::size_t row) const override { return answer(row % 2 == 0); }
    bool runRowAction(std::size_t row) override {
        run.push_back(answer(row));
        return true;
    }
    CGRect rowFrame(std::size_t row) const override {
        ++framings;
        return answer(
            CGRectMake(0, static_cast<CGFloat>(row) * rowHeight - scrolled, width, rowHeight));
    }
    std::optional<std::size_t> focusedRow() const override { return answer(focused); }
    bool focusRow(std::size_t row) override {
        focused = answer(row);
        return true;
    }

    std::size_t count = 4;
    std::string firstName;
    CGFloat scrolled = 0;
    std::optional<std::size_t> focused;
    bool fails = false;
    std::vector<std::size_t> run;
    mutable int namings = 0;
    mutable int framings = 0;

private:
    template <class Answer>
    Answer answer(Answer given) const {
        if (fails) {
            throw std::runtime_error("no answer");
        }
        return given;
    }
};

// A widget that shows nothing.
GType widgetType() {
    static const GType type = [] {
        GTypeQuery query;
        g_type_query(GTK_TYPE_DRAWING_AREA, &query);
        const GClassInitFunc initialise = [](gpointer widgetClass, gpointer) {
            gtk_widget_class_set_accessible_type(GTK_WIDGET_CLASS(widgetClass),
                                                 agendaAccessibleType());
        };
        return g_type_register_static_simple(
            GTK_TYPE_DRAWING_AREA, "TestAgenda", static_cast<guint>(query.class_size), initialise,
            static_cast<guint>(query.instance_size), nullptr, GTypeFlags{});
    }();
    return type;
}

class AgendaAccessibleTest : public testing::Test {
protected:
    AgendaAccessibleTest() {
        gtk_container_add(GTK_CONTAINER(window), box);
        gtk_container_add(GTK_CONTAINER(box), button);
        gtk_container_add(GTK_CONTAINER(box), widget);
        gtk_widget_set_size_request(widget, width, height);
        gtk_widget_set_can_focus(widget, TRUE);
        giveRows(&rows);
        gtk_widget_show_all(window);
        EXPECT_TRUE(runUntil([this] { return gtk_widget_is_drawable(widget) != FALSE; }));
    }
    ~AgendaAccessibleTest() override { destroy(); }

    void giveRows(RowList* given) {
        setAccessibleRows(widget, given, [this](const std::exception_ptr& failure) {
            try {
                std::rethrow_exception(failure);
            } catch (const std::runtime_error& error) {
                failures.emplace_back(error.what());
            }
        });
    }
    void destroy() {
        if (GtkWidget* whole = std::exchange(window, nullptr)) {
            setAccessibleRows(widget, nullptr, {});
            gtk_widget_destroy(whole);
        }
    }
    void focus(GtkWidget* which) {
        gdk_window_focus(gtk_widget_get_window(window), GDK_CURRENT_TIME);
        gtk_widget_grab_focus(which);
        ASSERT_TRUE(runUntil([&] { return gtk_widget_has_focus(which) != FALSE; }));
    }

    AtkObject* list() { return gtk_widget_get_accessible(widget); }
    ObjectHandle<AtkObject> row(int index) {
        return ObjectHandle<AtkObject>(atk_object_ref_accessible_child(list(), index));
    }
    static std::vector<AtkStateType> statesOf(AtkObject* object) {
        const ObjectHandle<AtkStateSet> set(atk_object_ref_state_set(object));
        std::vector<AtkStateType> states;
        for (int state = 1; state < ATK_STATE_LAST_DEFINED; ++state) {
            if (atk_state_set_contains_state(set.get(), static_cast<AtkStateType>(state)) != 0) {
                states.push_back(static_cast<AtkStateType>(state));
            }
        }
        return states;
    }
    static std::vector<int> extentsOf(AtkObject* object, AtkCoordType coordinates) {
        int x = 0;
        int y = 0;
        int across = 0;
        int down = 0;
        atk_component_get_extents(ATK_COMPONENT(object), &x, &y, &across, &down, coordinates);
        return {x, y, across, down};
    }
    // The number of the row there, counted in pixels of the list; -1 where there is none.
    int rowAt(int x, int y, AtkCoordType coordinates = ATK_XY_WINDOW) {
        const std::vector<int> place = extentsOf(list(), coordinates);
        const ObjectHandle<AtkObject> found(atk_component_ref_accessible_at_point(
            ATK_COMPONENT(list()), place[0] + x, place[1] + y, coordinates));
        return found ? atk_object_get_index_in_parent(found.get()) : -1;
    }
    // What an object tells, in words, from here on.
    void listenTo(AtkObject* object, const std::string& name) {
        using StateHandler = void (*)(AtkObject*, const char*, gboolean, Heard*);
        const StateHandler stateChanged = [](AtkObject*, const char* state, gboolean isSet,
                                             Heard* heard) {
            heard->test->told.push_back(heard->name + (isSet != 0 ? ": " : ": not ") + state);
        };
        using Handler = void (*)(AtkObject*, gpointer, Heard*);
        const Handler descendantChanged = [](AtkObject*, gpointer row, Heard* heard) {
            heard->test->told.push_back(heard->name + ": to " +
                                        atk_object_get_name(ATK_OBJECT(row)));
        };
        using DataHandler = void (*)(AtkObject*, Heard*);
        const DataHandler dataChanged = [](AtkObject*, Heard* heard) {
            heard->test->told.push_back(heard->name + ": looks different");
        };
        const auto connect = [&](const char* signal, GCallback callback) {
            g_signal_connect_data(
                object, signal, callback, new Heard{this, name},
                [](gpointer heard, GClosure*) { delete static_cast<Heard*>(heard); },
                GConnectFlags{});
        };
        connect("state-change", G_CALLBACK(stateChanged));
        connect("active-descendant-changed", G_CALLBACK(descendantChanged));
        connect("visible-data-changed", G_CALLBACK(dataChanged));
    }
    std::vector<std::string> takeTold() { return std::exchange(told, {}); }
    // No question is answered with more than nothing.
    void expectNothingOf(AtkObject* rowObject) {
        EXPECT_EQ(atk_object_get_parent(rowObject), nullptr);
        EXPECT_EQ(atk_object_get_index_in_parent(rowObject), -1);
        EXPECT_THAT(statesOf(rowObject), ElementsAre(ATK_STATE_DEFUNCT, ATK_STATE_TRANSIENT));
        EXPECT_EQ(atk_action_get_n_actions(ATK_ACTION(rowObject)), 0);
        EXPECT_EQ(atk_action_get_name(ATK_ACTION(rowObject), 0), nullptr);
        EXPECT_FALSE(atk_action_do_action(ATK_ACTION(rowObject), 0));
        EXPECT_FALSE(atk_component_grab_focus(ATK_COMPONENT(rowObject)));
        for (const AtkCoordType coordinates : {ATK_XY_PARENT, ATK_XY_WINDOW, ATK_XY_SCREEN}) {
            EXPECT_THAT(extentsOf(rowObject, coordinates), ElementsAre(-1, -1, 0, 0));
        }
    }

    struct Heard {
        AgendaAccessibleTest* test;
        std::string name;
    };
    GtkWidget* window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    GtkWidget* button = gtk_button_new_with_label("above");
    GtkWidget* widget = GTK_WIDGET(g_object_new(widgetType(), nullptr));
    NumberedRows rows;
    std::vector<std::string> failures;
    std::vector<std::string> told;
};

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

TEST_F(AgendaAccessibleTest, ARowThatIsNotThereIsNone) {
    for (const int index : {-1, INT_MIN, 4, INT_MAX}) {
        EXPECT_FALSE(row(index)) << index;
    }
    rows.count = 0;
    EXPECT_EQ(atk_object_get_n_accessible_children(list()), 0);
    EXPECT_FALSE(row(0));
    giveRows(nullptr);
    EXPECT_EQ(atk_object_get_n_accessible_children(list()), 0);
    EXPECT_FALSE(row(0));
    EXPECT_EQ(rowAt(10, 10), -1);
}

TEST_F(AgendaAccessibleTest, TheListManagesItsRowsWhichComeAndGo) {
    EXPECT_THAT(statesOf(list()),
                AllOf(Contains(ATK_STATE_MANAGES_DESCENDANTS), Contains(ATK_STATE_FOCUSABLE),
                      Contains(ATK_STATE_SHOWING)));
    EXPECT_THAT(statesOf(row(0).get()),
                AllOf(Contains(ATK_STATE_TRANSIENT), Contains(ATK_STATE_ENABLED),
                      Contains(ATK_STATE_SENSITIVE), Contains(ATK_STATE_FOCUSABLE),
                      Contains(ATK_STATE_VISIBLE), Not(Contains(ATK_STATE_FOCUSED)),
                      Not(Contains(ATK_STATE_DEFUNCT))));
}

TEST_F(AgendaAccessibleTest, RowsInSightAreShowing) {
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

TEST_F(AgendaAccessibleTest, RowsHaveTheirPlaceInTheList) {
    rows.scrolled = 50;
    EXPECT_THAT(extentsOf(row(2).get(), ATK_XY_PARENT), ElementsAre(0, 31, width, 41));
    for (const AtkCoordType coordinates : {ATK_XY_WINDOW, ATK_XY_SCREEN}) {
        const std::vector<int> place = extentsOf(list(), coordinates);
        EXPECT_GT(place[1], 0) << "the button stands above";
        EXPECT_THAT(extentsOf(row(2).get(), coordinates),
                    ElementsAre(place[0], place[1] + 31, width, 41));
        EXPECT_THAT(extentsOf(row(0).get(), coordinates),
                    ElementsAre(place[0], place[1] - 50, width, 41));
    }
    gtk_widget_hide(widget);
    extentsOf(row(0).get(), ATK_XY_SCREEN); // anything, but no overflow
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
    EXPECT_EQ(rowAt(5, height), -1) << "the fourth row stands there, but out of sight";
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

// A list that has lost the keyboard has no row that hears it.
TEST_F(AgendaAccessibleTest, ARowIsFocusedOnlyWhileItsListIs) {
    focus(button);
    rows.focused = 1;
    listenTo(list(), "list");
    const auto item = row(1);
    listenTo(item.get(), "row");
    accessibleFocusMoved(widget);
    EXPECT_THAT(statesOf(item.get()), Not(Contains(ATK_STATE_FOCUSED)));
    EXPECT_THAT(takeTold(), IsEmpty());

    focus(widget);
    EXPECT_THAT(statesOf(item.get()), Contains(ATK_STATE_FOCUSED));
    EXPECT_THAT(takeTold(), AllOf(Contains("row: focused"), Contains("list: to row 1")));
    EXPECT_THAT(statesOf(row(2).get()), Not(Contains(ATK_STATE_FOCUSED)));

    focus(button);
    EXPECT_THAT(statesOf(item.get()), Not(Contains(ATK_STATE_FOCUSED)));
    EXPECT_THAT(takeTold(), Contains("row: not focused"));
}

TEST_F(AgendaAccessibleTest, TellsWhereTheFocusGoes) {
    focus(widget);
    const auto second = row(1);
    const auto third = row(2);
    listenTo(list(), "list");
    listenTo(second.get(), "second");
    listenTo(third.get(), "third");
    rows.focused = 1;
    accessibleFocusMoved(widget);
    EXPECT_THAT(takeTold(), ElementsAre("second: focused", "list: to row 1"));
    accessibleFocusMoved(widget);
    EXPECT_THAT(takeTold(), IsEmpty()) << "it is where it was";
    rows.focused = 2;
    accessibleFocusMoved(widget);
    EXPECT_THAT(takeTold(), ElementsAre("second: not focused", "third: focused", "list: to row 2"));
    rows.focused.reset();
    accessibleFocusMoved(widget);
    EXPECT_THAT(takeTold(), ElementsAre("third: not focused"));
    rows.focused = 99; // no such row
    accessibleFocusMoved(widget);
    EXPECT_THAT(takeTold(), IsEmpty());
}

TEST_F(AgendaAccessibleTest, ARowTakesTheFocus) {
    focus(button);
    EXPECT_TRUE(atk_component_grab_focus(ATK_COMPONENT(row(2).get())));
    EXPECT_EQ(rows.focused, 2U);
    EXPECT_TRUE(gtk_widget_is_focus(widget));
}

TEST_F(AgendaAccessibleTest, RowsThatChangedAreOthers) {
    focus(widget);
    rows.focused = 0;
    const auto old = row(0);
    listenTo(list(), "list");
    listenTo(old.get(), "old");
    rows.firstName = "Lunch";
    accessibleRowsChanged(widget);
    EXPECT_THAT(takeTold(), ElementsAre("old: defunct", "list: looks different", "list: to Lunch"));
    expectNothingOf(old.get());
    EXPECT_STREQ(atk_object_get_name(old.get()), "row 0");
    const auto fresh = row(0);
    EXPECT_NE(fresh, old);
    EXPECT_STREQ(atk_object_get_name(fresh.get()), "Lunch");
    EXPECT_THAT(statesOf(fresh.get()), Contains(ATK_STATE_FOCUSED));
    EXPECT_THAT(rows.run, IsEmpty());
}

TEST_F(AgendaAccessibleTest, NobodyListensAndNothingIsMade) {
    const NumberedRows& asked = rows;
    accessibleRowsChanged(widget);
    rows.focused = 1;
    accessibleFocusMoved(widget);
    EXPECT_EQ(asked.namings, 0);
}

TEST_F(AgendaAccessibleTest, ReadersMayHoldWhatTheyHaveForLonger) {
    const ObjectHandle<AtkObject> heldList(static_cast<AtkObject*>(g_object_ref(list())));
    const auto held = row(0);
    const auto other = row(3);
    destroy();
    rows.fails = true; // and nobody asks them
    expectNothingOf(held.get());
    EXPECT_THAT(statesOf(heldList.get()), Contains(ATK_STATE_DEFUNCT));
    EXPECT_EQ(atk_object_get_n_accessible_children(heldList.get()), 0);
    EXPECT_EQ(atk_object_ref_accessible_child(heldList.get(), 0), nullptr);
    EXPECT_EQ(
        atk_component_ref_accessible_at_point(ATK_COMPONENT(heldList.get()), 1, 1, ATK_XY_WINDOW),
        nullptr);
    EXPECT_THAT(failures, IsEmpty());
}

TEST_F(AgendaAccessibleTest, ARowMayOutliveItsList) {
    const auto held = row(0);
    destroy();
    expectNothingOf(held.get());
}

TEST_F(AgendaAccessibleTest, TenThousandRowsAreMadeAsTheyAreAskedForAndLetGo) {
    rows.count = 10000;
    ASSERT_EQ(atk_object_get_n_accessible_children(list()), 10000);
    EXPECT_EQ(rows.namings, 0);
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
    EXPECT_EQ(rows.namings, 10000) << "each once";
    EXPECT_EQ(row(0), first) << "what somebody holds is still the row";
    EXPECT_EQ(row(9950), row(9950));

    listenTo(list(), "list");
    rows.framings = 0;
    rows.scrolled = 5000 * rowHeight;
    EXPECT_EQ(rowAt(5, 5), 5000);
    EXPECT_LT(rows.framings, 20);
    rows.namings = 0;
    accessibleRowsChanged(widget);
    EXPECT_EQ(rows.namings, 0);
    EXPECT_THAT(takeTold(), ElementsAre("list: looks different"));
    EXPECT_EQ(alive, 1) << "the one that is held";
}

TEST_F(AgendaAccessibleTest, WhatTheRowsThrowStaysOutOfTheLibrary) {
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
    expectFailure("focus that goes");
    EXPECT_STREQ(atk_object_get_name(item.get()), "row 0");
    EXPECT_THAT(failures, IsEmpty());
}

TEST_F(AgendaAccessibleTest, NamesAreUnicodeAndShort) {
    const auto nameFor = [this](const std::string& title) {
        rows.firstName = title;
        accessibleRowsChanged(widget);
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
} // namespace quorvel::window
