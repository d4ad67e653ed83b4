// The installed font families.
#pragma once

#include <string>

namespace quorvel::freedesktop {

// Also true for generic names such as "sans-serif". Ignores case. Waits until the list of fonts is
// loaded, which takes some milliseconds for the first call in a process.
bool isFontInstalled(const std::string& family);
// Whether there is any font: without one, texts are rows of boxes. Waits likewise.
bool areFontsInstalled();

} // namespace quorvel::freedesktop
