// The list manages its rows, of which there may be many: their objects are made when they are asked
// for, live as long as somebody holds them, and are not announced one by one.
#include "shells/window/agenda_accessible.h"

#include <cstddef>
#include <deque>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include <gtk/gtk-a11y.h>

#include "shells/window/gtk_handles.h"
#include "shells/window/row_accessible.h"
#include "shells/window/row_list.h"

namespace quorvel::window {

namespace {

using FailureHandler = std::function<void(std::exception_ptr)>;

constexpr const char* rowsKey = "quorvel-rows";
constexpr const char* accessibleKey = "quorvel-accessible";

// The rows of a widget, also before anybody has asked for its accessible object.
struct RowsOfWidget {
    RowList* rows = nullptr;
    FailureHandler failed;
};

// What the list's object consists of beside its GObject part.
class ListState final : public RowOwner {
public:
    explicit ListState(GtkAccessible* object)
        : m_object(object) {}
    ~ListState() override { dropRows(); }
    ListState(const ListState&) = delete;
    ListState& operator=(const ListState&) = delete;

    AtkObject* listObject() override { return ATK_OBJECT(m_object); }
    GtkWidget* widget() override { return gtk_accessible_get_widget(m_object); }
    RowList* rows() override { return m_given.rows; }
    void rowObjectGoes(std::size_t row) override { m_living.erase(row); }
    void fail(std::exception_ptr failure) noexcept override;

    void setRows(RowsOfWidget given);
    std::size_t rowCount() const;
    ObjectHandle<AtkObject> rowAt(std::size_t number); // null for one that is not there
    ObjectHandle<AtkObject> rowAtHeight(platform::CGFloat height);
    void changeRows();
    void tellFocus();

private:
    void keep(AtkObject* row);
    void dropRows();
    ObjectHandle<AtkObject> focusedRow();

