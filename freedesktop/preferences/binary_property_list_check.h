// Checks a binary property list before the library parses it: a few hundred bytes of shared
// references can expand to gigabytes, and the library does not limit that.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "base/result.h"

namespace quorvel::freedesktop {

bool looksLikeBinaryPropertyList(std::span<const std::byte> bytes);

// The position of a text that contains a NUL. The library ends a text at a NUL, and aborts if one
// in UTF-16 has any.
struct TextWithNul {
    std::size_t at = 0;    // offset of the first character
    std::size_t count = 0; // number of characters
    std::size_t width = 1; // bytes per character
};

// Succeeds if all objects that the root refers to lie within the bytes, every key is a text, and
// the list is within the PropertyListBudget.
Result<std::vector<TextWithNul>> checkBinaryPropertyList(std::span<const std::byte> bytes);

// Replaces each NUL: by 0xFF in a text of one byte per character, by U+FFFD in one of two. Objects
// may overlap, so the caller checks the result again.
void replaceNuls(const std::vector<TextWithNul>& texts, std::span<std::byte> bytes);

} // namespace quorvel::freedesktop
