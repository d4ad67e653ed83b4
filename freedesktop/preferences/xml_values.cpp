#include "freedesktop/preferences/xml_values.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <string>

#include <locale.h>

#include "base/ascii_text.h"

namespace quorvel::freedesktop {
namespace {

using platform::NSDate;
using platform::PropertyListData;
using platform::PropertyListValue;

constexpr std::string_view whiteSpace = " \t\r\n";

// The whole text is the number.
std::optional<std::uint64_t> number(std::string_view digits, int base) {
    std::uint64_t value = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value, base);
    if (error != std::errc() || stop != end) {
        return std::nullopt;
    }
    return value;
}

bool isHexadecimal(std::string_view text) {
    return text.substr(0, 2) == "0x" || text.substr(0, 2) == "0X";
}

// Removes `count` digits from the front.
std::optional<int> takeDigits(std::string_view& text, std::size_t count) {
    const auto value = text.size() < count ? std::nullopt : number(text.substr(0, count), 10);
    text.remove_prefix(std::min(count, text.size()));
    return value ? std::optional(static_cast<int>(*value)) : std::nullopt;
}

bool take(std::string_view& text, char c) {
    if (text.empty() || text.front() != c) {
        return false;
    }
    text.remove_prefix(1);
    return true;
}

std::optional<std::chrono::sys_days> takeDay(std::string_view& text) {
    const auto year = takeDigits(text, 4);
    const auto month = take(text, '-') ? takeDigits(text, 2) : std::nullopt;
    const auto day = take(text, '-') ? takeDigits(text, 2) : std::nullopt;
    if (!year || !month || !day) {
        return std::nullopt;
    }
    const std::chrono::year_month_day date{std::chrono::year(*year),
                                           std::chrono::month(static_cast<unsigned>(*month)),
                                           std::chrono::day(static_cast<unsigned>(*day))};
    return date.ok() ? std::optional(std::chrono::sys_days(date)) : std::nullopt;
}

std::optional<std::chrono::seconds> takeTimeOfDay(std::string_view& text) {
    constexpr int tooLarge = 99; // stands for a missing number
    const int hour = takeDigits(text, 2).value_or(tooLarge);
    const int minute = take(text, ':') ? takeDigits(text, 2).value_or(tooLarge) : tooLarge;
    const int second = take(text, ':') ? takeDigits(text, 2).value_or(tooLarge) : tooLarge;
    if (hour > 23 || minute > 59 || second > 59) {
        return std::nullopt;
    }
    return std::chrono::hours(hour) + std::chrono::minutes(minute) + std::chrono::seconds(second);
}

// The six bits of a letter of the alphabet.
std::optional<unsigned> base64Digit(char c) {
    static constexpr std::string_view alphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    const std::size_t at = alphabet.find(c);
    return at == alphabet.npos ? std::nullopt : std::optional(static_cast<unsigned>(at));
}

locale_t numbersWithPoint() {
    static const struct Locale {
        Locale() = default;
        ~Locale() { freelocale(value); }
        Locale(const Locale&) = delete;
        Locale& operator=(const Locale&) = delete;
        locale_t value = newlocale(LC_NUMERIC_MASK, "C", nullptr);
    } locale;
    return locale.value;
}

} // namespace

std::optional<PropertyListValue> integerOfText(std::string_view text) {
    text = trimmed(text, whiteSpace);
    const bool negative = take(text, '-');
    if (!negative) {
        take(text, '+');
    }
    text = trimmed(text, whiteSpace);
    const bool hexadecimal = isHexadecimal(text);
    const auto magnitude = number(text.substr(hexadecimal ? 2 : 0), hexadecimal ? 16 : 10);
    constexpr std::uint64_t smallest = std::uint64_t{1} << 63U; // without its sign
    if (!magnitude || (negative && *magnitude > smallest)) {
        return std::nullopt;
    }
    if (!negative && *magnitude >= smallest) {
        return PropertyListValue{*magnitude};
    }
    return PropertyListValue{static_cast<std::int64_t>(negative ? 0 - *magnitude : *magnitude)};
}

std::optional<PropertyListValue> realOfText(std::string_view text) {
    const std::string number(trimmed(text, whiteSpace));
    char* end = nullptr;
    const double value = strtod_l(number.c_str(), &end, numbersWithPoint());
    if (number.empty() || end != number.c_str() + number.size()) {
        return std::nullopt;
    }
    return PropertyListValue{value};
}

std::string textOfReal(double number) {
    std::array<char, 400> text{}; // the largest double has 309 digits, the smallest 324 zeros
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed).ptr;
    return {text.data(), end};
}

std::optional<PropertyListValue> dateOfText(std::string_view text) {
    text = trimmed(text, whiteSpace);
    const auto day = takeDay(text);
    const auto time = take(text, 'T') ? takeTimeOfDay(text) : std::nullopt;
    if (!day || !time || text != "Z") {
        return std::nullopt;
    }
    const std::chrono::sys_seconds moment = *day + *time;
    return PropertyListValue{platform::dateWithTimeIntervalSince1970(
        static_cast<double>(moment.time_since_epoch().count()))};
}

PropertyListData dataOfText(std::string_view text) {
    PropertyListData bytes;
    unsigned bits = 0;
    int count = 0; // of bits that are not yet part of a byte
    for (const char c : text.substr(0, text.find('='))) {
        const auto digit = base64Digit(c);
        if (!digit) {
            continue;
        }
        bits = (bits << 6U | *digit) & 0xFFFFU;
        count += 6;
        if (count >= 8) {
            count -= 8;
            bytes.push_back(static_cast<std::byte>(bits >> static_cast<unsigned>(count)));
        }
    }
    return bytes;
}

} // namespace quorvel::freedesktop
