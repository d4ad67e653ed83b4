// A colour as a text.
#pragma once

#include <string>

namespace quorvel::platform {
struct CGColor;
}

namespace quorvel {

// "#RRGGBB" of the first three components, whatever the colour space; a missing component counts as
// 0. Each is cut off to a whole of 255ths: above 255 it takes more digits, and below 0 it is the
// 32 bits of the negative number.
std::string hexStringOfColor(const platform::CGColor& color);

} // namespace quorvel
