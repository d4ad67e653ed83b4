// What the user prefers to see on the desktop.
#pragma once

namespace quorvel::freedesktop {

enum class ColorScheme { noPreference, dark, light };

} // namespace quorvel::freedesktop
