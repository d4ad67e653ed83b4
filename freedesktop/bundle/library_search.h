// Finds out whether the loader can load a library, before a program is started that needs it: where
// it cannot, the loader prints a message of its own and ends that program.
#pragma once

#include <string>

#include "base/result.h"

namespace quorvel::freedesktop {

// `name` is that of a shared library as programs ask for it, such as "libz.so.1". The error is the
// loader's own text. A library that lies in the folder of one that this process uses already, as
// libraries of a system do, is found in microseconds and not loaded. Any other one is loaded for
// the answer, and stays so.
Result<void, std::string> findLibrary(const std::string& name);

} // namespace quorvel::freedesktop
