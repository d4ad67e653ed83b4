// The command `show`, in the program that has a toolkit.
#pragma once

#include "app/command_line.h"

namespace quorvel::app {

// Returns when the window is closed. Throws headless::UsageError, also where there is no display,
// and what the other commands throw.
int showInWindow(const CommandLine& line);

} // namespace quorvel::app
