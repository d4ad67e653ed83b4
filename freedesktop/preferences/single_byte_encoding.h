// Encodings of one byte per character for expat, which knows only some itself.
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace quorvel::freedesktop {

// The Unicode code point of each byte, or -1 for a byte that is not a character.
using SingleByteEncoding = std::array<int, 256>;

// Knows windows-1252 and alternative names of ISO-8859-1 and US-ASCII. Ignores case, '-' and '_'.
// Absent: the name is unknown.
std::optional<SingleByteEncoding> singleByteEncodingNamed(std::string_view name);

bool isUtf8Name(std::string_view name);

} // namespace quorvel::freedesktop
