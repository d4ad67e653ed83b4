// The row for the address of a calendar on the web that the user wants to subscribe to.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include <adwaita.h>

#include "shells/settings/program_run.h"
#include "shells/settings/signal_connections.h"

namespace quorvel::settings_pages {

// The command subscribes in the background, as it waits for a server; a row below the entry shows
// its result.
class SubscribeRow {
public:
    // Adds its rows to the group, which GTK owns. `program`: the path of `quorvel`. `onSubscribed`
    // must not destroy the object.
    SubscribeRow(AdwPreferencesGroup* group, std::string program, std::string preferencesFolder,
                 std::function<void()> onSubscribed);
    SubscribeRow(const SubscribeRow&) = delete;
    SubscribeRow& operator=(const SubscribeRow&) = delete;

    void focus(); // of the keyboard, to the entry

private:
    std::string address() const;
    void addRows(AdwPreferencesGroup* group);
    GtkWidget* makeEntryLine() const;
    void handleChange();
    void subscribe();
    void finish(const ProgramResult& result);
    void showProgress();
    void showMessage(const std::string& title, const std::string& details); // empty: hides it
    void setWrong(bool isWrong, const std::string& reason);

    std::string m_program;
    std::string m_preferencesFolder;
    std::function<void()> m_onSubscribed;
    GtkWidget* m_entry; // GTK owns these
    GtkWidget* m_button;
    GtkWidget* m_spinner;
    AdwActionRow* m_message;
    std::unique_ptr<ProgramRun> m_run; // null: the command is not running
    SignalConnections m_signals;
};

} // namespace quorvel::settings_pages
