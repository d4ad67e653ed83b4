// What of a stranger's text is shown on one line.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quorvel::freedesktop {

// No more of a text is looked at than this; a text that goes on ends with an ellipsis.
inline constexpr std::size_t lineTextMaximumBytes = 16384;
// Characters that stand side by side, and the marks that may stand on each: enough for any row and
// any script, few enough to be laid out at once.
inline constexpr std::size_t lineTextMaximumCharacters = 2048;
inline constexpr std::size_t lineTextMaximumMarks = 30;

// Valid UTF-8 without line ends: damaged bytes become the replacement character, control characters
// and line separators a space. Marks above the limit are left out.
std::string lineText(std::string_view text);

} // namespace quorvel::freedesktop
