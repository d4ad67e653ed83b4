// The rows that choose what marks an event: the calendar picture, a dot, nothing, or a picture
// file.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <adwaita.h>

#include "freedesktop/preferences/setting_descriptions.h"
#include "shells/settings/picture_chooser.h"
#include "shells/settings/signal_connections.h"

namespace quorvel::settings_pages {

class SettingsModel;

class IconRows {
public:
    // The model and the description outlive the rows. `dataFolder` has the program's own pictures.
    IconRows(AdwPreferencesGroup* group, const freedesktop::SettingDescription& setting,
             SettingsModel& model, const std::string& dataFolder);
    IconRows(const IconRows&) = delete;
    IconRows& operator=(const IconRows&) = delete;

    void update(); // shows the model's state

private:
    struct Choice {
        std::string value; // empty: a picture file
        GtkWidget* check;  // GTK owns it
    };

    AdwActionRow* addChoice(AdwPreferencesGroup* group, const std::string& value,
                            const std::string& label, GtkWidget* picture);
    void addFileChoice(AdwPreferencesGroup* group);
    void choose(const std::string& value);
    void openFileChooser();
    void showFile(const std::string& path);

    const freedesktop::SettingDescription& m_setting;
    SettingsModel& m_model;
    std::vector<Choice> m_choices;
    AdwActionRow* m_fileRow = nullptr; // GTK owns it
    GtkWidget* m_filePicture = nullptr;
    std::string m_file; // the latest picture file, also while another mark is chosen
    std::unique_ptr<PictureChooser> m_fileChooser; // null before it is opened
    bool m_isShowing = false;
    SignalConnections m_signals;
};

} // namespace quorvel::settings_pages
