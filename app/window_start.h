// From the command to the window, which is a program of its own: no other command loads a toolkit.
#pragma once

namespace quorvel::app {

// Returns nothing where it succeeds: this process goes on as the window's program, with the same
// arguments. Throws std::runtime_error where that program cannot be started.
[[noreturn]] int becomeWindowProgram(char* const* argv);

} // namespace quorvel::app
