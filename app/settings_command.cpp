#include "app/settings_command.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/messages.h"
#include "app/preferences_choice.h"
#include "app/setting_problems.h"
#include "app/subscription_command.h"
#include "freedesktop/bundle/program_folders.h"
#include "freedesktop/language/messages.h"
#include "freedesktop/plain_text/terminal_line.h"
#include "freedesktop/preferences/setting_descriptions.h"
#include "freedesktop/preferences/setting_value.h"
#include "freedesktop/preferences/settings_file.h"
#include "shells/headless/settings_list.h"

namespace quorvel::app {

using freedesktop::Rendering;
using freedesktop::SettingChanges;
using freedesktop::SettingDescription;
using freedesktop::SettingsFile;
using freedesktop::translated;
using headless::ListedSetting;
using platform::PropertyListDictionary;

namespace {

constexpr std::string_view calendarsWord = "calendars";

Error settingsUsageError(std::string what) {
    return {std::move(what), {}, translated("see 'quorvel settings --help'")};
}

Failure unknownSetting(const std::string& key) {
    const auto likeliest = likeliestSetting(key);
    return usageFailure({filled(translated("there is no setting '{1}'"), {key}),
                         {},
                         likeliest
                             ? filled(translated("did you mean '{1}'?"), {*likeliest})
                             : std::string(translated("'quorvel settings' lists the settings"))});
}

ListedSetting listed(const SettingDescription& setting, const PropertyListDictionary& settings) {
    const auto* const stored = platform::objectForKey(settings, setting.key);
    return {&setting,
            stored != nullptr ? *stored : parseSettingValue(setting, setting.defaultValue).value(),
            stored != nullptr};
}

CommandResult<void> printText(const std::string& text) {
    const Result<void> printed = print(text);
    return printed ? CommandResult<void>() : operationFailure(printed.error());
}

// A mistake in the file is easy to overlook, since the widget uses another value.
void noteProblems(const std::string& folder, Rendering& rendering) {
    const auto problems = settingProblems(folder, rendering).size();
    if (problems > 0) {
        printError(
            {filled(freedesktop::translatedPlural("{1} mistake is in the settings",
                                                  "{1} mistakes are in the settings", problems),
                    {std::to_string(problems)}),
             {},
             translated("see 'quorvel settings --check'")});
    }
}

CommandResult<void> listSettings(const CommandLine& line, const std::string& folder,
                                 Rendering& rendering) {
    const auto settings = SettingsFile(folder).read();
    if (!settings) {
        return operationFailure(settings.error());
    }
    std::vector<ListedSetting> list;
    for (const SettingDescription& setting : freedesktop::settingDescriptions()) {
        list.push_back(listed(setting, *settings));
    }
    const auto printed =
        printText(line.json ? headless::settingsDocument(list) : headless::settingsText(list));
    noteProblems(folder, rendering);
    return printed;
}

CommandResult<void> printSetting(const CommandLine& line, const SettingDescription& setting,
                                 const std::string& folder) {
    const auto settings = SettingsFile(folder).read();
    if (!settings) {
        return operationFailure(settings.error());
    }
    const ListedSetting entry = listed(setting, *settings);
    return printText(line.json
                         ? headless::settingDocument(entry)
                         : freedesktop::terminalLine(freedesktop::settingText(entry.value)) + '\n');
}

CommandResult<void> change(const std::string& folder, const SettingChanges& changes) {
    const Result<void> changed = SettingsFile(folder).change(changes);
    return changed ? CommandResult<void>() : operationFailure(changed.error());
}

CommandResult<void> setSetting(const SettingDescription& setting, const std::string& text,
                               const std::string& folder) {
    const auto value = parseSettingValue(setting, text);
    if (!value) {
        return usageFailure(value.error());
    }
    return change(folder, {{std::string(setting.key), *value}});
}

// A key that the file alone has can be removed, too.
CommandResult<void> resetSettings(const std::vector<std::string>& keys, const std::string& folder) {
    const auto settings = SettingsFile(folder).read();
    if (!settings) {
        return operationFailure(settings.error());
    }
    SettingChanges changes;
    for (const std::string& key : keys) {
        if (freedesktop::settingDescription(key) == nullptr && !settings->contains(key)) {
            return unknownSetting(key);
        }
        changes[key] = std::nullopt;
    }
    return change(folder, changes);
}

CommandResult<void> checkSettings(const std::string& folder, Rendering& rendering) {
    std::vector<Error> problems = settingProblems(folder, rendering);
    if (problems.empty()) {
        return printText(filled(translated("The settings in '{1}' are right.\n"),
                                {freedesktop::terminalLine(folder)}));
    }
    for (std::size_t i = 0; i + 1 < problems.size(); ++i) {
        printError(problems[i]);
    }
    return operationFailure(std::move(problems.back()));
}

bool choosesCalendars(const CommandLine& line) {
    return !line.chosenCalendars.empty() || line.choosesAll || line.followsDesktop;
}

bool hasControlCharacter(const std::string& text) {
    return std::ranges::any_of(
        text, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; });
}

std::optional<Error> checkSubscriptionLine(const CommandLine& line, bool choosesCalendars) {
    if (line.subscribe && line.unsubscribe) {
        return settingsUsageError(translated("--subscribe and --unsubscribe exclude each other"));
    }
    if (isAboutSubscriptions(line) && choosesCalendars) {
        return settingsUsageError(
            translated("calendars are subscribed to and chosen one after the other"));
    }
    if (!line.subscribe && (line.title || line.colour || line.user)) {
        return settingsUsageError(translated("--title, --colour and --user belong to --subscribe"));
    }
    if (line.readsPassword && !line.user) {
        return settingsUsageError(translated("--password-stdin belongs to --user"));
    }
    if (hasControlCharacter(line.title.value_or("")) ||
        hasControlCharacter(line.user.value_or(""))) {
        return settingsUsageError(translated("the title or the name contains a control character"));
    }
    return std::nullopt;
}

// What leaves no room for anything else; each with its option.
std::optional<Error> checkCalendarsLine(const CommandLine& line) {
    if (line.settingsWords.size() > 1) {
        return Error{filled(translated("'{1}' is one argument too many"), {line.settingsWords[1]}),
                     {},
                     translated("name calendars behind --choose")};
    }
    if (line.checksSettings || !line.resetSettings.empty()) {
        return settingsUsageError(
            translated("--check and --reset are for settings, not for calendars"));
    }
    const int choices = (line.chosenCalendars.empty() ? 0 : 1) + (line.choosesAll ? 1 : 0) +
                        (line.followsDesktop ? 1 : 0);
    if (choices > 1) {
        return settingsUsageError(
            translated("--choose, --all and --follow-desktop exclude each other"));
    }
    return checkSubscriptionLine(line, choices > 0);
}

std::optional<Error> checkKeyLine(const CommandLine& line) {
    const bool resets = !line.resetSettings.empty();
    if (isAboutSubscriptions(line) || line.title || line.colour || line.user ||
        line.readsPassword) {
        return Error{translated("subscriptions are calendars, not settings"),
                     {},
                     translated("write 'quorvel settings calendars'")};
    }
    if (choosesCalendars(line)) {
        return Error{translated("--choose, --all and --follow-desktop are for calendars"),
                     {},
                     translated("write 'quorvel settings calendars'")};
    }
    if (line.settingsWords.size() > 2) {
        return Error{filled(translated("'{1}' is one argument too many"), {line.settingsWords[2]}),
                     {},
                     translated("put a value with spaces in quotation marks")};
    }
    if (line.checksSettings && (resets || !line.settingsWords.empty())) {
        return settingsUsageError(translated("--check stands alone"));
    }
    if (resets && !line.settingsWords.empty()) {
        return settingsUsageError(translated("--reset takes one setting; give it again for more"));
    }
    return std::nullopt;
}

// The library takes the next argument for a missing value even if it is an option.
std::optional<Error> checkValues(const char* option, const std::vector<std::string>& values) {
    const bool isMissing = std::ranges::any_of(
        values, [](const std::string& value) { return value.starts_with("--"); });
    return isMissing ? std::optional(settingsUsageError(
                           filled(translated("the option {1} needs a value"), {option})))
                     : std::nullopt;
}

} // namespace

