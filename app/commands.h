// The commands: the input, the output and the exit status of each.
#pragma once

#include <functional>
#include <memory>

#include "app/failure.h"
#include "freedesktop/desktop/desktop.h"
#include "freedesktop/rendering/rendering.h"

namespace quorvel::app {

struct CommandLine;

// What the programs that run commands do in different ways.
struct ProgramParts {
    // Runs the command `show`, which needs a toolkit.
    std::function<CommandResult<void>(const CommandLine& line)> show;
    freedesktop::RenderingFactory makeRendering;
    std::shared_ptr<freedesktop::Desktop> desktop; // never null
};

// Returns the exit status: 0, 1 where something cannot be read or written, 2 for wrong usage.
// Throws nothing.
int runProgram(int argc, const char* const* argv, const ProgramParts& parts);

} // namespace quorvel::app
