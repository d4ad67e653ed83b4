#include "shells/settings/dialog_window.h"

namespace quorvel::settings_pages {

namespace {

constexpr int width = 360; // points
constexpr int height = 560;

void closeWithEscape(GtkWidget* window) {
    GtkEventController* const keys = gtk_shortcut_controller_new();
    gtk_shortcut_controller_add_shortcut(
        GTK_SHORTCUT_CONTROLLER(keys),
        gtk_shortcut_new(gtk_keyval_trigger_new(GDK_KEY_Escape, GdkModifierType{}),
                         gtk_named_action_new("window.close")));
    gtk_widget_add_controller(window, keys);
}

} // namespace

AdwWindow* makeDialogWindow(GtkWidget* widget, const char* title, GtkWidget* content) {
    GtkWidget* const window = adw_window_new();
    gtk_window_set_title(GTK_WINDOW(window), title);
    gtk_window_set_default_size(GTK_WINDOW(window), width, height);
    gtk_window_set_modal(GTK_WINDOW(window), TRUE);
    gtk_window_set_transient_for(GTK_WINDOW(window), GTK_WINDOW(gtk_widget_get_root(widget)));
    gtk_window_set_destroy_with_parent(GTK_WINDOW(window), TRUE);
    GtkWidget* const box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    gtk_box_append(GTK_BOX(box), adw_header_bar_new());
    gtk_box_append(GTK_BOX(box), content);
    adw_window_set_content(ADW_WINDOW(window), box);
    closeWithEscape(window);
    return ADW_WINDOW(window);
}

} // namespace quorvel::settings_pages
