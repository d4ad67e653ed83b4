// Converts a length in points to whole pixels. Only for this folder.
#pragma once

#include <cmath>

#include "platform/geometry.h"

namespace quorvel::freedesktop {

// Rounds up, except for rounding errors of the product: 1.1 points at 10 pixels per point are 11
// pixels.
inline platform::CGFloat pixelLength(platform::CGFloat points, platform::CGFloat scale) {
    constexpr platform::CGFloat rounding = 1e-6;
    return std::ceil(points * scale - rounding);
}

} // namespace quorvel::freedesktop
