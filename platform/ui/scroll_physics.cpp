#include "platform/ui/scroll_physics.h"

#include <algorithm>
#include <cmath>

namespace quorvel::platform {

namespace {

constexpr CGFloat bandStiffness = 0.55;
// What is left of the speed after a millisecond, and so how far a speed of one carries: the sum of
// the ways of all milliseconds to come.
constexpr double keptEachMillisecond = 0.998;
constexpr double wayOfUnitSpeed = keptEachMillisecond / (1000 * (1 - keptEachMillisecond));
constexpr double springRate = 10; // the root of the stiffness
constexpr CGFloat negligibleWay = 0.5;

double keptAfter(double seconds) {
    return std::pow(keptEachMillisecond, 1000 * seconds);
}

double secondsUntilKept(double part) {
    return std::log(part) / (1000 * std::log(keptEachMillisecond));
}

CGFloat springDisplacement(CGFloat displacement, CGFloat velocity, double seconds) {
    return std::exp(-springRate * seconds) *
           (displacement + (velocity + springRate * displacement) * seconds);
}

CGFloat springVelocity(CGFloat displacement, CGFloat velocity, double seconds) {
    return std::exp(-springRate * seconds) *
           (velocity - springRate * (velocity + springRate * displacement) * seconds);
}

// From then on the spring stays within the negligible way.
double springDuration(CGFloat displacement, CGFloat velocity) {
    const CGFloat still = std::abs(displacement);
    const CGFloat growth = std::abs(velocity + springRate * displacement);
    const auto widest = [&](double seconds) {
        return std::exp(-springRate * seconds) * (still + growth * seconds);
    };
    double early = growth > 0 ? std::max(1 / springRate - still / growth, 0.0) : 0.0;
    if (widest(early) < negligibleWay) {
        return 0;
    }
    double late = early + 1;
    while (widest(late) >= negligibleWay) {
        late += 1;
    }
    constexpr int halvings = 50;
    for (int i = 0; i < halvings; ++i) {
        const double middle = (early + late) / 2;
        (widest(middle) < negligibleWay ? late : early) = middle;
    }
    return late;
}

} // namespace

CGFloat clampedOffset(CGFloat offset, const ScrollRange& range) {
    return std::clamp(offset, range.low, range.high);
}

CGFloat rubberBand(CGFloat overshoot, CGFloat viewLength) {
    return viewLength > 0 ? (1 - 1 / (overshoot * bandStiffness / viewLength + 1)) * viewLength : 0;
}

CGFloat bandedOffset(CGFloat offset, const ScrollRange& range, CGFloat viewLength, bool bounces) {
    const CGFloat edge = clampedOffset(offset, range);
    const CGFloat past = bounces ? rubberBand(std::abs(offset - edge), viewLength) : 0;
    return edge + std::copysign(past, offset - edge);
}

CGFloat unbandedOffset(CGFloat banded, const ScrollRange& range, CGFloat viewLength, bool bounces) {
    const CGFloat edge = clampedOffset(banded, range);
    const CGFloat past = std::abs(banded - edge);
    if (!bounces || !(past < viewLength)) {
        return edge;
    }
    const CGFloat overshoot = (1 / (1 - past / viewLength) - 1) * viewLength / bandStiffness;
    return edge + std::copysign(overshoot, banded - edge);
}

CGFloat bandSlope(CGFloat banded, const ScrollRange& range, CGFloat viewLength, bool bounces) {
    const CGFloat past = std::abs(banded - clampedOffset(banded, range));
    if (past == 0) {
        return 1;
    }
    if (!bounces || !(past < viewLength)) {
        return 0;
    }
    const CGFloat left = 1 - past / viewLength;
    return bandStiffness * left * left;
}

AxisMotion::AxisMotion(CGFloat offset, CGFloat velocity, const ScrollRange& range, bool bounces)
    : m_range(range)
    , m_start(offset)
    , m_velocity(velocity)
    , m_end(clampedOffset(offset, range)) {
    if (offset != m_end) {
        planSpring(offset - m_end, velocity);
    } else {
        planGlide(bounces);
    }
}

void AxisMotion::planGlide(bool bounces) {
    const CGFloat way = m_velocity * wayOfUnitSpeed;
    if (!(std::abs(way) >= negligibleWay)) {
        return;
    }
    m_end = clampedOffset(m_start + way, m_range);
    if (m_end == m_start + way) {
        m_glideTime = secondsUntilKept(negligibleWay / std::abs(way));
        return;
    }
    const double keptAtEdge = 1 - (m_end - m_start) / way;
    m_glideTime = secondsUntilKept(keptAtEdge);
    if (bounces) {
        planSpring(0, m_velocity * keptAtEdge);
    }
}

void AxisMotion::planSpring(CGFloat displacement, CGFloat velocity) {
    m_springDisplacement = displacement;
    m_springVelocity = velocity;
    m_springTime = springDuration(displacement, velocity);
}

CGFloat AxisMotion::offsetAt(double elapsed) const {
    if (elapsed >= duration()) {
        return m_end;
    }
    if (elapsed < m_glideTime) {
        return m_start + m_velocity * wayOfUnitSpeed * (1 - keptAfter(elapsed));
    }
    return m_end +
           springDisplacement(m_springDisplacement, m_springVelocity, elapsed - m_glideTime);
}

CGFloat AxisMotion::velocityAt(double elapsed) const {
    if (elapsed >= duration()) {
        return 0;
    }
    if (elapsed < m_glideTime) {
        return m_velocity * keptAfter(elapsed);
    }
    return springVelocity(m_springDisplacement, m_springVelocity, elapsed - m_glideTime);
}

} // namespace quorvel::platform
