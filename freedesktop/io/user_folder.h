// The program's folder among the user's settings, caches or states.
#pragma once

#include <filesystem>

namespace quorvel::freedesktop {

// "quorvel" in the folder that the environment variable names, else in that folder at home. An
// empty or relative path in the variable is ignored, as the desktop's base directory rules require.
// Relative without a home.
std::filesystem::path userFolder(const char* variable, const char* nameAtHome);

} // namespace quorvel::freedesktop
