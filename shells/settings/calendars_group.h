// The group of the calendars: who chooses them, and a row for each.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <adwaita.h>

#include "freedesktop/preferences/setting_descriptions.h"
#include "shells/settings/calendar_choice.h"
#include "shells/settings/calendar_row.h"
#include "shells/settings/program_run.h"
#include "shells/settings/scratch_folder.h"
#include "shells/settings/signal_connections.h"
#include "shells/settings/unsubscribe_dialog.h"

namespace quorvel::settings_pages {

class SettingsModel;

// The command lists the calendars in the background, as reading them may take long.
class CalendarsGroup {
public:
    // The model, the description and the scratch folder outlive the group. `program`: the path of
    // `quorvel`. `onListed` is called after each list.
    CalendarsGroup(AdwPreferencesGroup* group, const freedesktop::SettingDescription& follow,
                   SettingsModel& model, const ScratchFolder& scratch, std::string program,
                   std::function<void(bool hasCalendars)> onListed);
    CalendarsGroup(const CalendarsGroup&) = delete;
    CalendarsGroup& operator=(const CalendarsGroup&) = delete;

    void update();  // shows the model's state
    void refresh(); // lists the calendars again

private:
    void addFollowRow(const freedesktop::SettingDescription& follow);
    void showList(const ProgramResult& result);
    void showCalendars(std::vector<ListedCalendar> calendars);
    void rebuildRows();
    void addRow(const ListedCalendar& calendar);
    CalendarRow* rowOf(const std::string& identifier) const; // null: it is no longer listed
    void askToUnsubscribe(const std::string& identifier);
    void unsubscribe(const std::string& identifier);
    void finishUnsubscribing(const std::string& identifier, const ProgramResult& result);
    void showStatus(const std::string& status); // empty: none
    void switchFollowing();
    bool isShown(const ListedCalendar& calendar) const;

    AdwPreferencesGroup* m_group; // GTK owns these
    SettingsModel& m_model;
    const ScratchFolder& m_scratch;
    std::string m_program;
    std::function<void(bool)> m_onListed;
    GtkWidget* m_follow;
    AdwActionRow* m_status;
    bool m_isShowing = false;
    bool m_wasFollowing = true; // when the calendars were listed
    std::vector<ListedCalendar> m_calendars;
    std::vector<std::unique_ptr<CalendarRow>> m_rows;
    std::unique_ptr<ProgramRun> m_run;                             // null before the first list
    std::unique_ptr<UnsubscribeDialog> m_dialog;                   // null before the first one
    std::map<std::string, std::unique_ptr<ProgramRun>> m_removals; // by identifier, while they run
    SignalConnections m_signals;
};

} // namespace quorvel::settings_pages
