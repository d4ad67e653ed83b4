// A Core Graphics colour: its numbers, without their meaning.
#pragma once

#include <vector>

#include "platform/geometry.h"

namespace quorvel::platform {

struct CGColor {
    // In the order of its colour space, alpha last: red, green, blue, alpha; or white, alpha.
    // Usually from 0 to 1.
    std::vector<CGFloat> components;
};

} // namespace quorvel::platform
