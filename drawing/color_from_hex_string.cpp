#include "drawing/color_from_hex_string.h"

#include <cstdint>
#include <string>

#include "drawing/scan_hex_int.h"

namespace quorvel {

using namespace platform;

namespace {

constexpr std::size_t shortLength = 7;
constexpr std::size_t longLength = 9;
constexpr std::u16string_view whiteDigits = u"FFFFFF";

struct Character {
    char32_t code;
    std::size_t length; // bytes
};

bool isSurrogate(char32_t code) {
    return code >= 0xD800 && code < 0xE000;
}

// Of a text that is not empty. A byte that is part of no character stands for one itself.
Character firstCharacter(std::string_view utf8) {
    constexpr Character damaged{0xFFFD, 1};
    constexpr char32_t leastCodes[] = {0, 0, 0x80, 0x800, 0x10000};
    const auto first = static_cast<unsigned char>(utf8.front());
    if (first < 0x80U) {
        return {first, 1};
    }
    const std::size_t length = first < 0xE0U ? 2 : first < 0xF0U ? 3 : 4;
    if (first < 0xC2U || first > 0xF4U || utf8.size() < length) {
        return damaged;
    }
    char32_t code = first & (0x7FU >> length);
    for (const char byte : utf8.substr(1, length - 1)) {
        const auto next = static_cast<unsigned char>(byte);
        if ((next & 0xC0U) != 0x80U) {
            return damaged;
        }
        code = code << 6U | (next & 0x3FU);
    }
    const bool isWhole = code >= leastCodes[length] && code <= 0x10FFFF && !isSurrogate(code);
    return isWhole ? Character{code, length} : damaged;
}

void append(std::u16string& units, char32_t code) {
    if (code < 0x10000) {
        units += static_cast<char16_t>(code);
        return;
    }
    units += static_cast<char16_t>(0xD7C0U + (code >> 10U));
    units += static_cast<char16_t>(0xDC00U + (code & 0x3FFU));
}

// No more of a long text than shows that it is too long.
std::u16string utf16Units(std::string_view utf8) {
    std::u16string units;
    while (!utf8.empty() && units.size() <= longLength) {
        const Character character = firstCharacter(utf8);
        append(units, character.code);
        utf8.remove_prefix(character.length);
    }
    return units;
}

CGFloat channel(std::uint32_t value, unsigned shift) {
    return static_cast<CGFloat>(value >> shift & 0xFFU) / 255.0;
}

} // namespace

UIColor colorFromHexString(std::optional<std::string_view> text) {
    const std::u16string units = utf16Units(text.value_or(""));
    const bool isColor = units.size() == shortLength || units.size() == longLength;
    const auto digits = isColor ? std::u16string_view(units).substr(1, 6) : whiteDigits;
    const std::uint32_t value = scanHexInt(digits).value_or(0);
    return {channel(value, 16), channel(value, 8), channel(value, 0), 1};
}

} // namespace quorvel
