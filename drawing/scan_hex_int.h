// Reads a hexadecimal number from the front of a text, as the platform's scanner does.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace quorvel {

// White space and line ends are skipped, then "0x" or "0X" if present, then the longest run of
// hexadecimal digits is read. Too large a number is the largest of 32 bits. Nothing where there is
// neither a digit nor "0x"; that mark without a digit behind it is 0. A sign is not accepted.
std::optional<std::uint32_t> scanHexInt(std::u16string_view text);

} // namespace quorvel
