#include "shells/window/dialogs.h"

#include <initializer_list>

#include "freedesktop/glib/handles.h"
#include "freedesktop/language/messages.h"
#include "shells/window/window_text.h"

namespace quorvel::window {

using freedesktop::translated;

namespace {

constexpr int logoSize = 64; // points

struct Shortcut {
    const char* keys; // as GTK writes them
    const char* title;
};

GtkWidget* makeGroup(const char* title, std::initializer_list<Shortcut> shortcuts) {
    auto* const group = static_cast<GtkWidget*>(
        g_object_new(GTK_TYPE_SHORTCUTS_GROUP, "title", translated(title), nullptr));
    for (const Shortcut& shortcut : shortcuts) {
        auto* const row = static_cast<GtkWidget*>(
            g_object_new(GTK_TYPE_SHORTCUTS_SHORTCUT, "accelerator", shortcut.keys, "title",
                         translated(shortcut.title), nullptr));
        gtk_widget_show(row);
        gtk_container_add(GTK_CONTAINER(group), row);
    }
    gtk_widget_show(group);
    return group;
}

void presentDialog(GtkWidget* dialog, GtkWindow* parent) {
    gtk_window_set_transient_for(GTK_WINDOW(dialog), parent);
    gtk_window_set_destroy_with_parent(GTK_WINDOW(dialog), TRUE);
    gtk_window_present(GTK_WINDOW(dialog));
}

} // namespace

void showAbout(GtkWindow* parent, const std::string& picture) {
    GtkWidget* const dialog = gtk_about_dialog_new();
    GtkAboutDialog* const about = GTK_ABOUT_DIALOG(dialog);
    gtk_about_dialog_set_program_name(about, text::applicationName);
    gtk_about_dialog_set_version(about, QUORVEL_VERSION);
    gtk_about_dialog_set_comments(about, translated(text::applicationSummary));
    gtk_about_dialog_set_license_type(about, GTK_LICENSE_MIT_X11);
    const freedesktop::ObjectHandle<GdkPixbuf> logo(
        gdk_pixbuf_new_from_file_at_size(picture.c_str(), logoSize, logoSize, nullptr));
    gtk_about_dialog_set_logo(about, logo.get());
    g_signal_connect(dialog, "response", G_CALLBACK(gtk_widget_destroy), nullptr);
    presentDialog(dialog, parent);
}

void showShortcuts(GtkWindow* parent) {
    auto* const section = static_cast<GtkWidget*>(
        g_object_new(GTK_TYPE_SHORTCUTS_SECTION, "section-name", "shortcuts", nullptr));
    gtk_container_add(GTK_CONTAINER(section),
                      makeGroup(text::shortcutsOfRows, {{"Up Down", text::chooseRow},
                                                        {"Return space", text::openRow},
                                                        {"Menu <Shift>F10", text::openRowMenu}}));
    gtk_container_add(GTK_CONTAINER(section), makeGroup(text::shortcutsOfWindow,
                                                        {{"F10", text::openMenu},
                                                         {"F5 <Primary>r", text::updateWindow},
                                                         {"<Primary>question", text::showShortcuts},
                                                         {"<Primary>w Escape", text::closeWindow},
                                                         {"<Primary>q", text::quitProgram}}));
    gtk_widget_show(section);
    auto* const window =
        static_cast<GtkWidget*>(g_object_new(GTK_TYPE_SHORTCUTS_WINDOW, "modal", TRUE, nullptr));
    gtk_container_add(GTK_CONTAINER(window), section);
    presentDialog(window, parent);
}

void showSettingsHelp(GtkWindow* parent, const std::string& file) {
    GtkWidget* const dialog =
        gtk_message_dialog_new(parent, GTK_DIALOG_DESTROY_WITH_PARENT, GTK_MESSAGE_INFO,
                               GTK_BUTTONS_CLOSE, "%s", translated(text::settingsTitle));
    gtk_message_dialog_format_secondary_text(GTK_MESSAGE_DIALOG(dialog), "%s\n%s\n\n%s",
                                             translated(text::settingsFile), file.c_str(),
                                             translated(text::settingsManual));
    g_signal_connect(dialog, "response", G_CALLBACK(gtk_widget_destroy), nullptr);
    presentDialog(dialog, parent);
}

} // namespace quorvel::window
