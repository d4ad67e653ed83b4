// The row of the setting that names an application, which a dialog chooses.
#pragma once

#include <memory>

#include "shells/settings/application_chooser.h"
#include "shells/settings/setting_row.h"

namespace quorvel::settings_pages {

class ApplicationRow final : public SettingRow {
public:
    ApplicationRow(const freedesktop::SettingDescription& setting, SettingsModel& model);

private:
    void showValue() override;

    GtkWidget* m_icon; // GTK owns these
    GtkWidget* m_name;
    std::unique_ptr<ApplicationChooser> m_chooser; // null before it is opened
};

} // namespace quorvel::settings_pages
