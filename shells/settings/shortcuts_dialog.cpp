#include "shells/settings/shortcuts_dialog.h"

#include <array>
#include <string>

#include <adwaita.h>

#include "freedesktop/glib/handles.h"
#include "freedesktop/language/messages.h"
#include "shells/settings/dialog_window.h"
#include "shells/settings/settings_text.h"
#include "shells/settings/widget_tools.h"

namespace quorvel::settings_pages {

using freedesktop::translated;

namespace {

struct Shortcut {
    guint key;
    GdkModifierType modifiers;
    const char* meaning;
};

constexpr std::array<Shortcut, 6> shortcuts{{
    {GDK_KEY_z, GDK_CONTROL_MASK, text::shortcutUndo},
    {GDK_KEY_F10, GdkModifierType{}, text::shortcutMenu},
    {GDK_KEY_question, GDK_CONTROL_MASK, text::shortcutShortcuts},
    {GDK_KEY_Escape, GdkModifierType{}, text::shortcutBack},
    {GDK_KEY_w, GDK_CONTROL_MASK, text::shortcutClose},
    {GDK_KEY_q, GDK_CONTROL_MASK, text::shortcutQuit},
}};

GtkWidget* makeRow(const Shortcut& shortcut) {
    const freedesktop::TextHandle keys(gtk_accelerator_get_label(shortcut.key, shortcut.modifiers));
    auto* const row = ADW_ACTION_ROW(adw_action_row_new());
    const std::string meaning = translated(shortcut.meaning);
    setRowTexts(row, meaning, "");
    setAccessibleName(GTK_WIDGET(row), meaning + ", " + keys.get());
    GtkWidget* const label = gtk_label_new(keys.get());
    gtk_widget_add_css_class(label, "dim-label");
    adw_action_row_add_suffix(row, label);
    return GTK_WIDGET(row);
}

} // namespace

void showShortcuts(GtkWidget* widget) {
    auto* const group = ADW_PREFERENCES_GROUP(adw_preferences_group_new());
    for (const Shortcut& shortcut : shortcuts) {
        adw_preferences_group_add(group, makeRow(shortcut));
    }
    GtkWidget* const page = adw_preferences_page_new();
    adw_preferences_page_add(ADW_PREFERENCES_PAGE(page), group);
    gtk_window_present(
        GTK_WINDOW(makeDialogWindow(widget, translated(text::shortcutsTitle), page)));
}

} // namespace quorvel::settings_pages
