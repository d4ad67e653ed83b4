// The characters of a text in UTF-8 that may be damaged, and what they do where lines are printed.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quorvel::freedesktop {

struct DecodedCharacter {
    std::optional<char32_t> character; // absent: damaged bytes
    std::size_t length = 1;            // bytes taken
};

// The first character of a text that is not empty. Damage takes one byte at a time, so that the
// next call decodes what follows it from its start.
DecodedCharacter decodeCharacter(std::string_view text);

void appendCharacter(std::string& text, char32_t character);

// C0, DEL and C1 (U+0000 to U+001F, U+007F to U+009F): a terminal acts upon them.
bool isControlCharacter(char32_t character);

// What ends a line for one program or another: LF, VT, FF, CR, NEL, U+2028, U+2029.
bool isLineEnd(char32_t character);

// The embeddings, overrides and isolates (U+202A to U+202E, U+2066 to U+2069): one that is left
// open turns around what follows the text. The marks U+061C, U+200E and U+200F are not among
// them: they do no more than a letter of their direction, and texts need them.
bool turnsDirection(char32_t character);

} // namespace quorvel::freedesktop
