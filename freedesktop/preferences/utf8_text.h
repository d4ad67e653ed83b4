// Texts of property lists as well-formed UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace quorvel::freedesktop {

// U+FFFD where there is no such character.
void appendUtf8(std::string& text, char32_t character);

// What is no character becomes U+FFFD.
std::string wellFormedUtf8(std::string_view text);

// Without a byte-order mark; UTF-16 with one is made UTF-8.
std::string decodedText(std::string_view bytes);

} // namespace quorvel::freedesktop
