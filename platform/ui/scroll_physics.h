// How scrolled content moves: the rubber band under a finger past an edge, and on one axis the
// motion after the finger has lifted, as a closed function of time.
#pragma once

#include "platform/geometry.h"

namespace quorvel::platform {

// The offsets at which the content's edges meet the view's, in points.
struct ScrollRange {
    CGFloat low = 0;
    CGFloat high = 0;
    bool operator==(const ScrollRange&) const = default;
};

CGFloat clampedOffset(CGFloat offset, const ScrollRange& range);

// How far content stands past its edge when a finger has gone `overshoot` points beyond it, in a
// view of that length: always less than the length. Neither is negative.
CGFloat rubberBand(CGFloat overshoot, CGFloat viewLength);

// The offset under a finger that would have moved the content to `offset` if it had no edges.
CGFloat bandedOffset(CGFloat offset, const ScrollRange& range, CGFloat viewLength, bool bounces);
// The other way round.
CGFloat unbandedOffset(CGFloat banded, const ScrollRange& range, CGFloat viewLength, bool bounces);
// How many points the content moves for one of the finger where it stands at that offset.
CGFloat bandSlope(CGFloat banded, const ScrollRange& range, CGFloat viewLength, bool bounces);

// One axis after the lift. Within its edges the content glides and loses 0.2 % of its speed each
// millisecond; past an edge a critically damped spring (mass 1, stiffness 100) draws it back. It is
// at rest when less than half a point of the way is left, and then stands exactly at the end.
class AxisMotion {
public:
    // `velocity`: of the offset, in points a second.
    AxisMotion(CGFloat offset, CGFloat velocity, const ScrollRange& range, bool bounces);

    // `elapsed`: seconds since the lift, not negative.
    CGFloat offsetAt(double elapsed) const;
    CGFloat velocityAt(double elapsed) const;
    double duration() const { return m_glideTime + m_springTime; } // seconds; 0: at rest already

private:
    void planGlide(bool bounces);
    void planSpring(CGFloat displacement, CGFloat velocity);

    ScrollRange m_range;
    CGFloat m_start;
    CGFloat m_velocity;
    CGFloat m_end;
    double m_glideTime = 0;
    double m_springTime = 0;
    CGFloat m_springDisplacement = 0; // from the edge, when the spring takes over
    CGFloat m_springVelocity = 0;
};

} // namespace quorvel::platform
