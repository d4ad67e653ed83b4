#include "freedesktop/text/line_text.h"

#include <glib.h>

#include "base/utf8.h"

namespace quorvel::freedesktop {

namespace {

constexpr std::string_view ellipsis = "\xE2\x80\xA6";
constexpr char32_t zeroWidthJoiner = 0x200D;
constexpr std::size_t longestCharacter = 4; // bytes

bool isShownAsSpace(char32_t character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0) || character == 0x2028 ||
           character == 0x2029;
}

// Whether a character belongs to the one before it.
bool isMark(char32_t character) {
    return g_unichar_ismark(character) != 0 || character == zeroWidthJoiner ||
           (character >= 0x1F3FB && character <= 0x1F3FF) || // skin tones
           (character >= 0xE0020 && character <= 0xE007F);   // tags of a flag
}

} // namespace

std::string lineText(std::string_view text) {
    std::string line;
    std::string_view rest = text.substr(0, lineTextMaximumBytes);
    line.reserve(rest.size());
    bool isTruncated = rest.size() < text.size();
    std::size_t characters = 0;
    std::size_t marks = 0;
    bool isJoined = false;
    while (!rest.empty()) {
        const DecodedCharacter next = decodeCharacter(rest);
        // The limit may be in the middle of a character, which is not invalid then.
        if (!next.character && isTruncated && rest.size() < longestCharacter)
            break;
        const bool belongsToLast =
            characters > 0 && next.character && (isJoined || isMark(*next.character));
        marks = belongsToLast ? marks + 1 : 0;
        characters += belongsToLast ? 0 : 1;
        if (characters > lineTextMaximumCharacters) {
            isTruncated = true;
            break;
        }
        if (!next.character)
            appendCharacter(line, replacementCharacter);
        else if (isShownAsSpace(*next.character))
            line += ' ';
        else if (marks <= lineTextMaximumMarks)
            line += rest.substr(0, next.length);
        isJoined = next.character == zeroWidthJoiner;
        rest.remove_prefix(next.length);
    }
    if (isTruncated)
        line += ellipsis;
    return line;
}

} // namespace quorvel::freedesktop
