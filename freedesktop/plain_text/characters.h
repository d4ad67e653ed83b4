// Classifies characters by their effect on printed lines.
#pragma once

namespace quorvel::freedesktop {

// C0, DEL and C1 (U+0000 to U+001F, U+007F to U+009F), which control a terminal.
bool isControlCharacter(char32_t character);

// The characters that end a line in at least some programs: LF, VT, FF, CR, NEL, U+2028, U+2029.
bool isLineEnd(char32_t character);

// Embeddings, overrides and isolates (U+202A to U+202E, U+2066 to U+2069): an unclosed one changes
// the direction of the text behind. The marks U+061C, U+200E and U+200F are not included: they act
// like a letter of their direction, and texts need them.
bool changesDirection(char32_t character);

} // namespace quorvel::freedesktop
