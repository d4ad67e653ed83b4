#include "freedesktop/plain_text/characters.h"

namespace quorvel::freedesktop {

bool isControlCharacter(char32_t character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

bool isLineEnd(char32_t character) {
    return (character >= 0x0A && character <= 0x0D) || character == 0x85 || character == 0x2028 ||
           character == 0x2029;
}

bool changesDirection(char32_t character) {
    return (character >= 0x202A && character <= 0x202E) ||
           (character >= 0x2066 && character <= 0x2069);
}

} // namespace quorvel::freedesktop
