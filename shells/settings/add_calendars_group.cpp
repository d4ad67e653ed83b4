#include "shells/settings/add_calendars_group.h"

#include "freedesktop/language/messages.h"
#include "shells/settings/settings_text.h"
#include "shells/settings/welcome_page.h"
#include "shells/settings/widget_tools.h"

namespace quorvel::settings_pages {

using freedesktop::translated;

AddCalendarsGroup::AddCalendarsGroup(AdwPreferencesGroup* group, const AddCalendarsOptions& options)
    : m_subscribe(group, options.program, options.preferencesFolder, options.onSubscribed) {
    auto* const row = ADW_ACTION_ROW(adw_action_row_new());
    setRowTexts(row, translated(text::addCalendars), translated(text::addCalendarsMeaning));
    adw_action_row_add_suffix(row, gtk_image_new_from_icon_name("go-next-symbolic"));
    gtk_list_box_row_set_activatable(GTK_LIST_BOX_ROW(row), TRUE);
    adw_preferences_group_add(group, GTK_WIDGET(row));
    m_signals.connect(row, "activated", [row, guide = options.guide, actions = options.actions] {
        showWelcomeDialog(GTK_WIDGET(row), guide, actions);
    });
}

} // namespace quorvel::settings_pages
