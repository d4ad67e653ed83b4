// Characters of a text in UTF-8 (RFC 3629), which may be damaged, and the surrogate pairs of UTF-16
// (RFC 2781).
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quorvel {

inline constexpr char32_t replacementCharacter = 0xFFFD;

struct DecodedCharacter {
    std::optional<char32_t> character; // absent: damaged bytes
    std::size_t length = 1;            // bytes taken
};

// The first character of a text that is not empty. Damage takes one byte at a time, so that the
// next call decodes what follows it from its start.
DecodedCharacter decodeCharacter(std::string_view text);

// UTF-16 writes a character beyond U+FFFF as two units, the high surrogate first.
constexpr bool isHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit < 0xDC00;
}
constexpr bool isLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit < 0xE000;
}
constexpr char32_t joinSurrogates(char32_t high, char32_t low) {
    return 0x10000 + ((high - 0xD800) << 10U) + (low - 0xDC00);
}

// False for the halves of a surrogate pair and for what lies beyond U+10FFFF: UTF-8 cannot encode
// them.
bool isEncodable(char32_t character);

// The character is encodable.
void appendCharacter(std::string& text, char32_t character);

} // namespace quorvel
