// The keys of the window beside those of its rows.
#pragma once

#include <optional>

namespace quorvel::window {

enum class WindowKey { close, quit, refresh, menu, rowMenu, shortcuts };

// `key` and `modifiers` are values of GDK. Absent for all other keys.
std::optional<WindowKey> windowKey(unsigned key, unsigned modifiers);

} // namespace quorvel::window
