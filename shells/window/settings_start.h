// Opens the window of the settings, or says where they are where that cannot be opened.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtk/gtk.h>

namespace quorvel::freedesktop {
class LaunchContext;
} // namespace quorvel::freedesktop

namespace quorvel::window {

class SettingsStart {
public:
    // `command`: the program of the settings and its arguments. `file`: the file of the settings.
    SettingsStart(std::vector<std::string> command, std::string file);
    ~SettingsStart(); // nothing is shown afterwards
    SettingsStart(const SettingsStart&) = delete;
    SettingsStart& operator=(const SettingsStart&) = delete;

    // A failure is shown in front of the window, which lives as long as this.
    void start(GtkWindow* window, freedesktop::LaunchContext& context);

private:
    std::vector<std::string> m_command;
    std::shared_ptr<const std::string> m_file; // never null
};

} // namespace quorvel::window
