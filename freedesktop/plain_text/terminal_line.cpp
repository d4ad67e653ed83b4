#include "freedesktop/plain_text/terminal_line.h"

#include "base/utf8.h"
#include "freedesktop/plain_text/characters.h"

namespace quorvel::freedesktop {

std::string terminalLine(std::string_view text) {
    std::string line;
    line.reserve(text.size());
    while (!text.empty()) {
        const DecodedCharacter next = decodeCharacter(text);
        text.remove_prefix(next.length);
        const char32_t character = next.character.value_or(replacementCharacter);
        if (character == '\t' || isLineEnd(character)) {
            line += ' ';
        } else if (!changesDirection(character)) {
            appendCharacter(line, isControlCharacter(character) ? replacementCharacter : character);
        }
    }
    return line;
}

} // namespace quorvel::freedesktop
