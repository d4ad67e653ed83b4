#include "app/setting_problems.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>

#include "base/likeliest_name.h"
#include "freedesktop/language/messages.h"
#include "freedesktop/preferences/calendar_selection.h"
#include "freedesktop/preferences/reported_property_list.h"
#include "freedesktop/preferences/setting_descriptions.h"
#include "freedesktop/preferences/setting_value.h"
#include "freedesktop/preferences/settings_file.h"

namespace quorvel::app {

using freedesktop::Rendering;
using freedesktop::SettingDescription;
using freedesktop::SettingsFile;
using freedesktop::translated;
using platform::PropertyListArray;
using platform::PropertyListDictionary;
using platform::PropertyListValue;

namespace {

constexpr std::string_view stockCalendarFileName = "com.apple.mobilecal.plist";
constexpr std::string_view deselectedKey = "LastDeselectedCalendars";

Error unknownKey(const std::string& key, std::string place) {
    const auto likeliest = likeliestSetting(key);
    return {filled(translated("there is no setting '{1}'"), {key}), std::move(place),
            likeliest ? filled(translated("did you mean '{1}'?"), {*likeliest})
                      : filled(translated("remove it with 'quorvel settings --reset {1}'"), {key})};
}

// The widget shows no icon where the file is no picture.
std::optional<Error> checkIcon(const SettingDescription& setting, const PropertyListValue& value,
                               Rendering& rendering) {
    const auto path = platform::stringValue(value);
    if (!setting.takesPaths || !path || freedesktop::settingLabel(setting, value)) {
        return std::nullopt;
    }
    if (rendering.imageFiles().imageWithContentsOfFile(*path) != nullptr) {
        return std::nullopt;
    }
    if (auto failure = rendering.failure()) {
        return failure;
    }
    return Error{filled(translated("'{1}' is no picture"), {*path}), {}, settingAdvice(setting)};
}

std::optional<Error> checkEntry(const std::string& key, const PropertyListValue& value,
                                Rendering& rendering) {
    const SettingDescription* const setting = freedesktop::settingDescription(key);
    if (setting == nullptr) {
        return unknownKey(key, {});
    }
    auto problem = checkSettingValue(*setting, value);
    return problem ? problem : checkIcon(*setting, value, rendering);
}

std::vector<Error> problemsOfSettings(const std::string& folder, Rendering& rendering) {
    const SettingsFile file(folder);
    const auto settings = file.read();
    if (!settings) {
        return {settings.error()};
    }
    std::vector<Error> problems;
    for (const auto& [key, value] : *settings) {
        if (auto problem = checkEntry(key, value, rendering)) {
            problem->where = file.placeOf(key);
            problems.push_back(*std::move(problem));
        }
    }
    return problems;
}

std::vector<Error> problemsOfIdentifiers(const PropertyListArray& identifiers,
                                         const std::string& path) {
    std::vector<Error> problems;
    for (std::size_t i = 0; i < identifiers.size(); ++i) {
        if (!std::holds_alternative<std::string>(identifiers[i].value)) {
            problems.push_back({filled(translated("entry {1} is no identifier of a calendar"),
                                       {std::to_string(i + 1)}),
                                path, translated("'quorvel calendars' lists the identifiers")});
        }
    }
    return problems;
}

// The list matters only if the widget does not follow the desktop.
std::vector<Error> problemsOfSelection(const std::string& folder) {
    const std::string path = folder + '/' + std::string(freedesktop::calendarSelectionFileName);
    const auto bytes = freedesktop::readListBytes(path);
    if (!bytes) {
        return {bytes.error()};
    }
    const auto list = *bytes ? freedesktop::parseArray(**bytes, path)
                             : Result<PropertyListArray>(PropertyListArray());
    if (!list) {
        return {list.error()};
    }
    const auto selection = freedesktop::readCalendarSelection(folder);
    if (selection && !selection->followsDesktop && list->empty()) {
        return {{translated("no calendars are chosen, so no events are shown"), path,
                 translated("choose some with 'quorvel settings calendars --choose NAME'")}};
    }
    return problemsOfIdentifiers(*list, path);
}

std::vector<Error> problemsOfStockCalendar(const std::string& folder) {
    const std::string path = folder + '/' + std::string(stockCalendarFileName);
    const auto bytes = freedesktop::readListBytes(path);
    if (!bytes) {
        return {bytes.error()};
    }
    const auto dictionary = *bytes ? freedesktop::parseDictionary(**bytes, path)
                                   : Result<PropertyListDictionary>(PropertyListDictionary());
    if (!dictionary) {
        return {dictionary.error()};
    }
    const auto* const deselected = platform::objectForKey(*dictionary, deselectedKey);
    if (deselected != nullptr && !std::holds_alternative<PropertyListArray>(deselected->value)) {
        return {{filled(translated("{1} is no array"), {deselectedKey}), path,
                 translated("write the identifiers of the calendars into an array")}};
    }
    return {};
}

} // namespace

std::optional<std::string_view> likeliestSetting(std::string_view misspelt) {
    std::vector<std::string_view> keys;
    std::ranges::transform(freedesktop::settingDescriptions(), std::back_inserter(keys),
                           &SettingDescription::key);
    return likeliestName(misspelt, keys);
}

std::vector<Error> settingProblems(const std::string& preferencesFolder, Rendering& rendering) {
    std::vector<Error> problems = problemsOfSettings(preferencesFolder, rendering);
    for (const auto& problemsOf : {problemsOfSelection, problemsOfStockCalendar}) {
        std::ranges::move(problemsOf(preferencesFolder), std::back_inserter(problems));
    }
    return problems;
}

} // namespace quorvel::app
