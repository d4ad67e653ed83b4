#include "shells/phosh/preferences/lock_screen_group.h"

#include "freedesktop/glib/handles.h"
#include "freedesktop/language/messages.h"
#include "shells/phosh/lock_screen_schema.h"
#include "shells/settings/widget_tools.h"

namespace quorvel::phosh {

using freedesktop::translated;

namespace {

constexpr const char* groupTitle = translatable("Lock Screen");
constexpr const char* detailsTitle = translatable("Show what the events are about");
constexpr const char* detailsMeaning =
    translatable("While this is off, the lock screen shows when you are busy, but neither titles "
                 "nor locations.");

} // namespace

AdwPreferencesGroup* makeLockScreenGroup() {
    const auto settings = openLockScreenSettings();
    if (!settings) {
        return nullptr;
    }
    GtkWidget* const toggle = gtk_switch_new();
    // The binding keeps the settings alive for as long as the switch.
    g_settings_bind(settings.get(), detailsKey, toggle, "active", G_SETTINGS_BIND_DEFAULT);
    auto* const row = ADW_ACTION_ROW(adw_action_row_new());
    settings_pages::setRowTexts(row, translated(detailsTitle), translated(detailsMeaning));
    settings_pages::addControl(row, toggle, translated(detailsTitle));
    auto* const group = ADW_PREFERENCES_GROUP(adw_preferences_group_new());
    adw_preferences_group_set_title(group, translated(groupTitle));
    adw_preferences_group_add(group, GTK_WIDGET(row));
    return group;
}

} // namespace quorvel::phosh
