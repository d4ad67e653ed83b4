#include "app/show_command.h"

#include <cstdlib>
#include <utility>

#include "app/messages.h"
#include "app/program_setup.h"
#include "freedesktop/bundle/loaded_bundle.h"
#include "freedesktop/freedesktop_platform.h"
#include "shells/headless/usage_error.h"
#include "shells/window/show_agenda.h"
#include "shells/window/toolkit.h"

namespace quorvel::app {

namespace {

void complainOfLostDisplay() {
    complain("the display has gone away: start the window again where there is one");
}

} // namespace

int showInWindow(const CommandLine& line) {
    ProgramSetup setup = setUp(line);
    freedesktop::FreedesktopPlatform platform(std::move(setup.platform));
    const auto bundle = platform.loadBundle(setup.bundle);
    window::AgendaWindowOptions options;
    options.controllerName = line.controller;
    options.width = line.width;
    options.isDecorated = line.decorated;
    options.backdrop = setup.backdrop;
    options.noCalendarsText =
        line.calendars.empty() ? "There are no calendars yet" : "The calendars cannot be read";
    try {
        window::showAgenda(platform, *bundle, std::move(options), complainOfLostDisplay);
    } catch (const window::NoDisplayError& error) {
        throw headless::UsageError(std::string(error.what()) +
                                   ": start it on a desktop, or print the rows with 'quorvel "
                                   "agenda'");
    }
    return EXIT_SUCCESS;
}

} // namespace quorvel::app
