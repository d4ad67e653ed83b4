#include "shells/settings/setting_row.h"

#include "freedesktop/language/messages.h"
#include "shells/settings/setting_order.h"
#include "shells/settings/setting_texts.h"
#include "shells/settings/settings_model.h"
#include "shells/settings/settings_text.h"
#include "shells/settings/widget_tools.h"

namespace quorvel::settings_pages {

using freedesktop::translated;

namespace {

constexpr const char* wrongValueClass = "error";

} // namespace

SettingRow::SettingRow(AdwActionRow* row, const freedesktop::SettingDescription& setting,
                       SettingsModel& model)
    : m_row(static_cast<AdwActionRow*>(g_object_ref_sink(row)))
    , m_setting(setting)
    , m_model(model)
    , m_resetButton(makeIconButton("edit-clear-symbolic",
                                   filled(translated(text::resetSetting), {labelOf(setting)}))) {
    setRowTexts(row, labelOf(setting), meaningOf(setting));
    adw_action_row_add_suffix(row, m_resetButton);
    m_signals.connect(m_resetButton, "clicked", [this] { m_model.reset(m_setting); });
}

void SettingRow::update() {
    const std::optional<Error> problem = m_model.problemOf(m_setting);
    const std::string subtitle =
        problem ? message({problem->what, {}, problem->toDo}) : meaningOf(m_setting);
    adw_action_row_set_subtitle(row(), subtitle.c_str());
    if (problem) {
        gtk_widget_add_css_class(widget(), wrongValueClass);
    } else {
        gtk_widget_remove_css_class(widget(), wrongValueClass);
    }
    gtk_widget_set_visible(m_resetButton, m_model.isSet(m_setting.key) ? TRUE : FALSE);
    gtk_widget_set_sensitive(widget(), hasEffect(m_setting.key, m_model) ? TRUE : FALSE);
    m_isShowing = true;
    showValue();
    m_isShowing = false;
}

} // namespace quorvel::settings_pages
