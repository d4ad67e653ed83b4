// The list manages its descendants, as there may be many rows: a row's object is created when a
// screen reader asks for it, lives as long as it has an owner, and no signal reports its creation.
#include "shells/gtk/agenda_accessible.h"

#include <cstddef>
#include <deque>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include <gtk/gtk-a11y.h>

#include "freedesktop/glib/handles.h"
#include "shells/gtk/row_accessible.h"
#include "shells/host/row_list.h"

namespace quorvel::gtk {

using freedesktop::ObjectHandle;
using freedesktop::share;

namespace {

using FailureHandler = std::function<void(std::exception_ptr)>;

constexpr const char* rowsKey = "quorvel-rows";
constexpr const char* accessibleKey = "quorvel-accessible";

// Stored at the widget, as its accessible object may be created later.
struct RowsOfWidget {
    shells::RowList* rows = nullptr;
    FailureHandler onFailure;
};

// The members of the list's object beside those of GObject.
class ListState final : public RowOwner {
public:
    explicit ListState(GtkAccessible* object)
        : m_object(object) {}
    ~ListState() override { dropRows(); }
    ListState(const ListState&) = delete;
    ListState& operator=(const ListState&) = delete;

    AtkObject* listObject() override { return ATK_OBJECT(m_object); }
    GtkWidget* widget() override { return gtk_accessible_get_widget(m_object); }
    shells::RowList* rows() override { return m_rows.rows; }
    void onRowObjectFinalized(std::size_t row) override { m_rowObjects.erase(row); }
    void onFailure(std::exception_ptr failure) noexcept override;

    void setRows(RowsOfWidget rows);
    std::size_t rowCount() const;
    ObjectHandle<AtkObject> rowAt(std::size_t number); // null where it does not exist
    ObjectHandle<AtkObject> rowAtHeight(platform::CGFloat height);
    void updateRows();
    void updateFocus();

private:
    void retain(AtkObject* row);
    void dropRows();
    ObjectHandle<AtkObject> focusedRow();

