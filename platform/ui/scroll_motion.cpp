#include "platform/ui/scroll_motion.h"

#include <cmath>

namespace quorvel::platform {

namespace {

bool isVisible(const Deceleration& deceleration) {
    return std::abs(deceleration.distance()) >= restDistance;
}

} // namespace

AxisMotion::AxisMotion(CGFloat offset, CGFloat velocity, const ScrollRange& range, bool bounces)
    : m_end(clampedOffset(offset, range))
    , m_deceleration{offset, velocity} {
    if (offset == m_end || planReturn(offset - m_end, velocity)) {
        planDeceleration(range, bounces);
    }
    m_isAtRest = offset == m_end && duration() == 0;
}

// True where the content returns so fast that it continues past its edge into the view.
bool AxisMotion::planReturn(CGFloat displacement, CGFloat velocity) {
    m_return = {m_end, displacement, velocity};
    if (const auto atEdge = m_return.timeAtEdge()) {
        m_deceleration = {m_end, m_return.velocityAt(*atEdge)};
        if (isVisible(m_deceleration)) {
            m_returnTime = *atEdge;
            return true;
        }
    }
    m_returnTime = m_return.timeToRest();
    return false;
}

void AxisMotion::planDeceleration(const ScrollRange& range, bool bounces) {
    if (!isVisible(m_deceleration)) {
        return;
    }
    const CGFloat distance = m_deceleration.distance();
    m_end = clampedOffset(m_deceleration.start + distance, range);
    if (m_end == m_deceleration.start + distance) {
        m_decelerationTime = Deceleration::timeUntilRemaining(restDistance / std::abs(distance));
        return;
    }
    m_decelerationTime =
        Deceleration::timeUntilRemaining(1 - (m_end - m_deceleration.start) / distance);
    if (bounces) {
        m_bounce = {m_end, 0, m_deceleration.velocityAt(m_decelerationTime)};
        m_bounceTime = m_bounce.timeToRest();
    }
}

CGFloat AxisMotion::offsetAt(double elapsed) const {
    if (elapsed >= duration()) {
        return m_end;
    }
    if (elapsed < m_returnTime) {
        return m_return.offsetAt(elapsed);
    }
    if (elapsed < m_returnTime + m_decelerationTime) {
        return m_deceleration.offsetAt(elapsed - m_returnTime);
    }
    return m_bounce.offsetAt(elapsed - m_returnTime - m_decelerationTime);
}

CGFloat AxisMotion::velocityAt(double elapsed) const {
    if (elapsed >= duration()) {
        return 0;
    }
    if (elapsed < m_returnTime) {
        return m_return.velocityAt(elapsed);
    }
    if (elapsed < m_returnTime + m_decelerationTime) {
        return m_deceleration.velocityAt(elapsed - m_returnTime);
    }
    return m_bounce.velocityAt(elapsed - m_returnTime - m_decelerationTime);
}

} // namespace quorvel::platform
