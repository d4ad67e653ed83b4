// Loads the program's own modules, which wrap libraries that not every start needs.
#pragma once

#include <string>

#include "base/result.h"

namespace quorvel::freedesktop {

// The function of that name in the module, never null. The module is never unloaded, as libraries
// leave threads and types behind. The error is the loader's message.
Result<void*, std::string> moduleFunction(const std::string& file, const char* name);

} // namespace quorvel::freedesktop
