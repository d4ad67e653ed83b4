#include "shells/settings/application_row.h"

#include <optional>
#include <string>

#include "freedesktop/language/messages.h"
#include "shells/settings/settings_model.h"
#include "shells/settings/settings_text.h"

namespace quorvel::settings_pages {

using freedesktop::translated;

namespace {

constexpr int iconSize = 24;  // points
constexpr int leastName = 14; // characters
constexpr int widestName = 16;

std::string nameFor(const std::string& identifier,
                    const std::optional<ListedApplication>& application) {
    if (identifier.empty()) {
        return translated(text::noApplication);
    }
    return application ? application->name
                       : filled(translated(text::applicationMissing), {identifier});
}

} // namespace

ApplicationRow::ApplicationRow(const freedesktop::SettingDescription& setting, SettingsModel& model)
    : SettingRow(ADW_ACTION_ROW(adw_action_row_new()), setting, model)
    , m_icon(gtk_image_new())
    , m_name(gtk_label_new(nullptr)) {
    gtk_image_set_pixel_size(GTK_IMAGE(m_icon), iconSize);
    gtk_label_set_wrap(GTK_LABEL(m_name), TRUE);
    gtk_label_set_wrap_mode(GTK_LABEL(m_name), PANGO_WRAP_WORD_CHAR);
    gtk_label_set_width_chars(GTK_LABEL(m_name), leastName);
    gtk_label_set_xalign(GTK_LABEL(m_name), 1);
    gtk_label_set_max_width_chars(GTK_LABEL(m_name), widestName);
    adw_action_row_add_suffix(row(), m_icon);
    adw_action_row_add_suffix(row(), m_name);
    adw_action_row_add_suffix(row(), gtk_image_new_from_icon_name("go-next-symbolic"));
    gtk_list_box_row_set_activatable(GTK_LIST_BOX_ROW(row()), TRUE);
    signals().connect(row(), "activated", [this] {
        m_chooser =
            std::make_unique<ApplicationChooser>(widget(), [this](const std::string& identifier) {
                this->model().set(this->setting(), identifier);
            });
    });
}

void ApplicationRow::showValue() {
    const std::string identifier = model().textOf(setting());
    const auto application = installedApplication(identifier);
    gtk_label_set_text(GTK_LABEL(m_name), nameFor(identifier, application).c_str());
    gtk_image_set_from_gicon(GTK_IMAGE(m_icon),
                             application && application->icon ? application->icon.get() : nullptr);
    gtk_widget_set_visible(m_icon, application ? TRUE : FALSE);
}

} // namespace quorvel::settings_pages
