#include "app/show_command.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "app/messages.h"
#include "app/program_bundle.h"
#include "app/program_setup.h"
#include "base/stable_hash.h"
#include "freedesktop/bundle/program_folders.h"
#include "freedesktop/desktop/linked_desktop.h"
#include "freedesktop/freedesktop_platform.h"
#include "freedesktop/language/messages.h"
#include "freedesktop/launch/desktop_launcher.h"
#include "freedesktop/rendering/linked_rendering.h"
#include "freedesktop/user_environment.h"
#include "shells/window/show_agenda.h"

namespace quorvel::app {

using freedesktop::translated;

namespace {

void reportLostDisplay() {
    printError({translated("the display has gone away"),
                {},
                translated("start the window again where there is one")});
}

// A folder that the user has chosen; without one, also for the sample, the user's own settings.
std::vector<std::string> settingsCommand(const CommandLine& line) {
    std::vector<std::string> command{freedesktop::programFolders().settings};
    if (line.preferences) {
        command.insert(command.end(), {"--preferences", *line.preferences});
    }
    return command;
}

window::AgendaWindowOptions windowOptions(const CommandLine& line, const ProgramSetup& setup,
                                          const ProgramBundle& bundle) {
    window::AgendaWindowOptions options;
    options.controllerName = bundle.controllerName;
    options.width = line.width;
    options.layer = setup.layer;
    options.layerModule = setup.layerModule;
    if (line.background) {
        options.backdrop = setup.backdrop;
    }
    options.calendarsManual = setup.platform.dataFolder + "/your-calendars.md";
    options.settingsFile = setup.platform.preferencesFolder + "/org.quorvel.quorvelprefs.plist";
    options.settingsCommand = settingsCommand(line);
    options.geometryFile = freedesktop::userWindowGeometryFile();
    return options;
}

std::string numberText(const std::optional<double>& number) {
    return number ? std::to_string(*number) : "";
}

// Stands for everything that decides what the window shows.
std::uint64_t identityOf(const CommandLine& line) {
    std::error_code unknown;
    std::string text = std::filesystem::current_path(unknown).string();
    if (line.calendars.empty() && !line.preferences && !line.bundle) {
        text.clear(); // no path is relative to the folder
    }
    std::vector<std::string> values = line.calendars;
    for (const auto& value : {line.preferences, line.now, line.timeZone, line.locale, line.font,
                              line.bundle, line.background}) {
        values.push_back(value.value_or(""));
    }
    values.insert(values.end(), {line.controller, numberText(line.width),
                                 numberText(line.foundationVersion), line.sample ? "sample" : ""});
    for (const std::string& value : values) {
        text += '\n' + value;
    }
    return stableHash(text);
}

} // namespace

CommandResult<void> showInWindow(const CommandLine& line) {
    CommandResult<ProgramSetup> setup = makeProgramSetup(
        line, freedesktop::makeLinkedRendering, std::make_shared<freedesktop::LinkedDesktop>());
    if (!setup) {
        return setup.error();
    }
    setup->platform.makeLauncher = freedesktop::makeDesktopLauncher;
    freedesktop::FreedesktopPlatform platform(setup->platform);
    const CommandResult<ProgramBundle> bundle =
        loadProgramBundle(platform, setup->bundleFolder, line.controller);
    if (!bundle) {
        return bundle.error();
    }
    const Result<window::InstanceRole> shown =
        window::showAgenda(platform, *bundle->bundle, windowOptions(line, *setup, *bundle),
                           identityOf(line), reportLostDisplay);
    if (!shown) {
        Error error = shown.error();
        if (error.toDo.empty()) {
            error.toDo =
                translated("start it on a desktop, or print the rows with 'quorvel agenda'");
        }
        return usageFailure(std::move(error));
    }
    if (*shown == window::InstanceRole::secondWithOptions) {
        printError({translated("the window is already open with other options"),
                    {},
                    translated("close it first")});
    }
    return {};
}

} // namespace quorvel::app
