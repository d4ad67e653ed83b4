// Decodes and encodes UTF-8 (RFC 3629), and joins the surrogate pairs of UTF-16 (RFC 2781). A text
// to decode may hold any bytes.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quorvel {

inline constexpr char32_t replacementCharacter = 0xFFFD;

struct DecodedCharacter {
    std::optional<char32_t> character; // absent: the bytes are not UTF-8
    std::size_t length = 1;            // bytes consumed
};

// The first character of a text that is not empty. Of invalid bytes it consumes one, so that the
// next call starts at the byte behind it.
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

// False for the halves of a surrogate pair and for numbers above U+10FFFF, which UTF-8 cannot
// encode.
bool isEncodable(char32_t character);

// The character is encodable.
void appendCharacter(std::string& text, char32_t character);

// U+FFFD in place of a character that is not encodable.
void appendCharacterOrReplacement(std::string& text, char32_t character);

// The text with U+FFFD in place of each byte that is not UTF-8.
std::string wellFormedUtf8(std::string_view text);

} // namespace quorvel
