// Any text as a part of one line on a terminal.
#pragma once

#include <string>
#include <string_view>

namespace quorvel::freedesktop {

// Valid UTF-8 that stays on its line and that no terminal acts upon: a tab or a line end becomes a
// space, any other control character and each damaged byte U+FFFD, and what turns the writing
// direction is dropped. All else is unchanged: marks of direction, joiners, combining marks.
std::string terminalLine(std::string_view text);

} // namespace quorvel::freedesktop
