// Encodings of one byte a character, beside those that expat knows.
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace quorvel::freedesktop {

// Unicode's number for each byte, or -1 where the byte is no character.
using SingleByteEncoding = std::array<int, 256>;

// windows-1252, and other names of ISO-8859-1 and US-ASCII. Names are compared without regard to
// case, '-' and '_'. Absent: unknown.
std::optional<SingleByteEncoding> singleByteEncodingNamed(std::string_view name);

bool isUtf8Name(std::string_view name);

} // namespace quorvel::freedesktop
