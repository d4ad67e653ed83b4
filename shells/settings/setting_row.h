// A row of a page that shows and changes one setting.
#pragma once

#include <memory>

#include <adwaita.h>

#include "freedesktop/glib/handles.h"
#include "freedesktop/preferences/setting_descriptions.h"
#include "shells/settings/signal_connections.h"

namespace quorvel::settings_pages {

class SettingsModel;

// The model and the description outlive the row.
class SettingRow {
public:
    SettingRow(AdwActionRow* row, const freedesktop::SettingDescription& setting,
               SettingsModel& model); // takes the floating reference
    virtual ~SettingRow() = default;
    SettingRow(const SettingRow&) = delete;
    SettingRow& operator=(const SettingRow&) = delete;

    GtkWidget* widget() const { return GTK_WIDGET(m_row.get()); }
    void update(); // shows the model's state

protected:
    virtual void showValue() = 0;

    AdwActionRow* row() const { return m_row.get(); }
    const freedesktop::SettingDescription& setting() const { return m_setting; }
    SettingsModel& model() const { return m_model; }
    // While the row shows a value by itself, the signals of its control mean no change of the user.
    bool isShowing() const { return m_isShowing; }
    SignalConnections& signals() { return m_signals; }

private:
    freedesktop::ObjectHandle<AdwActionRow> m_row;
    const freedesktop::SettingDescription& m_setting;
    SettingsModel& m_model;
    GtkWidget* m_resetButton; // GTK owns it
    bool m_isShowing = false;
    SignalConnections m_signals;
};

} // namespace quorvel::settings_pages