    GtkAccessible* m_object;
    RowsOfWidget m_given;
    std::map<std::size_t, AtkObject*> m_living;     // not owned
    std::deque<ObjectHandle<AtkObject>> m_lastOnes; // that were asked for
    ObjectHandle<AtkObject> m_focused;              // as it was last told
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

ObjectHandle<AtkObject> share(AtkObject* object) {
    return ObjectHandle<AtkObject>(static_cast<AtkObject*>(g_object_ref(object)));
}

void ListState::fail(std::exception_ptr failure) noexcept {
    if (m_given.failed) {
        m_given.failed(std::move(failure));
    }
}

void ListState::setRows(RowsOfWidget given) {
    dropRows();
    m_given = std::move(given);
}

std::size_t ListState::rowCount() const {
    return m_given.rows != nullptr ? m_given.rows->rowCount() : 0;
}

ObjectHandle<AtkObject> ListState::rowAt(std::size_t number) {
    if (number >= rowCount()) {
        return nullptr;
    }
    const auto known = m_living.find(number);
    if (known != m_living.end()) {
        return share(known->second);
    }
    ObjectHandle<AtkObject> row(makeRowObject(*this, number));
    m_living.emplace(number, row.get());
    keep(row.get());
    return row;
}

// For a reader who comes back to a row without having held it.
void ListState::keep(AtkObject* row) {
    constexpr std::size_t most = 100;
    m_lastOnes.push_back(share(row));
    if (m_lastOnes.size() > most) {
        m_lastOnes.pop_front();
    }
}

// The rows stand one below the other.
ObjectHandle<AtkObject> ListState::rowAtHeight(platform::CGFloat height) {
    std::size_t low = 0; // the rows above this one end above the height
    for (std::size_t high = rowCount(); low < high;) {
        const std::size_t middle = low + (high - low) / 2;
        const bool isAbove = CGRectGetMaxY(m_given.rows->rowFrame(middle)) <= height;
        (isAbove ? low : high) = isAbove ? middle + 1 : middle;
    }
    const bool isThere = low < rowCount() && CGRectGetMinY(m_given.rows->rowFrame(low)) <= height;
    return isThere ? rowAt(low) : nullptr;
}

void ListState::dropRows() {
    std::vector<ObjectHandle<AtkObject>> dropped;
    for (const auto& [number, row] : std::exchange(m_living, {})) {
        dropped.push_back(share(row));
    }
    m_lastOnes.clear();
    m_focused.reset();
    for (const auto& row : dropped) {
        detachRowObject(row.get());
    }
}

void ListState::changeRows() {
    dropRows();
    g_signal_emit_by_name(m_object, "visible-data-changed");
    tellFocus();
}

ObjectHandle<AtkObject> ListState::focusedRow() {
    const auto number = m_given.rows != nullptr ? m_given.rows->focusedRow() : std::nullopt;
    return number && hasFocus(*this, *number) ? rowAt(*number) : nullptr;
}

void ListState::tellFocus() {
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

// The class.

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
    // A list that is not shown stands at the least number that there is.
    const platform::CGFloat across = static_cast<platform::CGFloat>(x) - left;
    const platform::CGFloat down = static_cast<platform::CGFloat>(y) - top;
    if (across < 0 || across >= width || down < 0 || down >= height) {
        return nullptr;
    }
    ListState& state = stateOf(component);
    return answerOr<AtkObject*>(nullptr, state, [&] { return state.rowAtHeight(down).release(); });
}

// Null until somebody has asked for the widget's accessible object.
ListObject* listOfWidget(GtkWidget* widget) {
    return static_cast<ListObject*>(g_object_get_data(G_OBJECT(widget), accessibleKey));
}

void focusCameOrWent(GtkWidget* widget, GParamSpec*, gpointer) {
    if (ListObject* list = listOfWidget(widget)) {
        answerOr(false, *list->state, [&] {
            list->state->tellFocus();
            return true;
        });
    }
}

void initialiseList(AtkObject* object, gpointer widget) noexcept {
    parentClass->initialize(object, widget);
    object->role = ATK_ROLE_LIST;
    const auto* given =
        static_cast<const RowsOfWidget*>(g_object_get_data(G_OBJECT(widget), rowsKey));
    if (given != nullptr) {
        stateOf(object).setRows(*given);
    }
    g_object_set_data(G_OBJECT(widget), accessibleKey, object);
    g_signal_connect(widget, "notify::has-focus", G_CALLBACK(focusCameOrWent), nullptr);
}

// The widget goes, and readers may hold the list for longer.
void forgetWidget(GtkAccessible* accessible) noexcept {
    stateOf(accessible).setRows({});
    g_object_set_data(G_OBJECT(stateOf(accessible).widget()), accessibleKey, nullptr);
    GTK_ACCESSIBLE_CLASS(parentClass)->widget_unset(accessible);
}

void finalizeList(GObject* object) {
    delete static_cast<ListObject*>(static_cast<gpointer>(object))->state;
    G_OBJECT_CLASS(parentClass)->finalize(object);
}

void initialiseListClass(gpointer listClass, gpointer) {
    parentClass = ATK_OBJECT_CLASS(g_type_class_peek_parent(listClass));
    AtkObjectClass* objectClass = ATK_OBJECT_CLASS(listClass);
    objectClass->initialize = initialiseList;
    objectClass->get_n_children = childCount;
    objectClass->ref_child = refChild;
    objectClass->ref_state_set = statesOfList;
    GTK_ACCESSIBLE_CLASS(listClass)->widget_unset = forgetWidget;
    G_OBJECT_CLASS(listClass)->finalize = finalizeList;
}

void initialiseComponent(gpointer interface, gpointer) {
    static_cast<AtkComponentIface*>(interface)->ref_accessible_at_point = refRowAtPoint;
}

void initialiseListObject(GTypeInstance* instance, gpointer) noexcept {
    auto* list = static_cast<ListObject*>(static_cast<gpointer>(instance));
    list->state = new ListState(GTK_ACCESSIBLE(instance));
}

GType registerListType() {
    const GType type = g_type_register_static_simple(
        GTK_TYPE_WIDGET_ACCESSIBLE, "QuorvelAgendaAccessible", sizeof(ListObjectClass),
        initialiseListClass, sizeof(ListObject), initialiseListObject, GTypeFlags{});
    const GInterfaceInfo component{initialiseComponent, nullptr, nullptr};
    g_type_add_interface_static(type, ATK_TYPE_COMPONENT, &component);
    return type;
}

} // namespace

GType agendaAccessibleType() {
    static const GType type = registerListType();
    return type;
}

void setAccessibleRows(GtkWidget* widget, RowList* rows,
                       std::function<void(std::exception_ptr)> failed) {
    const GDestroyNotify forget = [](gpointer given) { delete static_cast<RowsOfWidget*>(given); };
    auto* given = new RowsOfWidget{rows, std::move(failed)};
    g_object_set_data_full(G_OBJECT(widget), rowsKey, given, forget);
    if (ListObject* list = listOfWidget(widget)) {
        list->state->setRows(*given);
    }
}

void accessibleRowsChanged(GtkWidget* widget) {
    if (ListObject* list = listOfWidget(widget)) {
        list->state->changeRows();
    }
}

void accessibleFocusMoved(GtkWidget* widget) {
    if (ListObject* list = listOfWidget(widget)) {
        list->state->tellFocus();
    }
}

} // namespace quorvel::window
