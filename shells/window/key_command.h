// What the keys do in the window.
#pragma once

#include <cstddef>
#include <optional>

namespace quorvel::window {

enum class KeyCommand { up, down, pageUp, pageDown, first, last, run, present, close };

// `key` and `modifiers` as GDK gives them. Absent for every other key, and for all of them
// together with a modifier, which are the desktop's.
std::optional<KeyCommand> keyCommand(unsigned key, unsigned modifiers);

// The row that has the focus after a command that moves it; absent where there are no rows, or the
// command moves nothing. `pageLength`: rows.
std::optional<std::size_t> movedFocus(KeyCommand command, std::optional<std::size_t> focused,
                                      std::size_t rowCount, std::size_t pageLength);

} // namespace quorvel::window
