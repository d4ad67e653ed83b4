// Classes and values of ASCII characters, in every locale the same.
#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

namespace quorvel {

constexpr bool isAsciiDigit(char c) {
    return c >= '0' && c <= '9';
}

constexpr bool isAsciiLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

constexpr bool isAsciiLetterOrDigit(char c) {
    return isAsciiLetter(c) || isAsciiDigit(c);
}

// The value of a hexadecimal digit in upper or lower case. Absent: the character is not a digit.
constexpr std::optional<int> hexDigitValue(char c) {
    if (isAsciiDigit(c)) {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    return c >= 'A' && c <= 'F' ? std::optional(c - 'A' + 10) : std::nullopt;
}

// A to Z as a to z. All other bytes stay as they are.
inline std::string asciiLowerCase(std::string_view text) {
    std::string result(text);
    for (char& c : result) {
        if (c >= 'A' && c <= 'Z') {
            c = static_cast<char>(c - 'A' + 'a');
        }
    }
    return result;
}

// a to z as A to Z. All other bytes stay as they are.
inline std::string asciiUpperCase(std::string_view text) {
    std::string result(text);
    for (char& c : result) {
        if (c >= 'a' && c <= 'z') {
            c = static_cast<char>(c - 'a' + 'A');
        }
    }
    return result;
}

// Without the characters at its start that are among `unwanted`.
constexpr std::string_view trimmedStart(std::string_view text, std::string_view unwanted) {
    text.remove_prefix(std::min(text.find_first_not_of(unwanted), text.size()));
    return text;
}

// Without the characters at its start and end that are among `unwanted`.
constexpr std::string_view trimmed(std::string_view text, std::string_view unwanted) {
    text = trimmedStart(text, unwanted);
    return text.substr(0, text.find_last_not_of(unwanted) + 1);
}

} // namespace quorvel
