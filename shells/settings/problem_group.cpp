#include "shells/settings/problem_group.h"

#include <utility>

#include "freedesktop/language/messages.h"
#include "shells/settings/settings_text.h"
#include "shells/settings/widget_tools.h"

namespace quorvel::settings_pages {

using freedesktop::translated;

ProblemGroup::ProblemGroup(std::function<void()> tryAgain)
    : m_group(ADW_PREFERENCES_GROUP(adw_preferences_group_new()))
    , m_row(ADW_ACTION_ROW(adw_action_row_new())) {
    GtkWidget* const icon = gtk_image_new_from_icon_name("dialog-warning-symbolic");
    gtk_widget_add_css_class(icon, "warning");
    adw_action_row_add_prefix(m_row, icon);
    GtkWidget* const button = gtk_button_new_with_mnemonic(translated(text::tryAgain));
    nameByMnemonic(button, translated(text::tryAgain));
    gtk_widget_set_valign(button, GTK_ALIGN_CENTER);
    adw_action_row_add_suffix(m_row, button);
    adw_preferences_group_add(m_group, GTK_WIDGET(m_row));
    m_signals.connect(button, "clicked", std::move(tryAgain));
}

void ProblemGroup::show(const std::optional<Error>& problem) {
    gtk_widget_set_visible(GTK_WIDGET(m_group), problem ? TRUE : FALSE);
    if (problem) {
        setRowTexts(m_row, translated(text::cannotChange), message(*problem));
    }
}

} // namespace quorvel::settings_pages
