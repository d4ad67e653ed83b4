#include "app/settings/settings_options.h"

#include <filesystem>
#include <string_view>
#include <system_error>

#include "freedesktop/language/messages.h"

namespace quorvel::app {

using freedesktop::translated;

namespace {

constexpr std::string_view preferencesOption = "--preferences";

Error usageError(const std::string& what) {
    return {what, {}, translated("see 'quorvel-settings --help'")};
}

Result<std::string> absoluteFolder(std::string_view folder) {
    std::error_code error;
    const auto absolute = std::filesystem::absolute(folder, error).lexically_normal();
    if (folder.empty() || error) {
        return usageError(translated("--preferences needs a folder"));
    }
    return absolute.string();
}

} // namespace

Result<SettingsOptions> parseSettingsOptions(int argc, const char* const* argv) {
    SettingsOptions options;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        const std::size_t equals = argument.find('=');
        if (argument == "-h" || argument == "--help") {
            options.wantsHelp = true;
        } else if (argument == "-V" || argument == "--version") {
            options.wantsVersion = true;
        } else if (argument.substr(0, equals) == preferencesOption) {
            const bool hasValue = equals != std::string_view::npos;
            const std::string_view next = i + 1 < argc ? argv[i + 1] : "";
            const auto folder = absoluteFolder(hasValue ? argument.substr(equals + 1) : next);
            if (!folder) {
                return folder.error();
            }
            options.preferences = *folder;
            i += hasValue ? 0 : 1;
        } else {
            return usageError(filled(argument.starts_with('-')
                                         ? translated("unknown option '{1}'")
                                         : translated("unexpected argument '{1}'"),
                                     {argument}));
        }
    }
    return options;
}

std::string settingsHelp() {
    return translated(
        "Usage: quorvel-settings [--preferences DIR]\n"
        "\n"
        "Opens the settings of the agenda in a window, with a preview. Changes are written at\n"
        "once and can be undone. 'quorvel settings' does the same in a terminal.\n"
        "\n"
        "Options:\n"
        "  --preferences DIR  the folder of the settings' property lists\n"
        "                     ($XDG_CONFIG_HOME/quorvel/Preferences)\n"
        "  -h, --help         print this help\n"
        "  -V, --version      print the version\n"
        "\n"
        "Keys:\n"
        "  Ctrl+Z             undo the latest change\n"
        "  F10                open the menu\n"
        "  Ctrl+?             show the keyboard shortcuts\n"
        "  Escape             close a dialog or a list\n"
        "  Ctrl+W, Ctrl+Q     close the window, quit\n"
        "\n"
        "Exit status: 0; 1 where there is no display; 2 for wrong usage.\n");
}

std::string settingsVersion() {
    return "quorvel-settings " QUORVEL_VERSION "\n";
}

} // namespace quorvel::app
