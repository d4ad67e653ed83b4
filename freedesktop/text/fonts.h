// Which font families there are.
#pragma once

#include <string>

namespace quorvel::freedesktop {

// Also true of the general names such as "sans-serif". Upper and lower case do not matter. Waits
// for the list of fonts, which takes some milliseconds at the first question of a process.
bool isFontInstalled(const std::string& family);

} // namespace quorvel::freedesktop
