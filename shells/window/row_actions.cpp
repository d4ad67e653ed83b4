#include "shells/window/row_actions.h"

#include <cmath>
#include <utility>

#include "platform/date_services.h"
#include "platform/platform.h"
#include "platform/ui_application.h"
#include "shells/window/day_link.h"
#include "shells/window/menus.h"

namespace quorvel::window {

RowActions::RowActions(GtkWidget* rows, const platform::Platform& platform,
                       std::function<void(std::exception_ptr)> onFailure)
    : m_rows(rows)
    , m_platform(platform)
    , m_actions(rows, "row", std::move(onFailure))
    , m_menu(gtk_menu_new_from_model(rowMenu().get())) {
    m_actions.add("open", [this] { m_platform.application.openURL(*m_row.link); });
    m_actions.add("open-day", [this] { openDay(); });
    m_actions.add("copy-title", [this] { copy(m_row.title); });
    m_actions.add("copy-time", [this] { copy(m_row.caption); });
    m_actions.add("copy-place", [this] { copy(m_row.location); });
    gtk_menu_attach_to_widget(GTK_MENU(m_menu), rows, nullptr);
}

void RowActions::openMenu(const shells::RowContent& row, const platform::CGRect& frame,
                          const GdkEvent* event) {
    m_row = row;
    m_actions.setEnabled("open", row.link.has_value());
    m_actions.setEnabled("open-day", row.start.has_value());
    m_actions.setEnabled("copy-title", !row.title.empty());
    m_actions.setEnabled("copy-time", !row.caption.empty());
    m_actions.setEnabled("copy-place", !row.location.empty());
    if (event != nullptr) {
        gtk_menu_popup_at_pointer(GTK_MENU(m_menu), event);
        return;
    }
    const GdkRectangle place{static_cast<int>(frame.origin.x), static_cast<int>(frame.origin.y),
                             static_cast<int>(frame.size.width),
                             static_cast<int>(std::ceil(frame.size.height))};
    gtk_menu_popup_at_rect(GTK_MENU(m_menu), gtk_widget_get_window(m_rows), &place,
                           GDK_GRAVITY_SOUTH_WEST, GDK_GRAVITY_NORTH_WEST, nullptr);
}

void RowActions::openDay() const {
    if (const auto link = dayLink(m_platform.dateServices, *m_row.start)) {
        m_platform.application.openURL(*link);
    }
}

void RowActions::copy(const std::string& text) const {
    GtkClipboard* const clipboard = gtk_widget_get_clipboard(m_rows, GDK_SELECTION_CLIPBOARD);
    gtk_clipboard_set_text(clipboard, text.c_str(), static_cast<int>(text.size()));
}

} // namespace quorvel::window
