// Makes any text safe to print within one line on a terminal.
#pragma once

#include <string>
#include <string_view>

namespace quorvel::freedesktop {

// Valid UTF-8 without line ends and control characters: a tab or a line end becomes a space, any
// other control character and each invalid byte becomes U+FFFD, and characters that change the
// writing direction are dropped. Other characters, such as direction marks and joiners, do not
// change.
std::string terminalLine(std::string_view text);

} // namespace quorvel::freedesktop
