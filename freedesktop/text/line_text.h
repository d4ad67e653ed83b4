// Prepares an untrusted text to be shown on one line.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quorvel::freedesktop {

// A longer text is truncated and ends with an ellipsis.
inline constexpr std::size_t lineTextMaximumBytes = 16384;
// The number of base characters, and of combining marks on each: enough for every row and script,
// and few enough for a fast layout.
inline constexpr std::size_t lineTextMaximumCharacters = 2048;
inline constexpr std::size_t lineTextMaximumMarks = 30;

// Valid UTF-8 without line ends: invalid bytes become U+FFFD, control characters and line
// separators become spaces. Drops marks above the limit.
std::string lineText(std::string_view text);

} // namespace quorvel::freedesktop
