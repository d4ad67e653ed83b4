#include "freedesktop/text/line_text.h"

#include <glib.h>

namespace quorvel::freedesktop {

namespace {

constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";
constexpr std::string_view ellipsis = "\xE2\x80\xA6";
constexpr gunichar zeroWidthJoiner = 0x200D;

bool isShownAsSpace(gunichar character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0) || character == 0x2028 ||
           character == 0x2029;
}

// Whether a character belongs to the one before it.
bool isMark(gunichar character) {
    return g_unichar_ismark(character) != 0 || character == zeroWidthJoiner ||
           (character >= 0x1F3FB && character <= 0x1F3FF) || // skin tones
           (character >= 0xE0020 && character <= 0xE007F);   // tags of a flag
}

// The character at the start of the text, and its bytes; a damaged one counts one byte.
struct Decoded {
    gunichar character = 0;
    std::size_t bytes = 1;
    bool damaged = false;
};

Decoded decode(std::string_view text) {
    if (text.front() == '\0')
        return {};
    const gunichar character =
        g_utf8_get_char_validated(text.data(), static_cast<gssize>(text.size()));
    if (character == static_cast<gunichar>(-1) || character == static_cast<gunichar>(-2))
        return {0, 1, true};
    return {character, static_cast<std::size_t>(g_unichar_to_utf8(character, nullptr)), false};
}

} // namespace

std::string lineText(std::string_view text) {
    std::string line;
    std::string_view rest = text.substr(0, lineTextMaximumBytes);
    line.reserve(rest.size());
    bool cut = rest.size() < text.size();
    std::size_t characters = 0;
    std::size_t marks = 0;
    bool joined = false;
    while (!rest.empty()) {
        const Decoded next = decode(rest);
        // What was cut in the middle of a character is no damage of the text.
        if (next.damaged && cut && rest.size() < 4)
            break;
        const bool belongsToLast =
            characters > 0 && !next.damaged && (joined || isMark(next.character));
        marks = belongsToLast ? marks + 1 : 0;
        characters += belongsToLast ? 0 : 1;
        if (characters > lineTextMaximumCharacters) {
            cut = true;
            break;
        }
        if (next.damaged)
            line += replacementCharacter;
        else if (isShownAsSpace(next.character))
            line += ' ';
        else if (marks <= lineTextMaximumMarks)
            line += rest.substr(0, next.bytes);
        joined = next.character == zeroWidthJoiner;
        rest.remove_prefix(next.bytes);
    }
    if (cut)
        line += ellipsis;
    return line;
}

} // namespace quorvel::freedesktop
