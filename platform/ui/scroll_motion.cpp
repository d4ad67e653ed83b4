#include "platform/ui/scroll_motion.h"

#include <cmath>

namespace quorvel::platform {

namespace {

bool isWorthAMotion(const Glide& glide) {
    return std::abs(glide.wholeWay()) >= negligibleWay;
}

} // namespace

AxisMotion::AxisMotion(CGFloat offset, CGFloat velocity, const ScrollRange& range, bool bounces)
    : m_end(clampedOffset(offset, range))
    , m_glide{offset, velocity} {
    if (offset == m_end || planReturn(offset - m_end, velocity)) {
        planGlide(range, bounces);
    }
    m_isAtRest = offset == m_end && duration() == 0;
}

// True where the content goes on into its view.
bool AxisMotion::planReturn(CGFloat displacement, CGFloat velocity) {
    m_return = {m_end, displacement, velocity};
    if (const auto atEdge = m_return.timeAtEdge()) {
        m_glide = {m_end, m_return.velocityAt(*atEdge)};
        if (isWorthAMotion(m_glide)) {
            m_returnTime = *atEdge;
            return true;
        }
    }
    m_returnTime = m_return.timeToRest();
    return false;
}

void AxisMotion::planGlide(const ScrollRange& range, bool bounces) {
    if (!isWorthAMotion(m_glide)) {
        return;
    }
    const CGFloat way = m_glide.wholeWay();
    m_end = clampedOffset(m_glide.start + way, range);
    if (m_end == m_glide.start + way) {
        m_glideTime = Glide::timeUntilLeft(negligibleWay / std::abs(way));
        return;
    }
    m_glideTime = Glide::timeUntilLeft(1 - (m_end - m_glide.start) / way);
    if (bounces) {
        m_bounce = {m_end, 0, m_glide.velocityAt(m_glideTime)};
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
    if (elapsed < m_returnTime + m_glideTime) {
        return m_glide.offsetAt(elapsed - m_returnTime);
    }
    return m_bounce.offsetAt(elapsed - m_returnTime - m_glideTime);
}

CGFloat AxisMotion::velocityAt(double elapsed) const {
    if (elapsed >= duration()) {
        return 0;
    }
    if (elapsed < m_returnTime) {
        return m_return.velocityAt(elapsed);
    }
    if (elapsed < m_returnTime + m_glideTime) {
        return m_glide.velocityAt(elapsed - m_returnTime);
    }
    return m_bounce.velocityAt(elapsed - m_returnTime - m_glideTime);
}

} // namespace quorvel::platform
