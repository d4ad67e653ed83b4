#include "shells/headless/color_text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

#include "base/ascii_text.h"

namespace quorvel::headless {

using platform::CGFloat;
using platform::UIColor;

namespace {

unsigned byteOf(CGFloat component) {
    // This form of the comparison turns NaN into 0.
    if (!(component > 0)) {
        return 0;
    }
    return component >= 1 ? 255U : static_cast<unsigned>(std::lround(component * 255));
}

std::optional<UIColor> parseHexadecimal(std::string_view digits) {
    const bool isShort = digits.size() == 3;
    if (!isShort && digits.size() != 6 && digits.size() != 8) {
        return std::nullopt;
    }
    std::array<unsigned, 4> bytes{0, 0, 0, 255};
    const std::size_t width = isShort ? 1 : 2;
    for (std::size_t index = 0; index < digits.size(); ++index) {
        const std::optional<int> value = hexDigitValue(digits[index]);
        if (!value) {
            return std::nullopt;
        }
        const auto digit = static_cast<unsigned>(*value);
        unsigned& byte = bytes[index / width];
        const bool isFirst = index % width == 0;
        byte = isShort ? digit * 17 : (isFirst ? digit : byte * 16 + digit);
    }
    return UIColor{bytes[0] / 255.0, bytes[1] / 255.0, bytes[2] / 255.0, bytes[3] / 255.0};
}

// The basic colours of style sheets, and a few more that users may try.
using NamedColor = std::pair<std::string_view, std::string_view>;
constexpr std::array<NamedColor, 26> namedColors{{
    {"black", "000000"},    {"silver", "c0c0c0"},        {"gray", "808080"}, {"grey", "808080"},
    {"white", "ffffff"},    {"maroon", "800000"},        {"red", "ff0000"},  {"purple", "800080"},
    {"fuchsia", "ff00ff"},  {"green", "008000"},         {"lime", "00ff00"}, {"olive", "808000"},
    {"yellow", "ffff00"},   {"navy", "000080"},          {"blue", "0000ff"}, {"teal", "008080"},
    {"aqua", "00ffff"},     {"orange", "ffa500"},        {"pink", "ffc0cb"}, {"brown", "a52a2a"},
    {"cyan", "00ffff"},     {"magenta", "ff00ff"},       {"gold", "ffd700"}, {"indigo", "4b0082"},
    {"darkgray", "a9a9a9"}, {"transparent", "00000000"},
}};

} // namespace

std::string colorText(const UIColor& color) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text = "#";
    for (const CGFloat component : {color.red, color.green, color.blue, color.alpha}) {
        const unsigned byte = byteOf(component);
        text += digits[byte / 16];
        text += digits[byte % 16];
    }
    return text;
}

std::optional<UIColor> parseColor(std::string_view text) {
    if (text.starts_with('#')) {
        return parseHexadecimal(text.substr(1));
    }
    const auto* color = std::ranges::find(namedColors, asciiLowerCase(text), &NamedColor::first);
    return color != namedColors.end() ? parseHexadecimal(color->second) : std::nullopt;
}

} // namespace quorvel::headless
