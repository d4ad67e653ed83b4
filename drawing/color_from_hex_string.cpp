#include "drawing/color_from_hex_string.h"

#include <cstdint>
#include <string>

#include "base/utf8.h"
#include "drawing/scan_hex_int.h"

namespace quorvel {

using namespace platform;

namespace {

constexpr std::size_t shortLength = 7;
constexpr std::size_t longLength = 9;
constexpr std::u16string_view whiteDigits = u"FFFFFF";

void append(std::u16string& units, char32_t code) {
    if (code < 0x10000) {
        units += static_cast<char16_t>(code);
        return;
    }
    units += static_cast<char16_t>(0xD7C0U + (code >> 10U));
    units += static_cast<char16_t>(0xDC00U + (code & 0x3FFU));
}

// Stops as soon as the text is known to be too long.
std::u16string utf16Units(std::string_view utf8) {
    std::u16string units;
    while (!utf8.empty() && units.size() <= longLength) {
        const DecodedCharacter next = decodeCharacter(utf8);
        append(units, next.character.value_or(replacementCharacter));
        utf8.remove_prefix(next.length);
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
