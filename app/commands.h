// The commands: what each reads, prints and writes, and how it ends.
#pragma once

namespace quorvel::app {

// The program's exit status: 0, 1 for what cannot be read or written, 2 for wrong usage. Nothing is
// thrown.
int runProgram(int argc, const char* const* argv);

} // namespace quorvel::app
