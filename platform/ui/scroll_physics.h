// How scrolled content moves: like a rubber band under a finger past an edge; after the lift with a
// deceleration within the edges and a spring past one, both as closed functions of time.
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

// How far content is past its edge when the finger is `overshoot` points past it, in a view of that
// length. Less than the length. Neither number is negative.
CGFloat rubberBand(CGFloat overshoot, CGFloat viewLength);

// The offset of content under a finger that would have moved it to `offset` if it had no edges.
CGFloat bandedOffset(CGFloat offset, const ScrollRange& range, CGFloat viewLength, bool bounces);
// The inverse of bandedOffset(), for content no farther past its edge than a finger can pull it.
CGFloat unbandedOffset(CGFloat banded, const ScrollRange& range, CGFloat viewLength, bool bounces);
// The distance of the content per distance of the finger, for content at that offset.
CGFloat bandSlope(CGFloat banded, const ScrollRange& range, CGFloat viewLength, bool bounces);
// The view length for the rubber band while a finger drags content that it caught at that offset.
// Far past an edge it exceeds the view's own length, with which the content would hardly follow the
// finger.
CGFloat bandLength(CGFloat caught, const ScrollRange& range, CGFloat viewLength);

// Points. A motion ends when less than this remains.
constexpr CGFloat restDistance = 0.5;

// Content that loses 0.2 % of its speed in each millisecond. Times are seconds since the start,
// speeds points per second.
struct Deceleration {
    CGFloat start = 0;
    CGFloat velocity = 0;

    CGFloat distance() const; // until it stands still
    CGFloat offsetAt(double seconds) const;
    CGFloat velocityAt(double seconds) const;
    // Until that part of the distance, between 0 and 1, remains.
    static double timeUntilRemaining(double part);
};

// A critically damped spring with a mass of 1 and a stiffness of 100, which pulls content back to
// an edge.
struct Spring {
    CGFloat edge = 0;
    CGFloat displacement = 0; // from the edge, at its start
    CGFloat velocity = 0;

    CGFloat offsetAt(double seconds) const;
    CGFloat velocityAt(double seconds) const;
    // From then on the displacement stays below restDistance.
    double timeToRest() const;
    // When it swings past its edge, at most once; absent: never.
    std::optional<double> timeAtEdge() const;
};

} // namespace quorvel::platform
