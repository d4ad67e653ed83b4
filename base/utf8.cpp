#include "base/utf8.h"

namespace quorvel {

DecodedCharacter decodeCharacter(std::string_view text) {
    const auto byteAt = [text](std::size_t index) {
        return static_cast<unsigned char>(text[index]);
    };
    const unsigned char lead = byteAt(0);
    if (lead < 0x80) {
        return {lead, 1};
    }
    const std::size_t length = lead >= 0xF0 ? 4 : (lead >= 0xE0 ? 3 : 2);
    if (lead < 0xC2 || lead > 0xF4 || text.size() < length) {
        return {};
    }
    char32_t character = lead & (0xFFU >> (length + 1));
    for (std::size_t index = 1; index < length; ++index) {
        if ((byteAt(index) & 0xC0U) != 0x80U) {
            return {};
        }
        character = (character << 6U) | (byteAt(index) & 0x3FU);
    }
    const bool isOverlong =
        (length == 3 && character < 0x800) || (length == 4 && character < 0x10000);
    if (isOverlong || !isEncodable(character)) {
        return {};
    }
    return {character, length};
}

bool isEncodable(char32_t character) {
    return !isHighSurrogate(character) && !isLowSurrogate(character) && character <= 0x10FFFF;
}

void appendCharacter(std::string& text, char32_t character) {
    const auto append = [&text](char32_t byte) { text += static_cast<char>(byte); };
    if (character < 0x80) {
        append(character);
    } else if (character < 0x800) {
        append(0xC0U | (character >> 6U));
        append(0x80U | (character & 0x3FU));
    } else if (character < 0x10000) {
        append(0xE0U | (character >> 12U));
        append(0x80U | ((character >> 6U) & 0x3FU));
        append(0x80U | (character & 0x3FU));
    } else {
        append(0xF0U | (character >> 18U));
        append(0x80U | ((character >> 12U) & 0x3FU));
        append(0x80U | ((character >> 6U) & 0x3FU));
        append(0x80U | (character & 0x3FU));
    }
}

void appendCharacterOrReplacement(std::string& text, char32_t character) {
    appendCharacter(text, isEncodable(character) ? character : replacementCharacter);
}

std::string wellFormedUtf8(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const DecodedCharacter next = decodeCharacter(text);
        appendCharacter(result, next.character.value_or(replacementCharacter));
        text.remove_prefix(next.length);
    }
    return result;
}

} // namespace quorvel
