#include "base/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>

#include "base/ascii_text.h"
#include "base/decimal_conversion.h"

namespace quorvel {

namespace {

std::size_t digitsAt(std::string_view text, std::size_t start) {
    const std::string_view rest = text.substr(std::min(start, text.size()));
    const auto* const end = std::find_if_not(rest.data(), rest.data() + rest.size(), isAsciiDigit);
    return static_cast<std::size_t>(end - rest.data());
}

// 0: the text starts with no number.
std::size_t numberLength(std::string_view text) {
    std::size_t length = text.starts_with('-') ? 1 : 0;
    std::size_t digits = digitsAt(text, length);
    length += digits;
    if (length < text.size() && text[length] == '.') {
        const std::size_t fraction = digitsAt(text, length + 1);
        digits += fraction;
        length += 1 + fraction;
    }
    if (digits == 0) {
        return 0;
    }
    if (length < text.size() && (text[length] == 'e' || text[length] == 'E')) {
        const bool hasSign =
            length + 1 < text.size() && (text[length + 1] == '+' || text[length + 1] == '-');
        const std::size_t exponent = length + (hasSign ? 2 : 1);
        const std::size_t exponentDigits = digitsAt(text, exponent);
        length = exponentDigits > 0 ? exponent + exponentDigits : length;
    }
    return length;
}

template <class Number>
concept HasFromChars = requires(const char* text, Number& number) {
    std::from_chars(text, text, number);
};

// Not every standard library has std::from_chars for double, and it leaves open which end of the
// range a number is beyond.
template <class Number>
Number nearest(std::string_view number) {
    if constexpr (HasFromChars<Number>) {
        Number value = 0;
        const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
        if (result.ec == std::errc()) {
            return value;
        }
    }
    return convertedDecimal(number);
}

// Only its digits before the exponent count.
bool isZero(std::string_view number) {
    return number.substr(0, number.find_first_of("eE")).find_first_of("123456789") ==
           std::string_view::npos;
}

} // namespace

std::optional<LeadingNumber> leadingNumber(std::string_view text) {
    const std::size_t length = numberLength(text);
    if (length == 0) {
        return std::nullopt;
    }
    return LeadingNumber{nearest<double>(text.substr(0, length)), length};
}

std::optional<double> wholeNumber(std::string_view text) {
    const auto number = leadingNumber(text);
    if (!number || number->length != text.size() || !std::isfinite(number->value)) {
        return std::nullopt;
    }
    const bool hasVanished = number->value == 0 && !isZero(text);
    return hasVanished ? std::nullopt : std::optional(number->value);
}

} // namespace quorvel
