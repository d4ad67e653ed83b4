// The commands: the input, the output and the exit status of each.
#pragma once

#include <functional>

#include "app/failure.h"

namespace quorvel::app {

struct CommandLine;

// Runs the command `show`, which needs a toolkit; each program has its own way to do that.
using ShowCommand = std::function<CommandResult<void>(const CommandLine& line)>;

// Returns the exit status: 0, 1 where something cannot be read or written, 2 for wrong usage.
// Throws nothing.
int runProgram(int argc, const char* const* argv, const ShowCommand& show);

} // namespace quorvel::app
