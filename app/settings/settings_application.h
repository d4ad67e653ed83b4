// The application of the settings' windows, one process for the whole session.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include <adwaita.h>

#include "freedesktop/glib/delayed_call.h"
#include "freedesktop/glib/handles.h"
#include "freedesktop/log/syslog_log.h"
#include "shells/settings/settings_window.h"

namespace quorvel::app {

// A second process passes its folder on to the first one, and ends.
class SettingsApplication {
public:
    SettingsApplication();
    ~SettingsApplication();
    SettingsApplication(const SettingsApplication&) = delete;
    SettingsApplication& operator=(const SettingsApplication&) = delete;

    // Shows the window for that preferences folder until all windows are closed. Returns the exit
    // status.
    int run(const std::string& preferencesFolder);

private:
    using Windows = std::map<std::string, std::unique_ptr<settings_pages::SettingsWindow>>;

    void open(const std::string& preferencesFolder);
    void close(const std::string& preferencesFolder);
    void addQuitKeys();

    freedesktop::Syslog m_log;
    freedesktop::ObjectHandle<AdwApplication> m_application;
    Windows m_windows;                          // by preferences folder
    std::vector<Windows::mapped_type> m_closed; // until no function of theirs runs
    freedesktop::DelayedCall m_destroyClosed;
};

} // namespace quorvel::app
