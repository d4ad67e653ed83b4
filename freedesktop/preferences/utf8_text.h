// Texts of property lists as well-formed UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace quorvel::freedesktop {

// U+FFFD where there is no such character.
void appendUtf8(std::string& text, char32_t character);

// What is no character becomes U+FFFD.
std::string wellFormedUtf8(std::string_view text);

// Whether the first bytes show the encoding: a byte-order mark, or the '<' of an XML list in
// UTF-16.
bool showsItsEncoding(std::string_view bytes);

// Without a byte-order mark; UTF-16 is made UTF-8 where the first bytes show it.
std::string decodedText(std::string_view bytes);

} // namespace quorvel::freedesktop
