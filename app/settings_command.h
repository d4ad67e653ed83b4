// The command `settings`: lists, prints, changes, resets and checks them.
#pragma once

#include "app/command_line.h"
#include "app/failure.h"
#include "freedesktop/rendering/rendering.h"

namespace quorvel::app {

// `quorvel settings calendars`, which app/settings_calendars.h runs.
bool isAboutCalendars(const CommandLine& line);

// Whether the command line asks for a change of settings or of the choice of calendars.
bool changesSettings(const CommandLine& line);

// What options and arguments of `settings` may stand together.
Result<void> checkSettingsLine(const CommandLine& line);

// Not for calendars.
CommandResult<void> runSettingsCommand(const CommandLine& line,
                                       const freedesktop::RenderingFactory& makeRendering);

} // namespace quorvel::app
