// A hash that is the same in every process and on every machine: FNV-1a, 64 bits.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace quorvel {

constexpr std::uint64_t stableHash(std::string_view text) {
    std::uint64_t hash = 0xcbf29ce484222325U;
    for (const char c : text) {
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3U;
    }
    return hash;
}

// The lowest digits, in lower case.
inline std::string hexDigits(std::uint64_t value, int digits) {
    std::string result(static_cast<std::size_t>(digits), '0');
    for (auto it = result.rbegin(); it != result.rend(); ++it) {
        *it = "0123456789abcdef"[value & 0xFU];
        value >>= 4U;
    }
    return result;
}

} // namespace quorvel
