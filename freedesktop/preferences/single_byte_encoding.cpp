#include "freedesktop/preferences/single_byte_encoding.h"

#include <algorithm>
#include <numeric>
#include <string>

#include "base/ascii_text.h"

namespace quorvel::freedesktop {
namespace {

constexpr std::size_t asciiSize = 0x80;

// Bytes 0x80 to 0x9F. The others are as in ISO-8859-1.
constexpr std::array<int, 32> windows1252Middle{
    0x20AC, -1,     0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, -1,     0x017D, -1,     -1,     0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, -1,     0x017E, 0x0178};

std::string plainName(std::string_view name) {
    std::string plain;
    for (const char c : name) {
        if (c != '-' && c != '_') {
            plain += c;
        }
    }
    return asciiLowerCase(plain);
}

SingleByteEncoding latin1() {
    SingleByteEncoding encoding{};
    std::iota(encoding.begin(), encoding.end(), 0);
    return encoding;
}

SingleByteEncoding ascii() {
    SingleByteEncoding encoding = latin1();
    std::fill(encoding.begin() + asciiSize, encoding.end(), -1);
    return encoding;
}

SingleByteEncoding windows1252() {
    SingleByteEncoding encoding = latin1();
    std::copy(windows1252Middle.begin(), windows1252Middle.end(), encoding.begin() + asciiSize);
    return encoding;
}

} // namespace

std::optional<SingleByteEncoding> singleByteEncodingNamed(std::string_view name) {
    const std::string plain = plainName(name);
    if (plain == "windows1252" || plain == "cp1252") {
        return windows1252();
    }
    if (plain == "iso88591" || plain == "latin1") {
        return latin1();
    }
    return plain == "usascii" || plain == "ascii" ? std::optional(ascii()) : std::nullopt;
}

bool isUtf8Name(std::string_view name) {
    return plainName(name) == "utf8";
}

} // namespace quorvel::freedesktop
