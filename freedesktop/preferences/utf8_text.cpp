#include "freedesktop/preferences/utf8_text.h"

#include <cstdint>

namespace quorvel::freedesktop {
namespace {

constexpr char32_t replacement = 0xFFFD;

unsigned byteAt(std::string_view text, std::size_t index) {
    return static_cast<unsigned char>(text[index]);
}

struct Decoded {
    char32_t character = replacement;
    std::size_t length = 1;
};

Decoded decodeFirst(std::string_view text) {
    const unsigned first = byteAt(text, 0);
    if (first < 0x80) {
        return {first, 1};
    }
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || text.size() < length) {
        return {};
    }
    char32_t character = first & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        const unsigned next = byteAt(text, i);
        if ((next & 0xC0U) != 0x80) {
            return {};
        }
        character = (character << 6U) | (next & 0x3FU);
    }
    static constexpr char32_t least[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = character >= 0xD800 && character < 0xE000;
    if (character < least[length] || surrogate || character > 0x10FFFF) {
        return {};
    }
    return {character, length};
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
        if (character >= 0xD800 && character < 0xDC00 && i + 3 < bytes.size()) {
            const char32_t low = unitAt(i + 2);
            if (low >= 0xDC00 && low < 0xE000) {
                character = 0x10000 + ((character - 0xD800) << 10U) + (low - 0xDC00);
                i += 2;
            }
        }
        appendUtf8(text, character);
    }
    return text;
}

struct Encoding {
    enum Kind { none, utf8, utf16Big, utf16Little };
    Kind kind = none;
    std::size_t markSize = 0;
};

// An XML list may lack the mark that UTF-16 should have.
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

} // namespace

void appendUtf8(std::string& text, char32_t character) {
    if (character > 0x10FFFF || (character >= 0xD800 && character < 0xE000)) {
        character = replacement;
    }
    const auto put = [&text](char32_t byte) { text += static_cast<char>(byte); };
    if (character < 0x80) {
        put(character);
    } else if (character < 0x800) {
        put(0xC0U | character >> 6U);
        put(0x80U | (character & 0x3FU));
    } else if (character < 0x10000) {
        put(0xE0U | character >> 12U);
        put(0x80U | (character >> 6U & 0x3FU));
        put(0x80U | (character & 0x3FU));
    } else {
        put(0xF0U | character >> 18U);
        put(0x80U | (character >> 12U & 0x3FU));
        put(0x80U | (character >> 6U & 0x3FU));
        put(0x80U | (character & 0x3FU));
    }
}

std::string wellFormedUtf8(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const Decoded decoded = decodeFirst(text);
        appendUtf8(result, decoded.character);
        text.remove_prefix(decoded.length);
    }
    return result;
}

bool showsItsEncoding(std::string_view bytes) {
    return encodingOf(bytes).kind != Encoding::none;
}

std::string decodedText(std::string_view bytes) {
    const Encoding encoding = encodingOf(bytes);
    bytes.remove_prefix(encoding.markSize);
    const bool isUtf16 =
        encoding.kind == Encoding::utf16Big || encoding.kind == Encoding::utf16Little;
    return isUtf16 ? fromUtf16(bytes, encoding.kind == Encoding::utf16Big) : wellFormedUtf8(bytes);
}

} // namespace quorvel::freedesktop
