// A walk over a binary property list before the library sees it: a few hundred bytes of shared
// references can unfold to gigabytes, and its own bounds are no bounds.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace quorvel::freedesktop {

bool looksLikeBinaryPropertyList(std::span<const std::byte> bytes);

// Where a text with a NUL lies. The library's texts end at a NUL, and it asserts that one in UTF-16
// has none.
struct TextWithNul {
    std::uint64_t at = 0;    // its first character
    std::uint64_t count = 0; // of characters
    std::uint64_t width = 1; // bytes a character
};

struct BinaryPropertyListCheck {
    // What is wrong, or empty: then all objects that the root reaches lie within the bytes, every
    // key is a text, and the budgets are kept.
    std::string problem;
    std::vector<TextWithNul> textsWithNul;
};

BinaryPropertyListCheck checkBinaryPropertyList(std::span<const std::byte> bytes);

// Each NUL becomes what is no character: 0xFF in a narrow text, U+FFFD in a wide one. Objects may
// overlap, so the result is to be checked again.
void replaceNuls(const std::vector<TextWithNul>& texts, std::span<std::byte> bytes);

} // namespace quorvel::freedesktop
