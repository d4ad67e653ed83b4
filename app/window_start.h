// Continues `quorvel show` in the window's program: no other command has to load a toolkit.
#pragma once

#include "app/failure.h"

namespace quorvel::app {

inline constexpr const char* toolkitLibrary = "libgtk-3.so.0"; // the window's, of every GTK 3

// Replaces this process by the window's program, with the same arguments. Returns only where that
// program cannot be started.
Failure replaceByWindowProgram(char* const* argv);

} // namespace quorvel::app
