// The settings behind the pages: their values, changes that are written at once, and undo.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/result.h"
#include "freedesktop/preferences/calendar_selection.h"
#include "freedesktop/preferences/setting_descriptions.h"
#include "freedesktop/preferences/settings_file.h"
#include "platform/property_list.h"

namespace quorvel::settings_pages {

// Belongs to one thread. No handler may destroy the model.
class SettingsModel {
public:
    using Duration = std::chrono::steady_clock::duration;

    // The folder need not exist. Changes of one setting that follow each other within `mergeTime`
    // are undone together, as a spin button makes one for each step.
    explicit SettingsModel(std::string preferencesFolder,
                           Duration mergeTime = std::chrono::seconds(1));

    // Called when a value, the problem or what can be undone has changed.
    void setChangedHandler(std::function<void()> onChanged) { m_onChanged = std::move(onChanged); }
    // Called when a change of the user has been written, with the label of what has changed.
    void setWrittenHandler(std::function<void(const std::string& label)> onWritten) {
        m_onWritten = std::move(onWritten);
    }

    const std::string& folder() const { return m_folder; }
    const std::string& filePath() const { return m_file.path(); }
    // Reads the files again, and calls the handler where something differs.
    void reload();

    // The value that the widget uses, converted as it does, in the form of settingText().
    std::string textOf(const freedesktop::SettingDescription& setting) const;
    bool isSet(std::string_view key) const;
    // What is wrong with the stored value.
    std::optional<Error> problemOf(const freedesktop::SettingDescription& setting) const;
    const freedesktop::CalendarSelection& calendarSelection() const { return m_state.selection; }
    // Why the settings cannot be read or written; absent: they can.
    const std::optional<Error>& problem() const { return m_state.problem; }

    // These write at once. After a failure the problem says why, and nothing has changed.
    void set(const freedesktop::SettingDescription& setting, std::string_view text);
    void reset(const freedesktop::SettingDescription& setting);
    void resetAll();
    void selectCalendars(const freedesktop::CalendarSelection& selection);

    bool canUndo() const { return !m_undoSteps.empty(); }
    bool canReset() const; // a setting is set
    void undo();

private:
    struct State {
        platform::PropertyListDictionary values;
        freedesktop::CalendarSelection selection;
        std::optional<Error> problem;
    };
    struct UndoStep {
        std::string label;
        freedesktop::SettingChanges before;
        std::optional<freedesktop::CalendarSelection> selection; // absent: it was not changed
        std::chrono::steady_clock::time_point time;
    };

    State readState() const;
    UndoStep stepBefore(std::string label, const freedesktop::SettingChanges& changes) const;
    bool isContinued(const UndoStep& next) const;
    void remember(UndoStep step);
    void write(const std::string& label, const freedesktop::SettingChanges& changes);
    void finishWrite(const Result<void>& written, UndoStep step);
    void fail(const Error& error);

    std::string m_folder;
    freedesktop::SettingsFile m_file;
    Duration m_mergeTime;
    State m_state;
    std::vector<UndoStep> m_undoSteps; // the latest last
    std::function<void()> m_onChanged;
    std::function<void(const std::string&)> m_onWritten;
};

} // namespace quorvel::settings_pages
