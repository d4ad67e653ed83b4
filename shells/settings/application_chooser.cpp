#include "shells/settings/application_chooser.h"

#include <utility>

#include "freedesktop/language/messages.h"
#include "shells/settings/dialog_window.h"
#include "shells/settings/settings_text.h"
#include "shells/settings/widget_tools.h"

namespace quorvel::settings_pages {

using freedesktop::translated;

namespace {

constexpr int iconSize = 32; // points
constexpr int margin = 12;

GtkWidget* withMargins(GtkWidget* widget) {
    gtk_widget_set_margin_start(widget, margin);
    gtk_widget_set_margin_end(widget, margin);
    gtk_widget_set_margin_top(widget, margin);
    gtk_widget_set_margin_bottom(widget, margin);
    return widget;
}

} // namespace

ApplicationChooser::ApplicationChooser(GtkWidget* widget,
                                       std::function<void(const std::string&)> onChosen)
    : m_onChosen(std::move(onChosen))
    , m_applications(installedApplications())
    , m_search(gtk_search_entry_new())
    , m_list(gtk_list_box_new()) {
    GtkWidget* const box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    setAccessibleName(m_search, translated(text::searchApplications));
    g_object_set(m_search, "placeholder-text", translated(text::searchApplications), nullptr);
    gtk_box_append(GTK_BOX(box), withMargins(m_search));
    gtk_box_append(GTK_BOX(box), makeList());
    m_signals.connect(m_search, "search-changed", [this] { filter(); });
    m_window =
        freedesktop::share(makeDialogWindow(widget, translated(text::chooseApplication), box));
    // The first Escape would otherwise only clear the search.
    m_signals.connect(m_search, "stop-search",
                      [this] { gtk_window_close(GTK_WINDOW(m_window.get())); });
    gtk_window_present(GTK_WINDOW(m_window.get()));
    gtk_widget_grab_focus(m_search);
}

ApplicationChooser::~ApplicationChooser() {
    gtk_window_destroy(GTK_WINDOW(m_window.get()));
}

GtkWidget* ApplicationChooser::makeList() {
    gtk_widget_add_css_class(m_list, "boxed-list");
    gtk_list_box_set_selection_mode(GTK_LIST_BOX(m_list), GTK_SELECTION_NONE);
    setAccessibleName(m_list, translated(text::chooseApplication));
    gtk_widget_set_valign(m_list, GTK_ALIGN_START);
    for (std::size_t index = 0; index < m_applications.size(); ++index) {
        addApplication(index);
    }
    GtkWidget* const none = gtk_label_new(translated(text::noApplicationFound));
    gtk_list_box_set_placeholder(GTK_LIST_BOX(m_list), withMargins(none));
    GtkWidget* const scrolled = gtk_scrolled_window_new();
    gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scrolled), GTK_POLICY_NEVER,
                                   GTK_POLICY_AUTOMATIC);
    gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scrolled), withMargins(m_list));
    gtk_widget_set_vexpand(scrolled, TRUE);
    return scrolled;
}

void ApplicationChooser::addApplication(std::size_t index) {
    const ListedApplication& application = m_applications[index];
    auto* const row = ADW_ACTION_ROW(adw_action_row_new());
    setRowTexts(row, application.name, application.identifier);
    gtk_list_box_row_set_activatable(GTK_LIST_BOX_ROW(row), TRUE);
    GtkWidget* const icon = application.icon
                                ? gtk_image_new_from_gicon(application.icon.get())
                                : gtk_image_new_from_icon_name("application-x-executable");
    gtk_image_set_pixel_size(GTK_IMAGE(icon), iconSize);
    adw_action_row_add_prefix(row, icon);
    gtk_list_box_append(GTK_LIST_BOX(m_list), GTK_WIDGET(row));
    m_rows.push_back(GTK_WIDGET(row));
    m_signals.connect(row, "activated", [this, index] {
        m_onChosen(m_applications[index].identifier);
        gtk_window_close(GTK_WINDOW(m_window.get()));
    });
}

void ApplicationChooser::filter() {
    const std::string text = gtk_editable_get_text(GTK_EDITABLE(m_search));
    for (std::size_t index = 0; index < m_rows.size(); ++index) {
        gtk_widget_set_visible(m_rows[index], matches(m_applications[index], text) ? TRUE : FALSE);
    }
}

} // namespace quorvel::settings_pages
