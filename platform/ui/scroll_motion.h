// The motion of content along one axis after the finger has lifted.
#pragma once

#include "platform/ui/scroll_physics.h"

namespace quorvel::platform {

// Past an edge, a spring pulls the content back; content that returns fast enough then decelerates
// within its edges. Content within its edges decelerates. Where it reaches an edge and bounces, a
// spring continues with the speed of that moment; without bouncing, the content stops there. The
// motion ends, exactly at its end, when less than half a point remains.
class AxisMotion {
public:
    // `velocity`: of the offset, in points a second.
    AxisMotion(CGFloat offset, CGFloat velocity, const ScrollRange& range, bool bounces);

    // `elapsed`: seconds since the lift, not negative.
    CGFloat offsetAt(double elapsed) const;
    CGFloat velocityAt(double elapsed) const;
    CGFloat end() const { return m_end; }
    double duration() const { return m_returnTime + m_decelerationTime + m_bounceTime; } // seconds
    // Whether nothing moves from the beginning.
    bool isAtRest() const { return m_isAtRest; }

private:
    bool planReturn(CGFloat displacement, CGFloat velocity);
    void planDeceleration(const ScrollRange& range, bool bounces);

    CGFloat m_end;
    bool m_isAtRest = false;
    // These follow each other; those that do not occur take no time.
    Spring m_return;
    Deceleration m_deceleration;
    Spring m_bounce;
    double m_returnTime = 0;
    double m_decelerationTime = 0;
    double m_bounceTime = 0;
};

} // namespace quorvel::platform
