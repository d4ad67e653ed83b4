// The page with all settings, for the window of the program and for the phone's settings.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <adwaita.h>

#include "freedesktop/glib/handles.h"
#include "freedesktop/session/file_changes.h"
#include "shells/settings/add_calendars_group.h"
#include "shells/settings/calendars_group.h"
#include "shells/settings/icon_rows.h"
#include "shells/settings/preview.h"
#include "shells/settings/problem_group.h"
#include "shells/settings/scratch_folder.h"
#include "shells/settings/setting_row.h"
#include "shells/settings/settings_model.h"
#include "shells/settings/signal_connections.h"
#include "shells/settings/undo_offer.h"

namespace quorvel::settings_pages {

struct SettingsPageOptions {
    std::string preferencesFolder;
    std::string program;    // the path of `quorvel`
    std::string dataFolder; // with the pictures and the guide that come with the program
    std::function<void(AdwToast* toast)> showToast;           // takes the toast
    std::function<void(bool hasCalendars)> onCalendarsListed; // may be null
    std::function<void()> showPage;           // brings the page to view; null: it always is
    bool showsPreview = false;                // on the page; otherwise the host shows it elsewhere
    AdwPreferencesGroup* hostGroup = nullptr; // of the host's own settings; null: none
};

// Belongs to the thread of GTK. The widgets outlive the object without effect: destroy it before or
// with them.
class SettingsPage {
public:
    // The log outlives the page. It gets what the system cannot watch.
    SettingsPage(SettingsPageOptions options, platform::SystemLog& log);
    SettingsPage(const SettingsPage&) = delete;
    SettingsPage& operator=(const SettingsPage&) = delete;

    AdwPreferencesPage* page() const { return m_page.get(); }
    GtkWidget* preview() const { return m_preview.widget(); }
    // The actions "undo", "reset-all" and "subscribe", to be inserted as the group "settings".
    GActionGroup* actions() const { return G_ACTION_GROUP(m_actions.get()); }
    void refresh(); // of what changes without a notice: the preview and the list of calendars

private:
    void addHostGroups();
    void addGroups();
    AdwPreferencesGroup* addGroup(const std::string& title);
    void addSettings(std::string_view name);
    void addSetting(AdwPreferencesGroup* group, const freedesktop::SettingDescription& setting);
    void addCalendars(AdwPreferencesGroup* group, const freedesktop::SettingDescription& follow);
    void startSubscribing();
    void addResetGroup();
    void addAction(const char* name, std::function<void()> run);
    void undo();
    void addUndoKey();
    void setActionEnabled(const char* name, bool isEnabled);
    void update();

    SettingsPageOptions m_options;
    SettingsModel m_model;
    freedesktop::ObjectHandle<AdwPreferencesPage> m_page;
    freedesktop::ObjectHandle<GSimpleActionGroup> m_actions;
    ScratchFolder m_scratch;
    Preview m_preview;
    ProblemGroup m_problem;
    std::vector<GtkWidget*> m_groups; // that change settings; GTK owns them
    std::vector<std::unique_ptr<SettingRow>> m_rows;
    std::unique_ptr<IconRows> m_iconRows;
    std::unique_ptr<CalendarsGroup> m_calendars;
    std::unique_ptr<AddCalendarsGroup> m_addCalendars;
    UndoOffer m_undoOffer;
    freedesktop::FileChanges m_fileChanges;
    SignalConnections m_signals;
};

} // namespace quorvel::settings_pages
