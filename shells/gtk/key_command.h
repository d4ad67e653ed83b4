// The commands that the window runs for its keys.
#pragma once

#include <cstddef>
#include <optional>

namespace quorvel::gtk {

enum class KeyCommand { up, down, pageUp, pageDown, first, last, runAction, present, close };

// `key` and `modifiers` are values of GDK. Absent for all other keys, and for keys together with a
// modifier, which belong to the desktop.
std::optional<KeyCommand> keyCommand(unsigned key, unsigned modifiers);

// The row that has the focus after the command; absent where there are no rows, or the command does
// not move the focus. `pageLength` is a number of rows.
std::optional<std::size_t> movedFocus(KeyCommand command, std::optional<std::size_t> focused,
                                      std::size_t rowCount, std::size_t pageLength);

} // namespace quorvel::gtk
