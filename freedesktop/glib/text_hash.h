// A cryptographic hash, as a name for a text that must not be readable.
#pragma once

#include <string>

namespace quorvel::freedesktop {

// SHA-256 as 64 hexadecimal digits in lower case.
std::string secureHash(const std::string& text);

} // namespace quorvel::freedesktop
