#include "freedesktop/preferences/text_encoding.h"

#include <cstdint>

#include "base/utf8.h"

namespace quorvel::freedesktop {
namespace {

unsigned byteAt(std::string_view text, std::size_t index) {
    return static_cast<unsigned char>(text[index]);
}

std::string fromUtf16(std::string_view bytes, bool bigEndian) {
    const auto unitAt = [&](std::size_t index) {
        const unsigned a = byteAt(bytes, index);
        const unsigned b = byteAt(bytes, index + 1);
        return static_cast<char32_t>(bigEndian ? a << 8U | b : b << 8U | a);
    };
    std::string text;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        char32_t character = unitAt(i);
        if (isHighSurrogate(character) && i + 3 < bytes.size() && isLowSurrogate(unitAt(i + 2))) {
            character = joinSurrogates(character, unitAt(i + 2));
            i += 2;
        }
        appendCharacterOrReplacement(text, character);
    }
    return text;
}

void appendUnit(std::string& bytes, char32_t unit, bool bigEndian) {
    const char high = static_cast<char>(unit >> 8U);
    const char low = static_cast<char>(unit & 0xFFU);
    bytes += bigEndian ? high : low;
    bytes += bigEndian ? low : high;
}

std::string toUtf16(std::string_view text, bool bigEndian) {
    std::string bytes;
    while (!text.empty()) {
        const DecodedCharacter decoded = decodeCharacter(text);
        const char32_t character = decoded.character.value_or(replacementCharacter);
        if (character > 0xFFFF) {
            appendUnit(bytes, 0xD800 + ((character - 0x10000) >> 10U), bigEndian);
            appendUnit(bytes, 0xDC00 + (character & 0x3FFU), bigEndian);
        } else {
            appendUnit(bytes, character, bigEndian);
        }
        text.remove_prefix(decoded.length);
    }
    return bytes;
}

struct Encoding {
    enum Kind { none, utf8, utf16Big, utf16Little };
    Kind kind = none;
    std::size_t markSize = 0;
};

// An XML list in UTF-16 may lack its byte-order mark.
Encoding encodingOf(std::string_view bytes) {
    static constexpr std::string_view bigAngle("\0<", 2);
    static constexpr std::string_view littleAngle("<\0", 2);
    const std::string_view start = bytes.substr(0, 2);
    if (bytes.substr(0, 3) == "\xEF\xBB\xBF") {
        return {Encoding::utf8, 3};
    }
    if (start == "\xFE\xFF" || start == bigAngle) {
        return {Encoding::utf16Big, start == bigAngle ? 0U : 2U};
    }
    if (start == "\xFF\xFE" || start == littleAngle) {
        return {Encoding::utf16Little, start == littleAngle ? 0U : 2U};
    }
    return {};
}

bool isUtf16(const Encoding& encoding) {
    return encoding.kind == Encoding::utf16Big || encoding.kind == Encoding::utf16Little;
}

} // namespace

bool hasDetectableEncoding(std::string_view bytes) {
    return encodingOf(bytes).kind != Encoding::none;
}

std::string decodedText(std::string_view bytes) {
    const Encoding encoding = encodingOf(bytes);
    bytes.remove_prefix(encoding.markSize);
    return isUtf16(encoding) ? fromUtf16(bytes, encoding.kind == Encoding::utf16Big)
                             : wellFormedUtf8(bytes);
}

std::string encodedLike(std::string_view bytes, std::string_view text) {
    const Encoding encoding = encodingOf(bytes);
    const std::string mark(bytes.substr(0, encoding.markSize));
    return mark + (isUtf16(encoding) ? toUtf16(text, encoding.kind == Encoding::utf16Big)
                                     : std::string(text));
}

} // namespace quorvel::freedesktop
