#include "shells/settings/icon_rows.h"

#include <algorithm>

#include "freedesktop/language/messages.h"
#include "shells/settings/setting_texts.h"
#include "shells/settings/settings_model.h"
#include "shells/settings/settings_text.h"
#include "shells/settings/swatch.h"
#include "shells/settings/widget_tools.h"

namespace quorvel::settings_pages {

using freedesktop::SettingChoice;
using freedesktop::SettingDescription;
using freedesktop::translated;

namespace {

constexpr int pictureSize = 32;
constexpr Rgba sampleColour{0x35, 0x84, 0xE4, 0xFF};

GtkWidget* makePicture(const std::string& file) {
    GtkWidget* const image = gtk_image_new_from_file(file.c_str());
    gtk_image_set_pixel_size(GTK_IMAGE(image), pictureSize);
    return image;
}

// As large in its place as the dot in a row.
GtkWidget* makeDot(int diameter) {
    GtkWidget* const dot = makeSwatch(pictureSize);
    setSwatch(dot, {{sampleColour}, diameter});
    return dot;
}

// Null: the mark is no picture of ours.
GtkWidget* pictureOf(const SettingChoice& choice, std::string_view defaultValue,
                     const std::string& dataFolder) {
    constexpr int smallDot = 12;
    constexpr int largeDot = 20;
    if (choice.value == "DOT") {
        return makeDot(smallDot);
    }
    if (choice.value == "DOT_LARGE") {
        return makeDot(largeDot);
    }
    return choice.value == defaultValue ? makePicture(dataFolder + "/icon-about@2x.png") : nullptr;
}

} // namespace

IconRows::IconRows(AdwPreferencesGroup* group, const SettingDescription& setting,
                   SettingsModel& model, const std::string& dataFolder)
    : m_setting(setting)
    , m_model(model) {
    for (const SettingChoice& choice : setting.choices) {
        addChoice(group, std::string(choice.value), labelOf(choice),
                  pictureOf(choice, setting.defaultValue, dataFolder));
    }
    addFileChoice(group);
}

AdwActionRow* IconRows::addChoice(AdwPreferencesGroup* group, const std::string& value,
                                  const std::string& label, GtkWidget* picture) {
    auto* const row = ADW_ACTION_ROW(adw_action_row_new());
    setRowTexts(row, label, "");
    GtkWidget* const check = gtk_check_button_new();
    if (!m_choices.empty()) {
        gtk_check_button_set_group(GTK_CHECK_BUTTON(check),
                                   GTK_CHECK_BUTTON(m_choices.front().check));
    }
    gtk_widget_set_valign(check, GTK_ALIGN_CENTER);
    adw_action_row_add_prefix(row, check);
    adw_action_row_set_activatable_widget(row, check);
    setAccessibleName(check, label);
    if (picture != nullptr) {
        adw_action_row_add_suffix(row, picture);
    }
    m_choices.push_back({value, check});
    m_signals.connect(check, "toggled", [this, check, value] {
        if (!m_isShowing && gtk_check_button_get_active(GTK_CHECK_BUTTON(check)) != FALSE) {
            choose(value);
        }
    });
    adw_preferences_group_add(group, GTK_WIDGET(row));
    return row;
}

void IconRows::addFileChoice(AdwPreferencesGroup* group) {
    m_filePicture = makePicture("");
    m_fileRow = addChoice(group, "", translated(text::pictureFile), m_filePicture);
    GtkWidget* const button = gtk_button_new_with_mnemonic(translated(text::chooseFile));
    setAccessibleName(button, translated(text::choosePicture));
    gtk_widget_set_valign(button, GTK_ALIGN_CENTER);
    adw_action_row_add_suffix(m_fileRow, button);
    m_signals.connect(button, "clicked", [this] { openFileChooser(); });
}

void IconRows::choose(const std::string& value) {
    if (!value.empty()) {
        m_model.set(m_setting, value);
    } else if (!m_file.empty()) {
        m_model.set(m_setting, m_file);
    } else {
        openFileChooser();
    }
}

void IconRows::openFileChooser() {
    m_fileChooser = std::make_unique<PictureChooser>(
        GTK_WIDGET(m_fileRow), m_file, [this](const std::string& file) {
            if (file.empty()) {
                update(); // the mark from before stays chosen
            } else {
                m_model.set(m_setting, file);
            }
        });
}

void IconRows::update() {
    const std::string value = m_model.textOf(m_setting);
    auto chosen = std::ranges::find(m_choices, value, &Choice::value);
    if (chosen == m_choices.end()) { // a picture file, which is the last choice
        --chosen;
        m_file = value;
    }
    showFile(m_file);
    m_isShowing = true;
    gtk_check_button_set_active(GTK_CHECK_BUTTON(chosen->check), TRUE);
    m_isShowing = false;
}

void IconRows::showFile(const std::string& path) {
    adw_action_row_set_subtitle(m_fileRow,
                                path.empty() ? translated(text::noFileChosen) : path.c_str());
    if (path.empty()) {
        gtk_image_clear(GTK_IMAGE(m_filePicture));
    } else {
        gtk_image_set_from_file(GTK_IMAGE(m_filePicture), path.c_str());
    }
}

} // namespace quorvel::settings_pages
