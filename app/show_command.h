// The command `show`, for the program that has a toolkit.
#pragma once

#include "app/command_line.h"
#include "app/failure.h"

namespace quorvel::app {

// Returns when the window has been closed. A missing display is wrong usage.
CommandResult<void> showInWindow(const CommandLine& line);

} // namespace quorvel::app
