// A widget with numbered rows, and a recorder of what its accessible objects report.
#pragma once

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "freedesktop/glib/handles.h"
#include "shells/gtk/agenda_accessible.h"
#include "shells/host/row_list.h"
#include "tests/freedesktop/session/session_testing.h"

namespace quorvel::gtk {

using freedesktop::ObjectHandle;
using platform::CGFloat;
using platform::CGRect;
using platform::CGRectMake;

inline constexpr int width = 320;
inline constexpr int height = 100;
inline constexpr CGFloat rowHeight = 40.5;

// Rows of one height, which are named by their numbers; those with even numbers have an action.
class NumberedRows final : public shells::RowList {
public:
    std::size_t rowCount() const override { return answer(count); }
    std::string rowName(std::size_t row) const override {
        ++nameCalls;
        return answer(row == 0 && !firstName.empty() ? firstName : "row " + std::to_string(row));
    }
    bool rowHasAction(std::size_t row) const override { return answer(row % 2 == 0); }
    bool runRowAction(std::size_t row) override {
        run.push_back(answer(row));
        return true;
    }
    CGRect rowFrame(std::size_t row) const override {
        ++frameCalls;
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
    mutable int nameCalls = 0;
    mutable int frameCalls = 0;

private:
    template <class Answer>
    Answer answer(Answer result) const {
        if (fails) {
            throw std::runtime_error("no answer");
        }
        return result;
    }
};

// A widget that paints nothing.
inline GType widgetType() {
    static const GType type = [] {
        GTypeQuery query;
        g_type_query(GTK_TYPE_DRAWING_AREA, &query);
        const GClassInitFunc initialize = [](gpointer widgetClass, gpointer) {
            gtk_widget_class_set_accessible_type(GTK_WIDGET_CLASS(widgetClass),
                                                 agendaAccessibleType());
        };
        return g_type_register_static_simple(
            GTK_TYPE_DRAWING_AREA, "TestAgenda", static_cast<guint>(query.class_size), initialize,
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
        setRows(&rows);
        gtk_widget_show_all(window);
        EXPECT_TRUE(
            testing_session::runUntil([this] { return gtk_widget_is_drawable(widget) != FALSE; }));
    }
    ~AgendaAccessibleTest() override { destroy(); }

    void setRows(shells::RowList* list) {
        setAccessibleRows(widget, list, [this](const std::exception_ptr& failure) {
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
        ASSERT_TRUE(
            testing_session::runUntil([&] { return gtk_widget_has_focus(which) != FALSE; }));
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
    // The number of the row at a point in pixels of the list; -1 where there is none.
    int rowAt(int x, int y, AtkCoordType coordinates = ATK_XY_WINDOW) {
        const std::vector<int> place = extentsOf(list(), coordinates);
        const ObjectHandle<AtkObject> found(atk_component_ref_accessible_at_point(
            ATK_COMPONENT(list()), place[0] + x, place[1] + y, coordinates));
        return found ? atk_object_get_index_in_parent(found.get()) : -1;
    }
    // Records the signals of the object from here on.
    void recordSignals(AtkObject* object, const std::string& name) {
        using StateHandler = void (*)(AtkObject*, const char*, gboolean, Recording*);
        const StateHandler stateChanged = [](AtkObject*, const char* state, gboolean isSet,
                                             Recording* recording) {
            recording->test->recorded.push_back(recording->name + (isSet != 0 ? ": " : ": not ") +
                                                state);
        };
        using Handler = void (*)(AtkObject*, gpointer, Recording*);
        const Handler descendantChanged = [](AtkObject*, gpointer row, Recording* recording) {
            recording->test->recorded.push_back(recording->name + ": to " +
                                                atk_object_get_name(ATK_OBJECT(row)));
        };
        using DataHandler = void (*)(AtkObject*, Recording*);
        const DataHandler dataChanged = [](AtkObject*, Recording* recording) {
            recording->test->recorded.push_back(recording->name + ": visible data changed");
        };
        const auto connect = [&](const char* signal, GCallback callback) {
            g_signal_connect_data(
                object, signal, callback, new Recording{this, name},
                [](gpointer recording, GClosure*) { delete static_cast<Recording*>(recording); },
                GConnectFlags{});
        };
        connect("state-change", G_CALLBACK(stateChanged));
        connect("active-descendant-changed", G_CALLBACK(descendantChanged));
        connect("visible-data-changed", G_CALLBACK(dataChanged));
    }
    std::vector<std::string> takeRecorded() { return std::exchange(recorded, {}); }
    // Every answer of the object is empty.
    void expectDefunct(AtkObject* rowObject) {
        EXPECT_EQ(atk_object_get_parent(rowObject), nullptr);
        EXPECT_EQ(atk_object_get_index_in_parent(rowObject), -1);
        EXPECT_THAT(statesOf(rowObject),
                    testing::ElementsAre(ATK_STATE_DEFUNCT, ATK_STATE_TRANSIENT));
        EXPECT_EQ(atk_action_get_n_actions(ATK_ACTION(rowObject)), 0);
        EXPECT_EQ(atk_action_get_name(ATK_ACTION(rowObject), 0), nullptr);
        EXPECT_FALSE(atk_action_do_action(ATK_ACTION(rowObject), 0));
        EXPECT_FALSE(atk_component_grab_focus(ATK_COMPONENT(rowObject)));
        for (const AtkCoordType coordinates : {ATK_XY_PARENT, ATK_XY_WINDOW, ATK_XY_SCREEN}) {
            EXPECT_THAT(extentsOf(rowObject, coordinates), testing::ElementsAre(-1, -1, 0, 0));
        }
    }

    struct Recording {
        AgendaAccessibleTest* test;
        std::string name;
    };
    GtkWidget* window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    GtkWidget* button = gtk_button_new_with_label("above");
    GtkWidget* widget = GTK_WIDGET(g_object_new(widgetType(), nullptr));
    NumberedRows rows;
    std::vector<std::string> failures;
    std::vector<std::string> recorded;
};

} // namespace quorvel::gtk
