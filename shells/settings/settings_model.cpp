#include "shells/settings/settings_model.h"

#include <utility>

#include "freedesktop/language/messages.h"
#include "freedesktop/preferences/setting_value.h"
#include "shells/settings/setting_texts.h"
#include "shells/settings/settings_text.h"

namespace quorvel::settings_pages {

using freedesktop::CalendarSelection;
using freedesktop::SettingChanges;
using freedesktop::SettingDescription;
using freedesktop::SettingKind;
using freedesktop::translated;
using platform::PropertyListValue;

namespace {

constexpr std::size_t mostUndoSteps = 200;
constexpr std::string_view followKey = "onlySelectedCalendars";

std::string convertedText(const SettingDescription& setting, const PropertyListValue& value) {
    switch (setting.kind) {
    case SettingKind::boolean:
        return freedesktop::settingText(PropertyListValue{platform::boolValue(value)});
    case SettingKind::integer:
    case SettingKind::colour:
        return freedesktop::settingText(PropertyListValue{platform::integerValue(value)});
    case SettingKind::number:
        return freedesktop::settingText(
            PropertyListValue{static_cast<double>(platform::floatValue(value))});
    case SettingKind::text:
        return platform::stringValue(value).value_or("");
    }
    return {};
}

std::optional<PropertyListValue> copied(const PropertyListValue* value) {
    return value != nullptr ? std::optional(*value) : std::nullopt;
}

bool isSameSelection(const CalendarSelection& a, const CalendarSelection& b) {
    return a.followsDesktop == b.followsDesktop && a.identifiers == b.identifiers;
}

} // namespace

SettingsModel::SettingsModel(std::string preferencesFolder, Duration mergeTime)
    : m_folder(std::move(preferencesFolder))
    , m_file(m_folder)
    , m_mergeTime(mergeTime)
    , m_state(readState()) {}

SettingsModel::State SettingsModel::readState() const {
    State state;
    auto values = m_file.read();
    if (!values) {
        state.problem = values.error();
        return state;
    }
    state.values = *std::move(values);
    auto selection = freedesktop::readCalendarSelection(m_folder);
    if (!selection) {
        state.problem = selection.error();
        return state;
    }
    state.selection = *std::move(selection);
    return state;
}

void SettingsModel::reload() {
    m_state = readState();
    if (m_onChanged) {
        m_onChanged();
    }
}

std::string SettingsModel::textOf(const SettingDescription& setting) const {
    const PropertyListValue* const value = platform::objectForKey(m_state.values, setting.key);
    return value != nullptr ? convertedText(setting, *value) : std::string(setting.defaultValue);
}

bool SettingsModel::isSet(std::string_view key) const {
    return platform::objectForKey(m_state.values, key) != nullptr;
}

std::optional<Error> SettingsModel::problemOf(const SettingDescription& setting) const {
    const PropertyListValue* const value = platform::objectForKey(m_state.values, setting.key);
    return value != nullptr ? freedesktop::checkSettingValue(setting, *value) : std::nullopt;
}

bool SettingsModel::canReset() const {
    for (const SettingDescription& setting : freedesktop::settingDescriptions()) {
        if (isSet(setting.key)) {
            return true;
        }
    }
    return false;
}

SettingsModel::UndoStep SettingsModel::stepBefore(std::string label,
                                                  const SettingChanges& changes) const {
    UndoStep step{std::move(label), {}, std::nullopt, std::chrono::steady_clock::now()};
    for (const auto& [key, value] : changes) {
        step.before[key] = copied(platform::objectForKey(m_state.values, key));
    }
    return step;
}

bool SettingsModel::isContinued(const UndoStep& next) const {
    if (m_undoSteps.empty() || next.selection || next.before.size() != 1) {
        return false;
    }
    const UndoStep& latest = m_undoSteps.back();
    return !latest.selection && latest.before.size() == 1 &&
           latest.before.begin()->first == next.before.begin()->first &&
           next.time - latest.time < m_mergeTime;
}

void SettingsModel::remember(UndoStep step) {
    if (isContinued(step)) {
        m_undoSteps.back().time = step.time;
        return;
    }
    if (m_undoSteps.size() == mostUndoSteps) {
        m_undoSteps.erase(m_undoSteps.begin());
    }
    m_undoSteps.push_back(std::move(step));
}

void SettingsModel::fail(const Error& error) {
    m_state = readState();
    if (!m_state.problem) {
        m_state.problem = error;
    }
    if (m_onChanged) {
        m_onChanged();
    }
}

void SettingsModel::finishWrite(const Result<void>& written, UndoStep step) {
    if (!written) {
        fail(written.error());
        return;
    }
    const std::string label = step.label;
    remember(std::move(step));
    reload();
    if (m_onWritten) {
        m_onWritten(label);
    }
}

void SettingsModel::write(const std::string& label, const SettingChanges& changes) {
    UndoStep step = stepBefore(label, changes);
    finishWrite(m_file.change(changes), std::move(step));
}

void SettingsModel::set(const SettingDescription& setting, std::string_view text) {
    auto value = freedesktop::parseSettingValue(setting, text);
    if (!value) {
        fail(value.error());
        return;
    }
    write(labelOf(setting), {{std::string(setting.key), *std::move(value)}});
}

void SettingsModel::reset(const SettingDescription& setting) {
    write(labelOf(setting), {{std::string(setting.key), std::nullopt}});
}

void SettingsModel::resetAll() {
    SettingChanges changes;
    for (const SettingDescription& setting : freedesktop::settingDescriptions()) {
        if (isSet(setting.key)) {
            changes[std::string(setting.key)] = std::nullopt;
        }
    }
    if (!changes.empty()) {
        write(translated(text::allSettings), changes);
    }
}

void SettingsModel::selectCalendars(const CalendarSelection& selection) {
    if (isSameSelection(selection, m_state.selection)) {
        return;
    }
    UndoStep step =
        stepBefore(translated(text::groupCalendars), {{std::string(followKey), std::nullopt}});
    step.selection = m_state.selection;
    finishWrite(freedesktop::writeCalendarSelection(m_folder, selection), std::move(step));
}

void SettingsModel::undo() {
    if (m_undoSteps.empty()) {
        return;
    }
    const UndoStep& step = m_undoSteps.back();
    if (step.selection) {
        const auto written = freedesktop::writeCalendarSelection(m_folder, *step.selection);
        if (!written) {
            fail(written.error());
            return;
        }
    }
    if (const auto written = m_file.change(step.before); !written) {
        fail(written.error());
        return;
    }
    m_undoSteps.pop_back();
    reload();
}

} // namespace quorvel::settings_pages
