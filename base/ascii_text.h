// Letters and digits of ASCII, whatever the locale is.
#pragma once

#include <string>
#include <string_view>

namespace quorvel {

constexpr bool isAsciiDigit(char c) {
    return c >= '0' && c <= '9';
}

// The value of a hexadecimal digit in upper or lower case; -1 for any other byte.
constexpr int hexDigitValue(char c) {
    if (isAsciiDigit(c)) {
        return c - '0';
    }
    const char lower = c >= 'A' && c <= 'F' ? static_cast<char>(c - 'A' + 'a') : c;
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
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

} // namespace quorvel
