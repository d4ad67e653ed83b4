// The folder of settings that a command line chooses.
#pragma once

#include <string>

#include "app/command_line.h"
#include "app/failure.h"

namespace quorvel::app {

// Need not exist.
std::string preferencesFolderOf(const CommandLine& line);

// A folder that the user has named must be there for commands that only read it; those that write
// make it.
CommandResult<void> checkPreferencesFolder(const CommandLine& line);

// Prints one line about a file of settings that cannot be read. `problem` as from
// FreedesktopOptions::preferencesProblemHandler.
void reportPreferencesProblem(const Error& problem);

} // namespace quorvel::app
