// How many whole pixels hold a length in points. For this folder's own sources.
#pragma once

#include <cmath>

#include "platform/geometry.h"

namespace quorvel::freedesktop {

// Rounded up, but not for the last digits that a product is wrong by: 1.1 points at 10 pixels a
// point are 11 pixels.
inline platform::CGFloat pixelLength(platform::CGFloat points, platform::CGFloat scale) {
    constexpr platform::CGFloat rounding = 1e-6;
    return std::ceil(points * scale - rounding);
}

} // namespace quorvel::freedesktop