bool isAboutCalendars(const CommandLine& line) {
    return !line.settingsWords.empty() && line.settingsWords.front() == calendarsWord;
}

bool changesSettings(const CommandLine& line) {
    return line.command == Command::settings &&
           (choosesCalendars(line) || isAboutSubscriptions(line) || !line.resetSettings.empty() ||
            line.settingsWords.size() > 1);
}

Result<void> checkSettingsLine(const CommandLine& line) {
    for (const auto& error :
         {checkValues("--reset", line.resetSettings), checkValues("--choose", line.chosenCalendars),
          isAboutCalendars(line) ? checkCalendarsLine(line) : checkKeyLine(line)}) {
        if (error) {
            return *error;
        }
    }
    if (line.json && (changesSettings(line) || line.checksSettings)) {
        return settingsUsageError(translated("--json is for lists and values"));
    }
    if (line.sample && !line.preferences && changesSettings(line)) {
        return Error{translated("the settings of the sample cannot be changed"),
                     {},
                     translated("name a folder with --preferences")};
    }
    return {};
}

CommandResult<void> runSettingsCommand(const CommandLine& line,
                                       const freedesktop::RenderingFactory& makeRendering) {
    if (const CommandResult<void> checked = checkPreferencesFolder(line); !checked) {
        return checked;
    }
    const std::string folder = preferencesFolderOf(line);
    const std::unique_ptr<Rendering> rendering =
        makeRendering({{}, {}, 1, freedesktop::programFolders().data});
    if (line.checksSettings) {
        return checkSettings(folder, *rendering);
    }
    if (!line.resetSettings.empty()) {
        return resetSettings(line.resetSettings, folder);
    }
    if (line.settingsWords.empty()) {
        return listSettings(line, folder, *rendering);
    }
    const std::string& key = line.settingsWords.front();
    const SettingDescription* const setting = freedesktop::settingDescription(key);
    if (setting == nullptr) {
        return unknownSetting(key);
    }
    return line.settingsWords.size() == 1 ? printSetting(line, *setting, folder)
                                          : setSetting(*setting, line.settingsWords[1], folder);
}

} // namespace quorvel::app
