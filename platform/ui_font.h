// A font: a face and a size in points.
#pragma once

#include <string>

#include "platform/geometry.h"

namespace quorvel::platform {

struct UIFont {
    std::string familyName; // empty: the host's system font
    CGFloat pointSize = 17;
    bool operator==(const UIFont&) const = default;

    static UIFont systemFontOfSize(CGFloat size) { return {{}, size}; }
    UIFont fontWithSize(CGFloat size) const { return {familyName, size}; }
};

} // namespace quorvel::platform
