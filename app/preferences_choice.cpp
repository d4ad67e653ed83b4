#include "app/preferences_choice.h"

#include <filesystem>
#include <system_error>

#include "app/messages.h"
#include "app/settings_command.h"
#include "freedesktop/bundle/program_folders.h"
#include "freedesktop/language/messages.h"
#include "freedesktop/user_environment.h"

namespace quorvel::app {

using freedesktop::translated;

std::string preferencesFolderOf(const CommandLine& line) {
    if (line.preferences) {
        return *line.preferences;
    }
    if (line.sample) {
        return freedesktop::programFolders().data + "/sample/Preferences";
    }
    return freedesktop::userPreferencesFolder();
}

CommandResult<void> checkPreferencesFolder(const CommandLine& line) {
    if (!line.preferences || changesSettings(line)) {
        return {};
    }
    std::error_code error;
    if (std::filesystem::is_directory(*line.preferences, error)) {
        return {};
    }
    const bool isThere = std::filesystem::exists(*line.preferences, error);
    const char* const problem =
        isThere ? translated("'{1}' is no folder") : translated("there is no folder '{1}'");
    return usageFailure(
        {filled(problem, {*line.preferences}), {}, translated("name another with --preferences")});
}

void reportPreferencesProblem(const Error& problem) {
    printError({filled(translated("the settings cannot be read ({1})"), {translated(problem.what)}),
                problem.where, translated("mend the file, or move it away")});
}

} // namespace quorvel::app
