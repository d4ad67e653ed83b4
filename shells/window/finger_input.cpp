#include "shells/window/finger_input.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "shells/window/agenda_host.h"

namespace quorvel::window {

using platform::CGFloat;
using platform::CGPoint;
using platform::UITouchPhase;

namespace {

// Before a page around the area takes the drag for itself, and before the views decide.
constexpr CGFloat claimDistance = 8; // points
constexpr CGFloat tapDistance = 10;

CGPoint plus(const CGPoint& a, const CGPoint& b) {
    return {a.x + b.x, a.y + b.y};
}

} // namespace

void FingerInput::press(const CGPoint& location, double time) {
    begin(Finger::pressing, location, time);
}

void FingerInput::drag(const CGPoint& way, double time) {
    if (isPressed()) {
        move(plus(m_touch->start, way), time);
    }
}

void FingerInput::lift(const CGPoint& way, double time) {
    if (!isPressed()) {
        return;
    }
    drag(way, time);
    const bool isTap = m_touch->isTap;
    const CGPoint location = m_touch->location;
    end(time);
    if (isTap) {
        m_host.tap(location);
    }
}

// The content follows the fingers: it is they who move against the direction of scrolling.
void FingerInput::glide(const CGPoint& pointer, const CGPoint& step, double time) {
    if (isPressed()) {
        return;
    }
    if (!isGliding()) {
        begin(Finger::gliding, pointer, time);
    }
    move({m_touch->location.x - step.x, m_touch->location.y - step.y}, time);
}

void FingerInput::endGlide(double time) {
    if (isGliding()) {
        end(time);
    }
}

void FingerInput::cancel(double time) {
    if (std::exchange(m_touch, std::nullopt)) {
        m_host.cancelFinger(time);
    }
}

void FingerInput::begin(Finger finger, const CGPoint& location, double time) {
    cancel(time);
    m_touch = Touch{finger, location, location};
    report(UITouchPhase::began, time);
}

void FingerInput::move(const CGPoint& location, double time) {
    m_touch->location = location;
    const CGFloat across = std::abs(location.x - m_touch->start.x);
    const CGFloat down = std::abs(location.y - m_touch->start.y);
    const CGFloat furthest = std::max(across, down);
    m_touch->isTap = m_touch->isTap && furthest <= tapDistance;
    if (!m_touch->hasClaim && furthest > claimDistance) {
        m_touch->hasClaim = across > down ? m_host.canDragHorizontally(m_touch->start)
                                          : m_host.canDragVertically(m_touch->start);
    }
    report(UITouchPhase::moved, time);
}

void FingerInput::end(double time) {
    report(UITouchPhase::ended, time);
    m_touch.reset();
}

void FingerInput::report(UITouchPhase phase, double time) {
    m_host.sendFinger({static_cast<std::int64_t>(m_touch->finger), phase, m_touch->location, time});
}

} // namespace quorvel::window
