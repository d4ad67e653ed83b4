#include "drawing/scan_hex_int.h"

#include <algorithm>
#include <limits>

namespace quorvel {

namespace {

bool isWhiteSpaceOrNewline(char16_t unit) {
    constexpr std::u16string_view singles = u" \t\n\v\f\r\u0085\u00A0\u1680\u2028\u2029\u202F"
                                            u"\u205F\u3000";
    return singles.find(unit) != std::u16string_view::npos || (unit >= 0x2000 && unit <= 0x200B);
}

std::optional<std::uint32_t> digitValue(char16_t unit) {
    if (unit >= u'0' && unit <= u'9') {
        return unit - u'0';
    }
    if (unit >= u'a' && unit <= u'f') {
        return unit - u'a' + 10U;
    }
    if (unit >= u'A' && unit <= u'F') {
        return unit - u'A' + 10U;
    }
    return std::nullopt;
}

// Takes the mark from the front.
bool takeHexMark(std::u16string_view& text) {
    if (!text.starts_with(u"0x") && !text.starts_with(u"0X")) {
        return false;
    }
    text.remove_prefix(2);
    return true;
}

} // namespace

std::optional<std::uint32_t> scanHexInt(std::u16string_view text) {
    const auto* start = std::find_if_not(text.begin(), text.end(), isWhiteSpaceOrNewline);
    text.remove_prefix(static_cast<std::size_t>(start - text.begin()));
    const bool hasMark = takeHexMark(text);
    if (!hasMark && (text.empty() || !digitValue(text.front()))) {
        return std::nullopt;
    }
    std::uint32_t value = 0;
    bool tooLarge = false;
    for (const char16_t unit : text) {
        const auto digit = digitValue(unit);
        if (!digit) {
            break;
        }
        tooLarge = tooLarge || value >> 28U != 0;
        value = value << 4U | *digit;
    }
    return tooLarge ? std::numeric_limits<std::uint32_t>::max() : value;
}

} // namespace quorvel
