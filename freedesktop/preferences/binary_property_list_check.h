// A walk over a binary property list before the library sees it: a few hundred bytes of shared
// references can unfold to gigabytes, and its own bounds are no bounds.
#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace quorvel::freedesktop {

bool looksLikeBinaryPropertyList(std::span<const std::byte> bytes);

// What is wrong, or empty: then all objects that the root reaches lie within the bytes, every key
// is a text, no text holds a NUL, and the budgets are kept.
std::string problemOfBinaryPropertyList(std::span<const std::byte> bytes);

} // namespace quorvel::freedesktop
