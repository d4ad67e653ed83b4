// How content goes on along one axis after the finger has lifted.
#pragma once

#include "platform/ui/scroll_physics.h"

namespace quorvel::platform {

// Past an edge the spring draws the content back; where it comes back fast enough it glides on.
// Within its edges it glides. Where it reaches an edge from within and bounces, the spring takes
// over with the speed of that moment; else it stops there. It is at rest when less than half a
// point of the way is left, and then is exactly at the end.
class AxisMotion {
public:
    // `velocity`: of the offset, in points a second.
    AxisMotion(CGFloat offset, CGFloat velocity, const ScrollRange& range, bool bounces);

    // `elapsed`: seconds since the lift, not negative.
    CGFloat offsetAt(double elapsed) const;
    CGFloat velocityAt(double elapsed) const;
    CGFloat end() const { return m_end; }
    double duration() const { return m_returnTime + m_glideTime + m_bounceTime; } // seconds
    // From the beginning: nothing will move.
    bool isAtRest() const { return m_isAtRest; }

private:
    bool planReturn(CGFloat displacement, CGFloat velocity);
    void planGlide(const ScrollRange& range, bool bounces);

    CGFloat m_end;
    bool m_isAtRest = false;
    // One after the other; those that do not happen take no time.
    Spring m_return;
    Glide m_glide;
    Spring m_bounce;
    double m_returnTime = 0;
    double m_glideTime = 0;
    double m_bounceTime = 0;
};

} // namespace quorvel::platform
