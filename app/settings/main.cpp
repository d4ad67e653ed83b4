// The program `quorvel-settings`: a window for the settings.
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <optional>
#include <string>

#include "app/settings/settings_application.h"
#include "app/settings/settings_options.h"
#include "freedesktop/bundle/program_folders.h"
#include "freedesktop/language/catalogs.h"
#include "freedesktop/language/messages.h"
#include "freedesktop/log/library_messages.h"
#include "freedesktop/plain_text/terminal_line.h"
#include "freedesktop/user_environment.h"

namespace {

using namespace quorvel;

constexpr int exitUsage = 2;

int reportError(const std::string& what, int status) {
    std::fprintf(stderr, "quorvel-settings: %s\n", freedesktop::terminalLine(what).c_str());
    return status;
}

int showSettings(const app::SettingsOptions& options) {
    gtk_disable_setlocale(); // numbers are read and written the same in every language
    if (gtk_init_check() == FALSE) {
        return reportError(freedesktop::translated("there is no display: start it on a desktop, or "
                                                   "use 'quorvel settings'"),
                           EXIT_FAILURE);
    }
    app::SettingsApplication application;
    return application.run(options.preferences.value_or(freedesktop::userPreferencesFolder()));
}

int run(int argc, char** argv) {
    const auto options = app::parseSettingsOptions(argc, argv);
    if (!options) {
        return reportError(message(options.error()), exitUsage);
    }
    if (options->wantsHelp || options->wantsVersion) {
        const std::string text = options->wantsHelp ? app::settingsHelp() : app::settingsVersion();
        std::fputs(text.c_str(), stdout);
        return EXIT_SUCCESS;
    }
    return showSettings(*options);
}

} // namespace

int main(int argc, char** argv) {
    freedesktop::printLibraryMessagesOnOneLine();
    freedesktop::chooseLanguage(freedesktop::programFolders().catalogs, std::nullopt);
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        return reportError(error.what(), EXIT_FAILURE);
    }
}
