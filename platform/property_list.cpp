// The conversions are written by hand because the standard library's depend on the locale, take
// other white space, and read words and other bases as numbers.
#include "platform/property_list.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <type_traits>

#include "base/ascii_text.h"
#include "base/number_text.h"

namespace quorvel::platform {

namespace {

unsigned byteAt(std::string_view text, std::size_t index) {
    return index < text.size() ? static_cast<unsigned char>(text[index]) : 0xFFU;
}

// The bytes of the white space that the text starts with, or 0. White space is U+0000 to U+0020,
// U+007F to U+00A0, U+2000 to U+200B and U+3000.
std::size_t whiteSpaceLength(std::string_view text) {
    if (text.empty()) {
        return 0;
    }
    const unsigned first = byteAt(text, 0);
    const unsigned second = byteAt(text, 1);
    const unsigned third = byteAt(text, 2);
    if (first <= 0x20U || first == 0x7FU) {
        return 1;
    }
    if (first == 0xC2U && second >= 0x80U && second <= 0xA0U) {
        return 2;
    }
    if (first == 0xE2U && second == 0x80U && third >= 0x80U && third <= 0x8BU) {
        return 3;
    }
    if (first == 0xE3U && second == 0x80U && third == 0x80U) {
        return 3;
    }
    return 0;
}

std::string_view withoutLeadingWhiteSpace(std::string_view text) {
    while (const std::size_t length = whiteSpaceLength(text)) {
        text.remove_prefix(length);
    }
    return text;
}

// Takes one sign from the front; true for a minus.
bool takeSign(std::string_view& text) {
    if (text.empty() || (text.front() != '+' && text.front() != '-')) {
        return false;
    }
    const bool negative = text.front() == '-';
    text.remove_prefix(1);
    return negative;
}

// White space may precede and follow the sign.
template <typename Integer>
Integer integerFromString(std::string_view text) {
    text = withoutLeadingWhiteSpace(text);
    const bool negative = takeSign(text);
    text = withoutLeadingWhiteSpace(text);
    constexpr Integer largest = std::numeric_limits<Integer>::max();
    constexpr Integer smallest = std::numeric_limits<Integer>::min();
    Integer result = 0;
    for (; !text.empty() && isAsciiDigit(text.front()); text.remove_prefix(1)) {
        const auto digit = static_cast<Integer>(text.front() - '0');
        // Negative numbers are gathered as such: the smallest has no positive twin.
        if (negative ? result < (smallest + digit) / 10 : result > (largest - digit) / 10) {
            return negative ? smallest : largest;
        }
        result = static_cast<Integer>(negative ? result * 10 - digit : result * 10 + digit);
    }
    return result;
}

double doubleFromString(std::string_view text) {
    text = withoutLeadingWhiteSpace(text);
    const bool negative = takeSign(text);
    if (text.starts_with('-')) {
        return 0;
    }
    const auto number = leadingNumber(text);
    const double magnitude = number ? number->value : 0;
    return negative ? -magnitude : magnitude;
}

float floatFromDouble(double number) {
    if (std::abs(number) > static_cast<double>(std::numeric_limits<float>::max())) {
        return std::copysign(std::numeric_limits<float>::infinity(), number < 0 ? -1.0F : 1.0F);
    }
    return static_cast<float>(number);
}

// Letters count only before sign and digits.
bool boolFromString(std::string_view text) {
    text = withoutLeadingWhiteSpace(text);
    if (!text.empty() && std::string_view("YyTt").find(text.front()) != std::string_view::npos) {
        return true;
    }
    takeSign(text);
    const std::size_t digit = text.find_first_not_of('0');
    return digit != std::string_view::npos && isAsciiDigit(text[digit]);
}

// Truncates towards zero and stops at the ends of the range; not-a-number is 0. The platform
// leaves both cases open.
template <typename Integer>
Integer integerFromDouble(double number) {
    if (std::isnan(number)) {
        return 0;
    }
    // The largest integer may have no double, the smallest always has one.
    constexpr auto smallest = static_cast<double>(std::numeric_limits<Integer>::min());
    if (number >= -smallest) {
        return std::numeric_limits<Integer>::max();
    }
    return number <= smallest ? std::numeric_limits<Integer>::min() : static_cast<Integer>(number);
}

template <typename Integer>
Integer integerFrom(const PropertyListValue& value) {
    return std::visit(
        [](const auto& held) -> Integer {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, double>) {
                return integerFromDouble<Integer>(held);
            } else if constexpr (std::is_arithmetic_v<Held>) {
                return static_cast<Integer>(held); // the low bits of a wider one
            } else if constexpr (std::is_same_v<Held, std::string>) {
                return integerFromString<Integer>(held);
            } else {
                return 0;
            }
        },
        value.value);
}

std::string textOfDouble(double number) {
    constexpr int digits = 16;
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), number,
                                   std::chars_format::general, digits)
                         .ptr;
    return {text.data(), end};
}

} // namespace

const PropertyListValue* objectForKey(const PropertyListDictionary& dictionary,
                                      std::string_view key) {
    const auto found = dictionary.find(key);
    return found == dictionary.end() ? nullptr : &found->second;
}

std::int32_t intValue(const PropertyListValue& value) {
    return integerFrom<std::int32_t>(value);
}

std::int64_t integerValue(const PropertyListValue& value) {
    return integerFrom<std::int64_t>(value);
}

float floatValue(const PropertyListValue& value) {
    return std::visit(
        [](const auto& held) -> float {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, double>) {
                return floatFromDouble(held);
            } else if constexpr (std::is_arithmetic_v<Held>) {
                return static_cast<float>(held);
            } else if constexpr (std::is_same_v<Held, std::string>) {
                return floatFromDouble(doubleFromString(held));
            } else {
                return 0;
            }
        },
        value.value);
}

bool boolValue(const PropertyListValue& value) {
    return std::visit(
        [](const auto& held) -> bool {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_arithmetic_v<Held>) {
                return held != Held{};
            } else if constexpr (std::is_same_v<Held, std::string>) {
                return boolFromString(held);
            } else {
                return false;
            }
        },
        value.value);
}

std::optional<std::string> stringValue(const PropertyListValue& value) {
    return std::visit(
        [](const auto& held) -> std::optional<std::string> {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, std::string>) {
                return held;
            } else if constexpr (std::is_same_v<Held, double>) {
                return textOfDouble(held);
            } else if constexpr (std::is_arithmetic_v<Held>) {
                return std::to_string(held);
            } else {
                return std::nullopt;
            }
        },
        value.value);
}

} // namespace quorvel::platform
