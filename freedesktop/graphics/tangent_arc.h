// The arc that rounds the corner between two lines.
#pragma once

#include <optional>

#include "platform/geometry.h"

namespace quorvel::freedesktop {

// Angles in radians from the x axis towards the y axis, which is clockwise with y growing
// downwards.
struct TangentArc {
    platform::CGPoint center;
    platform::CGFloat radius = 0;
    platform::CGFloat startAngle = 0;
    platform::CGFloat endAngle = 0;
    bool clockwise = true;
};

// The arc that touches the line from `start` to `corner` and the line from `corner` to `end`.
// Absent where no arc rounds anything: no radius, points that coincide, lines that go straight on
// or straight back.
std::optional<TangentArc> tangentArc(const platform::CGPoint& start,
                                     const platform::CGPoint& corner, const platform::CGPoint& end,
                                     platform::CGFloat radius);

} // namespace quorvel::freedesktop
