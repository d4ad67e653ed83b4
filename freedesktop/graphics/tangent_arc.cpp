#include "freedesktop/graphics/tangent_arc.h"

#include <cmath>

namespace quorvel::freedesktop {

using platform::CGFloat;
using platform::CGPoint;

namespace {

std::optional<CGPoint> direction(const CGPoint& from, const CGPoint& to) {
    const CGFloat length = std::hypot(to.x - from.x, to.y - from.y);
    if (!std::isnormal(length))
        return std::nullopt;
    return CGPoint{(to.x - from.x) / length, (to.y - from.y) / length};
}

CGFloat angleFrom(const CGPoint& center, const CGPoint& point) {
    return std::atan2(point.y - center.y, point.x - center.x);
}

} // namespace

std::optional<TangentArc> tangentArc(const CGPoint& start, const CGPoint& corner,
                                     const CGPoint& end, CGFloat radius) {
    constexpr CGFloat straight = 1e-9; // sine of an angle too small to see
    const auto back = direction(corner, start);
    const auto onward = direction(corner, end);
    if (!back || !onward || !std::isfinite(radius) || radius <= 0)
        return std::nullopt;
    const CGFloat sine = back->x * onward->y - back->y * onward->x;
    const CGFloat cosine = back->x * onward->x + back->y * onward->y;
    if (std::abs(sine) < straight)
        return std::nullopt;
    // From the corner to the points where the arc touches the lines.
    const CGFloat distance = radius * (1 + cosine) / std::abs(sine);
    const CGPoint first = {corner.x + back->x * distance, corner.y + back->y * distance};
    const CGPoint second = {corner.x + onward->x * distance, corner.y + onward->y * distance};
    const CGFloat side = sine > 0 ? radius : -radius;
    const CGPoint center = {first.x - back->y * side, first.y + back->x * side};
    return TangentArc{center, radius, angleFrom(center, first), angleFrom(center, second),
                      sine < 0};
}

} // namespace quorvel::freedesktop
