// Two classes in the object system of the accessibility library: the list, which belongs to the
// area, and a row, made when it is first asked for. A row whose list has changed is defunct: it
// knows no list any more and answers with nothing.
#include "shells/window/agenda_accessible.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <gtk/gtk-a11y.h>

#include "shells/window/gtk_handles.h"
#include "shells/window/row_list.h"

namespace quorvel::window {

namespace {

// So many new rows are announced one by one; who wants more asks for them.
constexpr std::size_t mostAnnouncedRows = 100;

struct ListObject;

struct RowObject {
    AtkObject parent;
    ListObject* list; // null: defunct
    std::size_t row;
};

struct RowObjectClass {
    AtkObjectClass parent;
};

// What the list's object consists of beside its GObject part.
struct ListState {
    RowList* rows = nullptr;
    std::map<std::size_t, ObjectHandle<AtkObject>> children; // those that were asked for
    bool hasListener = false;                                // somebody has asked for rows
    std::optional<std::size_t> focusedRow;                   // as it was last told
};

struct ListObject {
    GtkWidgetAccessible parent;
    ListState* state;
};

struct ListObjectClass {
    GtkWidgetAccessibleClass parent;
};

AtkObjectClass* listParentClass = nullptr;
AtkObjectClass* rowParentClass = nullptr;

constexpr const char* rowsKey = "quorvel-rows";
constexpr const char* accessibleKey = "quorvel-accessible";

RowObject* rowOf(gpointer object) {
    return static_cast<RowObject*>(object);
}

ListObject* listOf(gpointer object) {
    return static_cast<ListObject*>(object);
}

RowList* rowsOf(const RowObject* row) {
    return row->list != nullptr ? row->list->state->rows : nullptr;
}

GtkWidget* widgetOf(const ListObject* list) {
    return gtk_accessible_get_widget(GTK_ACCESSIBLE(const_cast<ListObject*>(list)));
}

int wholePixels(platform::CGFloat points) {
    return static_cast<int>(std::lround(std::clamp(points, -1e6, 1e6)));
}

// A row.

AtkObject* parentOfRow(AtkObject* object) {
    return reinterpret_cast<AtkObject*>(rowOf(object)->list);
}

int indexOfRow(AtkObject* object) {
    const RowObject* row = rowOf(object);
    return row->list != nullptr ? static_cast<int>(row->row) : -1;
}

bool isInSight(const RowObject* row) {
    const platform::CGRect frame = rowsOf(row)->rowFrame(row->row);
    GtkWidget* widget = widgetOf(row->list);
    return widget != nullptr && gtk_widget_get_mapped(widget) != FALSE && frame.size.height > 0 &&
           CGRectGetMaxY(frame) > 0 &&
           CGRectGetMinY(frame) < gtk_widget_get_allocated_height(widget);
}

AtkStateSet* statesOfRow(AtkObject* object) {
    const RowObject* row = rowOf(object);
    AtkStateSet* states = atk_state_set_new();
    const RowList* rows = rowsOf(row);
    if (rows == nullptr) {
        atk_state_set_add_state(states, ATK_STATE_DEFUNCT);
        return states;
    }
    for (const AtkStateType state :
         {ATK_STATE_ENABLED, ATK_STATE_SENSITIVE, ATK_STATE_VISIBLE, ATK_STATE_FOCUSABLE}) {
        atk_state_set_add_state(states, state);
    }
    if (isInSight(row)) {
        atk_state_set_add_state(states, ATK_STATE_SHOWING);
    }
    if (rows->focusedRow() == row->row) {
        atk_state_set_add_state(states, ATK_STATE_FOCUSED);
    }
    return states;
}

void initialiseRowClass(gpointer rowClass, gpointer) {
    rowParentClass = ATK_OBJECT_CLASS(g_type_class_peek_parent(rowClass));
    AtkObjectClass* objectClass = ATK_OBJECT_CLASS(rowClass);
    objectClass->get_parent = parentOfRow;
    objectClass->get_index_in_parent = indexOfRow;
    objectClass->ref_state_set = statesOfRow;
}

int actionCount(AtkAction* action) {
    const RowObject* row = rowOf(action);
    const RowList* rows = rowsOf(row);
    return rows != nullptr && rows->rowHasAction(row->row) ? 1 : 0;
}

const char* actionName(AtkAction* action, int index) {
    return index >= 0 && index < actionCount(action) ? "activate" : nullptr;
}

gboolean doAction(AtkAction* action, int index) {
    if (actionName(action, index) == nullptr) {
        return FALSE;
    }
    const RowObject* row = rowOf(action);
    return rowsOf(row)->runRowAction(row->row) ? TRUE : FALSE;
}

void initialiseAction(gpointer interface, gpointer) {
    auto* action = static_cast<AtkActionIface*>(interface);
    action->get_n_actions = actionCount;
    action->get_name = actionName;
    action->do_action = doAction;
}

void rowExtents(AtkComponent* component, int* x, int* y, int* width, int* height,
                AtkCoordType coordinates) {
    const RowObject* row = rowOf(component);
    const RowList* rows = rowsOf(row);
    if (rows == nullptr) {
        *x = *y = -1;
        *width = *height = 0;
        return;
    }
    const platform::CGRect frame = rows->rowFrame(row->row);
    int listWidth = 0;
    int listHeight = 0;
    if (coordinates == ATK_XY_PARENT) {
        *x = *y = 0;
    } else {
        atk_component_get_extents(ATK_COMPONENT(row->list), x, y, &listWidth, &listHeight,
                                  coordinates);
    }
    // A list that is not shown stands at the least number that there is.
    *x = wholePixels(*x + frame.origin.x);
    *y = wholePixels(*y + frame.origin.y);
    *width = wholePixels(frame.size.width);
    *height = wholePixels(frame.size.height);
}

gboolean grabRowFocus(AtkComponent* component) {
    const RowObject* row = rowOf(component);
    RowList* rows = rowsOf(row);
    if (rows == nullptr || !rows->focusRow(row->row)) {
        return FALSE;
    }
    if (GtkWidget* widget = widgetOf(row->list)) {
        gtk_widget_grab_focus(widget);
    }
    return TRUE;
}

void initialiseComponent(gpointer interface, gpointer) {
    auto* component = static_cast<AtkComponentIface*>(interface);
    component->get_extents = rowExtents;
    component->grab_focus = grabRowFocus;
}

GType registerRowType() {
    const GType type = g_type_register_static_simple(ATK_TYPE_OBJECT, "QuorvelRowAccessible",
                                                     sizeof(RowObjectClass), initialiseRowClass,
                                                     sizeof(RowObject), nullptr, GTypeFlags{});
    const GInterfaceInfo action{initialiseAction, nullptr, nullptr};
    const GInterfaceInfo component{initialiseComponent, nullptr, nullptr};
    g_type_add_interface_static(type, ATK_TYPE_ACTION, &action);
    g_type_add_interface_static(type, ATK_TYPE_COMPONENT, &component);
    return type;
}

GType rowType() {
    static const GType type = registerRowType();
    return type;
}

// The list.

AtkObject* makeRow(ListObject* list, std::size_t number) {
    auto* object = static_cast<AtkObject*>(g_object_new(rowType(), nullptr));
    rowOf(object)->list = list;
    rowOf(object)->row = number;
    object->role = ATK_ROLE_LIST_ITEM;
    object->layer = ATK_LAYER_WIDGET;
    atk_object_set_name(object, list->state->rows->rowName(number).c_str());
    return object;
}

// Owned by the list; null for a row that is not there.
AtkObject* childAt(ListObject* list, std::size_t number) {
    ListState& state = *list->state;
    if (state.rows == nullptr || number >= state.rows->rowCount()) {
        return nullptr;
    }
    ObjectHandle<AtkObject>& child = state.children[number];
    if (!child) {
        child.reset(makeRow(list, number));
    }
    return child.get();
}

int childCount(AtkObject* object) {
    ListState& state = *listOf(object)->state;
    state.hasListener = true;
    return state.rows != nullptr ? static_cast<int>(state.rows->rowCount()) : 0;
}

AtkObject* refChild(AtkObject* object, int index) {
    listOf(object)->state->hasListener = true;
    AtkObject* child =
        index < 0 ? nullptr : childAt(listOf(object), static_cast<std::size_t>(index));
    return child != nullptr ? static_cast<AtkObject*>(g_object_ref(child)) : nullptr;
}

// Those who still hold a row are told that it is gone.
void dropChildren(ListObject* list) {
    for (auto& [number, child] : std::exchange(list->state->children, {})) {
        rowOf(child.get())->list = nullptr;
        atk_object_notify_state_change(child.get(), ATK_STATE_DEFUNCT, TRUE);
        g_signal_emit_by_name(list, "children-changed::remove", static_cast<guint>(number),
                              child.get(), nullptr);
    }
    list->state->focusedRow.reset();
}

void announceRows(ListObject* list) {
    const RowList* rows = list->state->rows;
    const std::size_t count = rows != nullptr ? rows->rowCount() : 0;
    for (std::size_t row = 0; row < std::min(count, mostAnnouncedRows); ++row) {
        g_signal_emit_by_name(list, "children-changed::add", static_cast<guint>(row),
                              childAt(list, row), nullptr);
    }
    g_signal_emit_by_name(list, "visible-data-changed");
}

void initialiseList(AtkObject* object, gpointer widget) {
    listParentClass->initialize(object, widget);
    object->role = ATK_ROLE_LIST;
    ListObject* list = listOf(object);
    list->state->rows = static_cast<RowList*>(g_object_get_data(G_OBJECT(widget), rowsKey));
    g_object_set_data(G_OBJECT(widget), accessibleKey, list);
}

// The widget goes, and readers may hold the list for longer.
void forgetWidget(GtkAccessible* accessible) {
    ListObject* list = listOf(accessible);
    dropChildren(list);
    list->state->rows = nullptr;
    g_object_set_data(G_OBJECT(widgetOf(list)), accessibleKey, nullptr);
    GTK_ACCESSIBLE_CLASS(listParentClass)->widget_unset(accessible);
}

void finalizeList(GObject* object) {
    ListObject* list = listOf(object);
    for (auto& [number, child] : list->state->children) {
        rowOf(child.get())->list = nullptr;
    }
    delete list->state;
    G_OBJECT_CLASS(listParentClass)->finalize(object);
}

void initialiseListClass(gpointer listClass, gpointer) {
    listParentClass = ATK_OBJECT_CLASS(g_type_class_peek_parent(listClass));
    AtkObjectClass* objectClass = ATK_OBJECT_CLASS(listClass);
    objectClass->initialize = initialiseList;
    objectClass->get_n_children = childCount;
    objectClass->ref_child = refChild;
    GTK_ACCESSIBLE_CLASS(listClass)->widget_unset = forgetWidget;
    G_OBJECT_CLASS(listClass)->finalize = finalizeList;
}

void initialiseListObject(GTypeInstance* instance, gpointer) {
    listOf(instance)->state = new ListState;
}

// Null until somebody has asked for the widget's accessible object.
ListObject* listOfWidget(GtkWidget* widget) {
    return static_cast<ListObject*>(g_object_get_data(G_OBJECT(widget), accessibleKey));
}

} // namespace

GType agendaAccessibleType() {
    static const GType type = g_type_register_static_simple(
        GTK_TYPE_WIDGET_ACCESSIBLE, "QuorvelAgendaAccessible", sizeof(ListObjectClass),
        initialiseListClass, sizeof(ListObject), initialiseListObject, GTypeFlags{});
    return type;
}

void setAccessibleRows(GtkWidget* widget, RowList* rows) {
    g_object_set_data(G_OBJECT(widget), rowsKey, rows);
    if (ListObject* list = listOfWidget(widget)) {
        dropChildren(list);
        list->state->rows = rows;
    }
}

void accessibleRowsChanged(GtkWidget* widget) {
    ListObject* list = listOfWidget(widget);
    if (list != nullptr && list->state->hasListener) {
        dropChildren(list);
        announceRows(list);
    }
}

void accessibleFocusMoved(GtkWidget* widget) {
    ListObject* list = listOfWidget(widget);
    if (list == nullptr || list->state->rows == nullptr || !list->state->hasListener) {
        return;
    }
    const auto focused = list->state->rows->focusedRow();
    const auto before = std::exchange(list->state->focusedRow, focused);
    AtkObject* old = before && before != focused ? childAt(list, *before) : nullptr;
    if (old != nullptr) {
        atk_object_notify_state_change(old, ATK_STATE_FOCUSED, FALSE);
    }
    AtkObject* child = focused ? childAt(list, *focused) : nullptr;
    if (child != nullptr) {
        atk_object_notify_state_change(child, ATK_STATE_FOCUSED, TRUE);
        g_signal_emit_by_name(list, "active-descendant-changed", child);
    }
}

} // namespace quorvel::window
