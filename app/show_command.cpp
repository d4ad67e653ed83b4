#include "app/show_command.h"

#include <string>
#include <utility>

#include "app/messages.h"
#include "app/program_bundle.h"
#include "app/program_setup.h"
#include "freedesktop/freedesktop_platform.h"
#include "shells/window/show_agenda.h"

namespace quorvel::app {

namespace {

void reportLostDisplay() {
    printError({"the display has gone away", {}, "start the window again where there is one"});
}

window::AgendaWindowOptions windowOptions(const CommandLine& line, const ProgramSetup& setup,
                                          const ProgramBundle& bundle) {
    window::AgendaWindowOptions options;
    options.controllerName = bundle.controllerName;
    options.width = line.width;
    options.isDecorated = line.decorated;
    options.layer = setup.layer;
    options.layerModule = setup.layerModule;
    options.backdrop = setup.backdrop;
    return options;
}

} // namespace

CommandResult<void> showInWindow(const CommandLine& line) {
    const CommandResult<ProgramSetup> setup = makeProgramSetup(line);
    if (!setup) {
        return setup.error();
    }
    freedesktop::FreedesktopPlatform platform(setup->platform);
    const CommandResult<ProgramBundle> bundle =
        loadProgramBundle(platform, setup->bundleFolder, line.controller);
    if (!bundle) {
        return bundle.error();
    }
    const Result<void> shown = window::showAgenda(
        platform, *bundle->bundle, windowOptions(line, *setup, *bundle), reportLostDisplay);
    if (!shown) {
        Error error = shown.error();
        if (error.toDo.empty()) {
            error.toDo = "start it on a desktop, or print the rows with 'quorvel agenda'";
        }
        return usageFailure(std::move(error));
    }
    return {};
}

} // namespace quorvel::app
