// How scrolled content moves: the rubber band under a finger past an edge, and after the lift the
// glide within the edges and the spring past one, as closed functions of time.
#pragma once

#include <optional>

#include "platform/geometry.h"

namespace quorvel::platform {

// The offsets at which the content's edges meet the view's, in points.
struct ScrollRange {
    CGFloat low = 0;
    CGFloat high = 0;
    bool operator==(const ScrollRange&) const = default;
};

CGFloat clampedOffset(CGFloat offset, const ScrollRange& range);

// How far content is past its edge when a finger has gone `overshoot` points beyond it, in a
// view of that length: always less than the length. Neither is negative.
CGFloat rubberBand(CGFloat overshoot, CGFloat viewLength);

// The offset of content under a finger that would have moved it to `offset` if it had no edges.
CGFloat bandedOffset(CGFloat offset, const ScrollRange& range, CGFloat viewLength, bool bounces);
// The other way round; the content is not farther out than a finger pulls it.
CGFloat unbandedOffset(CGFloat banded, const ScrollRange& range, CGFloat viewLength, bool bounces);
// How many points the content moves for one point of the finger when it is at that offset.
CGFloat bandSlope(CGFloat banded, const ScrollRange& range, CGFloat viewLength, bool bounces);
// The view length that counts while a finger drags content that it caught at that offset: a longer
// one far out, where the band would hardly give way to the finger, or not reach at all.
CGFloat bandLength(CGFloat caught, const ScrollRange& range, CGFloat viewLength);

// Less than this is not worth a motion, in points.
constexpr CGFloat negligibleWay = 0.5;

// Content that loses 0.2 % of its speed each millisecond. Times are seconds since its start,
// speeds points a second.
struct Glide {
    CGFloat start = 0;
    CGFloat velocity = 0;

    CGFloat wholeWay() const;
    CGFloat offsetAt(double seconds) const;
    CGFloat velocityAt(double seconds) const;
    // Until that part of the whole way, between 0 and 1, is left.
    static double timeUntilLeft(double part);
};

// A critically damped spring of mass 1 and stiffness 100 that draws content back to an edge.
struct Spring {
    CGFloat edge = 0;
    CGFloat displacement = 0; // from the edge, at its start
    CGFloat velocity = 0;

    CGFloat offsetAt(double seconds) const;
    CGFloat velocityAt(double seconds) const;
    // From then on it stays within the negligible way.
    double timeToRest() const;
    // When it swings through its edge, which it does once at the most.
    std::optional<double> timeAtEdge() const;
};

} // namespace quorvel::platform
