// Names a place in a text as a person finds it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quorvel::freedesktop {

// "LINE:COLUMN", both from 1, of the byte at that offset of a UTF-8 text. A line ends at CR, LF or
// CR LF; a column is a character.
std::string positionText(std::string_view text, std::size_t offset);

} // namespace quorvel::freedesktop
