#include "shells/gtk/row_accessible.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "freedesktop/glib/handles.h"
#include "freedesktop/language/messages.h"
#include "shells/host/row_list.h"

namespace quorvel::gtk {

using freedesktop::TextHandle;

namespace {

// Titles are not limited in length, but nobody listens to longer ones.
constexpr glong longestName = 1000; // characters

struct RowObject {
    AtkObject parent;
    RowOwner* owner; // null: defunct
    std::size_t row;
};

struct RowObjectClass {
    AtkObjectClass parent;
};

AtkObjectClass* parentClass = nullptr;

RowObject* rowOf(gpointer object) {
    return static_cast<RowObject*>(object);
}

shells::RowList* rowsOf(const RowObject* row) {
    return row->owner != nullptr ? row->owner->rows() : nullptr;
}

// Queries the rows; the result is `otherwise` for a row that no longer exists.
template <class Answer, class Query>
Answer queryRows(gpointer object, Answer otherwise, Query query) noexcept {
    const RowObject* row = rowOf(object);
    shells::RowList* rows = rowsOf(row);
    return rows == nullptr
               ? otherwise
               : answerOr(otherwise, *row->owner, [&] { return query(*rows, row->row); });
}

// The library and its bus accept valid Unicode only.
TextHandle validName(const std::string& name) {
    constexpr std::size_t mostBytes = longestName * 4;
    const std::size_t length = std::min(name.size(), mostBytes);
    TextHandle valid(g_utf8_make_valid(name.data(), static_cast<gssize>(length)));
    if (g_utf8_strlen(valid.get(), -1) > longestName) {
        *g_utf8_offset_to_pointer(valid.get(), longestName) = '\0';
    }
    return valid;
}

int wholePixels(platform::CGFloat points) {
    return static_cast<int>(std::lround(std::clamp(points, -1e6, 1e6)));
}

AtkObject* parentOfRow(AtkObject* object) {
    RowOwner* owner = rowOf(object)->owner;
    return owner != nullptr ? owner->listObject() : nullptr;
}

int indexOfRow(AtkObject* object) {
    const RowObject* row = rowOf(object);
    return row->owner != nullptr ? static_cast<int>(row->row) : -1;
}

bool isVisible(const RowObject* row) {
    GtkWidget* widget = row->owner->widget();
    if (widget == nullptr || gtk_widget_get_mapped(widget) == FALSE) {
        return false;
    }
    const platform::CGRect frame = rowsOf(row)->rowFrame(row->row);
    return frame.size.height > 0 && CGRectGetMaxY(frame) > 0 &&
           CGRectGetMinY(frame) < gtk_widget_get_allocated_height(widget);
}

void addStates(AtkStateSet* states, const RowObject* row) {
    for (const AtkStateType state : {ATK_STATE_ENABLED, ATK_STATE_SENSITIVE, ATK_STATE_VISIBLE,
                                     ATK_STATE_FOCUSABLE, ATK_STATE_TRANSIENT}) {
        atk_state_set_add_state(states, state);
    }
    if (isVisible(row)) {
        atk_state_set_add_state(states, ATK_STATE_SHOWING);
    }
    if (hasFocus(*row->owner, row->row)) {
        atk_state_set_add_state(states, ATK_STATE_FOCUSED);
    }
}

// Defunct rows are transient too, as the bridge to the bus caches transient objects for a while.
AtkStateSet* statesOfRow(AtkObject* object) {
    const RowObject* row = rowOf(object);
    AtkStateSet* states = atk_state_set_new();
    if (rowsOf(row) == nullptr) {
        atk_state_set_add_state(states, ATK_STATE_TRANSIENT);
        atk_state_set_add_state(states, ATK_STATE_DEFUNCT);
        return states;
    }
    answerOr(false, *row->owner, [&] {
        addStates(states, row);
        return true;
    });
    return states;
}

void finalizeRow(GObject* object) {
    const RowObject* row = rowOf(object);
    if (row->owner != nullptr) {
        row->owner->onRowObjectFinalized(row->row);
    }
    G_OBJECT_CLASS(parentClass)->finalize(object);
}

void initializeClass(gpointer rowClass, gpointer) {
    parentClass = ATK_OBJECT_CLASS(g_type_class_peek_parent(rowClass));
    AtkObjectClass* objectClass = ATK_OBJECT_CLASS(rowClass);
    objectClass->get_parent = parentOfRow;
    objectClass->get_index_in_parent = indexOfRow;
    objectClass->ref_state_set = statesOfRow;
    G_OBJECT_CLASS(rowClass)->finalize = finalizeRow;
}

int actionCount(AtkAction* action) {
    return queryRows(action, 0, [](const shells::RowList& rows, std::size_t row) {
        return rows.rowHasAction(row) ? 1 : 0;
    });
}

const char* actionName(AtkAction* action, int index) {
    return index >= 0 && index < actionCount(action) ? "activate" : nullptr;
}

const char* actionDescription(AtkAction* action, int index) {
    return actionName(action, index) != nullptr
               ? freedesktop::translated("Does what a pull of the row does")
               : nullptr;
}

gboolean doAction(AtkAction* action, int index) {
    if (actionName(action, index) == nullptr) {
        return FALSE;
    }
    return queryRows(action, FALSE, [](shells::RowList& rows, std::size_t row) -> gboolean {
        return rows.runRowAction(row) ? TRUE : FALSE;
    });
}

void initializeAction(gpointer interface, gpointer) {
    auto* action = static_cast<AtkActionIface*>(interface);
    action->get_n_actions = actionCount;
    action->get_name = actionName;
    action->get_description = actionDescription;
    action->do_action = doAction;
}

void rowExtents(AtkComponent* component, int* x, int* y, int* width, int* height,
                AtkCoordType coordinates) {
    *x = *y = -1;
    *width = *height = 0;
    if (rowsOf(rowOf(component)) == nullptr) {
        return;
    }
    const platform::CGRect frame =
        queryRows(component, platform::CGRect{},
                  [](const shells::RowList& rows, std::size_t row) { return rows.rowFrame(row); });
    int left = 0;
    int top = 0;
    if (coordinates != ATK_XY_PARENT) {
        int listWidth = 0;
        int listHeight = 0;
        AtkObject* list = parentOfRow(ATK_OBJECT(component));
        atk_component_get_extents(ATK_COMPONENT(list), &left, &top, &listWidth, &listHeight,
                                  coordinates);
    }
    // A list that is not shown is at the smallest integer.
    *x = wholePixels(left + frame.origin.x);
    *y = wholePixels(top + frame.origin.y);
    *width = wholePixels(frame.size.width);
    *height = wholePixels(frame.size.height);
}

gboolean grabRowFocus(AtkComponent* component) {
    return queryRows(component, FALSE, [&](shells::RowList& rows, std::size_t row) -> gboolean {
        if (!rows.focusRow(row)) {
            return FALSE;
        }
        RowOwner* owner = rowOf(component)->owner;
        if (GtkWidget* widget = owner != nullptr ? owner->widget() : nullptr) {
            gtk_widget_grab_focus(widget);
        }
        return TRUE;
    });
}

void initializeComponent(gpointer interface, gpointer) {
    auto* component = static_cast<AtkComponentIface*>(interface);
    component->get_extents = rowExtents;
    component->grab_focus = grabRowFocus;
}

GType registerType() {
    const GType type = g_type_register_static_simple(ATK_TYPE_OBJECT, "QuorvelRowAccessible",
                                                     sizeof(RowObjectClass), initializeClass,
                                                     sizeof(RowObject), nullptr, GTypeFlags{});
    const GInterfaceInfo action{initializeAction, nullptr, nullptr};
    const GInterfaceInfo component{initializeComponent, nullptr, nullptr};
    g_type_add_interface_static(type, ATK_TYPE_ACTION, &action);
    g_type_add_interface_static(type, ATK_TYPE_COMPONENT, &component);
    return type;
}

} // namespace

AtkObject* makeRowObject(RowOwner& owner, std::size_t row) {
    static const GType type = registerType();
    TextHandle name = validName(owner.rows()->rowName(row));
    auto* object = static_cast<AtkObject*>(g_object_new(type, nullptr));
    rowOf(object)->owner = &owner;
    rowOf(object)->row = row;
    object->role = ATK_ROLE_LIST_ITEM;
    object->layer = ATK_LAYER_WIDGET;
    object->name = name.release(); // without a signal, as the object is new
    return object;
}

void detachRowObject(AtkObject* rowObject) {
    rowOf(rowObject)->owner = nullptr;
    atk_object_notify_state_change(rowObject, ATK_STATE_DEFUNCT, TRUE);
}

bool hasFocus(RowOwner& owner, std::size_t row) {
    GtkWidget* widget = owner.widget();
    shells::RowList* rows = owner.rows();
    return widget != nullptr && rows != nullptr && gtk_widget_has_focus(widget) != FALSE &&
           rows->focusedRow() == row;
}

} // namespace quorvel::gtk
