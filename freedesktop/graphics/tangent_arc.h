// Computes the arc that rounds the corner between two lines.
#pragma once

#include <optional>

#include "platform/geometry.h"

namespace quorvel::freedesktop {

// Angles are in radians from the x axis towards the y axis. As y grows downwards, that is
// clockwise.
struct TangentArc {
    platform::CGPoint center;
    platform::CGFloat radius = 0;
    platform::CGFloat startAngle = 0;
    platform::CGFloat endAngle = 0;
    bool clockwise = true;
};

// The arc that touches the line from `start` to `corner` and the line from `corner` to `end`.
// Absent if there is no such arc: the radius is not positive, points coincide, or the lines are
// parallel.
std::optional<TangentArc> tangentArc(const platform::CGPoint& start,
                                     const platform::CGPoint& corner, const platform::CGPoint& end,
                                     platform::CGFloat radius);

} // namespace quorvel::freedesktop
