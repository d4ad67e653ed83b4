// The window of the settings, on a phone and on a desktop.
#pragma once

#include <functional>
#include <string>

#include <adwaita.h>

#include "freedesktop/glib/handles.h"
#include "shells/settings/settings_page.h"
#include "shells/settings/signal_connections.h"

namespace quorvel::settings_pages {

struct SettingsWindowOptions {
    std::string preferencesFolder;
    std::string program;    // the path of `quorvel`
    std::string dataFolder; // with the pictures and the guide that come with the program
    std::string version;
};

// While no calendar is found, the window begins with a page that says how to add some.
class SettingsWindow {
public:
    // The log outlives the window. `onClosed` is called when the user has closed it, and may
    // destroy the object.
    SettingsWindow(AdwApplication* application, const SettingsWindowOptions& options,
                   platform::SystemLog& log, std::function<void()> onClosed);
    ~SettingsWindow(); // closes the window
    SettingsWindow(const SettingsWindow&) = delete;
    SettingsWindow& operator=(const SettingsWindow&) = delete;

    void present();

private:
    void addActions();
    GtkWidget* makeHeader();
    GtkWidget* makeSettings();
    GtkWidget* makeWelcome(const std::string& guide);
    void showSettings();
    void showWelcome(bool hasCalendars);
    void showAbout();

    std::string m_version;
    freedesktop::ObjectHandle<GtkWindow> m_window;
    GtkWidget* m_stack; // GTK owns these
    AdwToastOverlay* m_toasts;
    bool m_hasListed = false; // the calendars, once
    SettingsPage m_page;
    SignalConnections m_signals;
};

} // namespace quorvel::settings_pages