    GtkAccessible* m_object;
    RowsOfWidget m_rows;
    std::map<std::size_t, AtkObject*> m_rowObjects;     // by row; not owned
    std::deque<ObjectHandle<AtkObject>> m_recentlyUsed; // oldest first
    ObjectHandle<AtkObject> m_focused;                  // as last reported to screen readers
};

struct ListObject {
    GtkWidgetAccessible parent;
    ListState* state;
};

struct ListObjectClass {
    GtkWidgetAccessibleClass parent;
};

AtkObjectClass* parentClass = nullptr;

ListState& stateOf(gpointer object) {
    return *static_cast<ListObject*>(object)->state;
}

void ListState::onFailure(std::exception_ptr failure) noexcept {
    if (m_rows.onFailure) {
        m_rows.onFailure(std::move(failure));
    }
}

void ListState::setRows(RowsOfWidget rows) {
    dropRows();
    m_rows = std::move(rows);
}

std::size_t ListState::rowCount() const {
    return m_rows.rows != nullptr ? m_rows.rows->rowCount() : 0;
}

ObjectHandle<AtkObject> ListState::rowAt(std::size_t number) {
    if (number >= rowCount()) {
        return nullptr;
    }
    const auto known = m_rowObjects.find(number);
    if (known != m_rowObjects.end()) {
        return share(known->second);
    }
    ObjectHandle<AtkObject> row(makeRowObject(*this, number));
    m_rowObjects.emplace(number, row.get());
    retain(row.get());
    return row;
}

// Screen readers return to a row without owning its object in the meantime.
void ListState::retain(AtkObject* row) {
    constexpr std::size_t most = 100;
    m_recentlyUsed.push_back(share(row));
    if (m_recentlyUsed.size() > most) {
        m_recentlyUsed.pop_front();
    }
}

// A binary search, as the rows are placed one below the other.
ObjectHandle<AtkObject> ListState::rowAtHeight(platform::CGFloat height) {
    std::size_t low = 0; // all rows before this one end above the height
    for (std::size_t high = rowCount(); low < high;) {
        const std::size_t middle = low + (high - low) / 2;
        const bool isAbove = CGRectGetMaxY(m_rows.rows->rowFrame(middle)) <= height;
        (isAbove ? low : high) = isAbove ? middle + 1 : middle;
    }
    const bool exists = low < rowCount() && CGRectGetMinY(m_rows.rows->rowFrame(low)) <= height;
    return exists ? rowAt(low) : nullptr;
}

void ListState::dropRows() {
    std::vector<ObjectHandle<AtkObject>> dropped;
    for (const auto& [number, row] : std::exchange(m_rowObjects, {})) {
        dropped.push_back(share(row));
    }
    m_recentlyUsed.clear();
    m_focused.reset();
    for (const auto& row : dropped) {
        detachRowObject(row.get());
    }
}

void ListState::updateRows() {
    dropRows();
    g_signal_emit_by_name(m_object, "visible-data-changed");
    updateFocus();
}

ObjectHandle<AtkObject> ListState::focusedRow() {
    const auto number = m_rows.rows != nullptr ? m_rows.rows->focusedRow() : std::nullopt;
    return number && hasFocus(*this, *number) ? rowAt(*number) : nullptr;
}

void ListState::updateFocus() {
    ObjectHandle<AtkObject> focused = focusedRow();
    if (focused == m_focused) {
        return;
    }
    const auto before = std::exchange(m_focused, std::move(focused));
    if (before) {
        atk_object_notify_state_change(before.get(), ATK_STATE_FOCUSED, FALSE);
    }
    if (const auto now = m_focused ? share(m_focused.get()) : nullptr) {
        atk_object_notify_state_change(now.get(), ATK_STATE_FOCUSED, TRUE);
        g_signal_emit_by_name(m_object, "active-descendant-changed", now.get());
    }
}

// The functions of the GObject class.

int childCount(AtkObject* object) {
    ListState& state = stateOf(object);
    return answerOr(0, state, [&] { return static_cast<int>(state.rowCount()); });
}

AtkObject* refChild(AtkObject* object, int index) {
    ListState& state = stateOf(object);
    return index < 0 ? nullptr : answerOr<AtkObject*>(nullptr, state, [&] {
        return state.rowAt(static_cast<std::size_t>(index)).release();
    });
}

AtkStateSet* statesOfList(AtkObject* object) {
    AtkStateSet* states = parentClass->ref_state_set(object);
    if (stateOf(object).widget() != nullptr) {
        atk_state_set_add_state(states, ATK_STATE_MANAGES_DESCENDANTS);
    }
    return states;
}

AtkObject* refRowAtPoint(AtkComponent* component, int x, int y, AtkCoordType coordinates) {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    atk_component_get_extents(component, &left, &top, &width, &height, coordinates);
    // A list that is not shown is at the smallest integer.
    const platform::CGFloat across = static_cast<platform::CGFloat>(x) - left;
    const platform::CGFloat down = static_cast<platform::CGFloat>(y) - top;
    if (across < 0 || across >= width || down < 0 || down >= height) {
        return nullptr;
    }
    ListState& state = stateOf(component);
    return answerOr<AtkObject*>(nullptr, state, [&] { return state.rowAtHeight(down).release(); });
}

// Null before the widget's accessible object is created.
ListObject* listOfWidget(GtkWidget* widget) {
    return static_cast<ListObject*>(g_object_get_data(G_OBJECT(widget), accessibleKey));
}

void onHasFocusChanged(GtkWidget* widget, GParamSpec*, gpointer) {
    if (ListObject* list = listOfWidget(widget)) {
        answerOr(false, *list->state, [&] {
            list->state->updateFocus();
            return true;
        });
    }
}

void initializeList(AtkObject* object, gpointer widget) noexcept {
    parentClass->initialize(object, widget);
    object->role = ATK_ROLE_LIST;
    const auto* rows =
        static_cast<const RowsOfWidget*>(g_object_get_data(G_OBJECT(widget), rowsKey));
    if (rows != nullptr) {
        stateOf(object).setRows(*rows);
    }
    g_object_set_data(G_OBJECT(widget), accessibleKey, object);
    g_signal_connect(widget, "notify::has-focus", G_CALLBACK(onHasFocusChanged), nullptr);
}

// The widget is being destroyed; screen readers may own the list's object for longer.
void unsetWidget(GtkAccessible* accessible) noexcept {
    stateOf(accessible).setRows({});
    g_object_set_data(G_OBJECT(stateOf(accessible).widget()), accessibleKey, nullptr);
    GTK_ACCESSIBLE_CLASS(parentClass)->widget_unset(accessible);
}

void finalizeList(GObject* object) {
    delete static_cast<ListObject*>(static_cast<gpointer>(object))->state;
    G_OBJECT_CLASS(parentClass)->finalize(object);
}

void initializeListClass(gpointer listClass, gpointer) {
    parentClass = ATK_OBJECT_CLASS(g_type_class_peek_parent(listClass));
    AtkObjectClass* objectClass = ATK_OBJECT_CLASS(listClass);
    objectClass->initialize = initializeList;
    objectClass->get_n_children = childCount;
    objectClass->ref_child = refChild;
    objectClass->ref_state_set = statesOfList;
    GTK_ACCESSIBLE_CLASS(listClass)->widget_unset = unsetWidget;
    G_OBJECT_CLASS(listClass)->finalize = finalizeList;
}

void initializeComponent(gpointer interface, gpointer) {
    static_cast<AtkComponentIface*>(interface)->ref_accessible_at_point = refRowAtPoint;
}

void initializeListObject(GTypeInstance* instance, gpointer) noexcept {
    auto* list = static_cast<ListObject*>(static_cast<gpointer>(instance));
    list->state = new ListState(GTK_ACCESSIBLE(instance));
}

GType registerListType() {
    const GType type = g_type_register_static_simple(
        GTK_TYPE_WIDGET_ACCESSIBLE, "QuorvelAgendaAccessible", sizeof(ListObjectClass),
        initializeListClass, sizeof(ListObject), initializeListObject, GTypeFlags{});
    const GInterfaceInfo component{initializeComponent, nullptr, nullptr};
    g_type_add_interface_static(type, ATK_TYPE_COMPONENT, &component);
    return type;
}

} // namespace

GType agendaAccessibleType() {
    static const GType type = registerListType();
    return type;
}

void setAccessibleRows(GtkWidget* widget, shells::RowList* rows,
                       std::function<void(std::exception_ptr)> onFailure) {
    const GDestroyNotify destroy = [](gpointer data) { delete static_cast<RowsOfWidget*>(data); };
    auto* rowsOfWidget = new RowsOfWidget{rows, std::move(onFailure)};
    g_object_set_data_full(G_OBJECT(widget), rowsKey, rowsOfWidget, destroy);
    if (ListObject* list = listOfWidget(widget)) {
        list->state->setRows(*rowsOfWidget);
    }
}

void updateAccessibleRows(GtkWidget* widget) {
    if (ListObject* list = listOfWidget(widget)) {
        list->state->updateRows();
    }
}

void updateAccessibleFocus(GtkWidget* widget) {
    if (ListObject* list = listOfWidget(widget)) {
        list->state->updateFocus();
    }
}

} // namespace quorvel::gtk
