// Classes of characters, by what they do where lines are printed.
#pragma once

namespace quorvel::freedesktop {

// C0, DEL and C1 (U+0000 to U+001F, U+007F to U+009F): a terminal acts upon them.
bool isControlCharacter(char32_t character);

// What ends a line for one program or another: LF, VT, FF, CR, NEL, U+2028, U+2029.
bool isLineEnd(char32_t character);

// The embeddings, overrides and isolates (U+202A to U+202E, U+2066 to U+2069): one that is left
// open turns around what follows the text. The marks U+061C, U+200E and U+200F are not among
// them: they do no more than a letter of their direction, and texts need them.
bool turnsDirection(char32_t character);

} // namespace quorvel::freedesktop
