// The commands: what each reads, prints and writes, and how it ends.
#pragma once

#include <functional>

namespace quorvel::app {

struct CommandLine;

// What the command `show` is to the program that was started; returns the exit status.
using ShowCommand = std::function<int(const CommandLine& line)>;

// The program's exit status: 0, 1 for what cannot be read or written, 2 for wrong usage. Nothing is
// thrown.
int runProgram(int argc, const char* const* argv, const ShowCommand& show);

} // namespace quorvel::app
