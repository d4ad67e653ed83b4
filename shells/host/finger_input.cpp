#include "shells/host/finger_input.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "shells/host/agenda_host.h"

namespace quorvel::shells {

using platform::CGFloat;
using platform::CGPoint;
using platform::UITouchPhase;

namespace {

// A drag is claimed after this distance: shorter than where a widget around the area would claim
// it, and shorter than where the views begin to move.
constexpr CGFloat claimDistance = 8; // points
constexpr CGFloat longestTap = 10;   // points

CGPoint plus(const CGPoint& a, const CGPoint& b) {
    return {a.x + b.x, a.y + b.y};
}

} // namespace

void FingerInput::press(const CGPoint& location, double time) {
    begin(Source::press, location, time);
}

void FingerInput::drag(const CGPoint& translation, double time) {
    if (isPressed()) {
        move(plus(m_touch->start, translation), time);
    }
}

void FingerInput::lift(const CGPoint& translation, double time) {
    if (!isPressed()) {
        return;
    }
    drag(translation, time);
    const bool isTap = m_touch->isTap;
    const CGPoint location = m_touch->location;
    end(time);
    if (isTap) {
        m_host.tap(location);
    }
}

// A finger moves opposite to the direction in which the content is scrolled.
void FingerInput::scroll(const CGPoint& pointer, const CGPoint& step, double time) {
    if (isPressed()) {
        return;
    }
    if (!isScrolling()) {
        begin(Source::touchpad, pointer, time);
    }
    move({m_touch->location.x - step.x, m_touch->location.y - step.y}, time);
}

void FingerInput::endScroll(double time) {
    if (isScrolling()) {
        end(time);
    }
}

void FingerInput::cancel(double time) {
    if (std::exchange(m_touch, std::nullopt)) {
        m_host.cancelFinger(time);
    }
}

void FingerInput::begin(Source source, const CGPoint& location, double time) {
    cancel(time);
    m_touch = Touch{source, location, location};
    sendPhase(UITouchPhase::began, time);
}

void FingerInput::move(const CGPoint& location, double time) {
    m_touch->location = location;
    const CGFloat across = std::abs(location.x - m_touch->start.x);
    const CGFloat down = std::abs(location.y - m_touch->start.y);
    const CGFloat distance = std::max(across, down);
    m_touch->isTap = m_touch->isTap && distance <= longestTap;
    if (!m_touch->isClaimed && distance > claimDistance) {
        m_touch->isClaimed = across > down ? m_host.canDragHorizontally(m_touch->start)
                                           : m_host.canDragVertically(m_touch->start);
    }
    sendPhase(UITouchPhase::moved, time);
}

void FingerInput::end(double time) {
    sendPhase(UITouchPhase::ended, time);
    m_touch.reset();
}

void FingerInput::sendPhase(UITouchPhase phase, double time) {
    m_host.sendFinger({static_cast<std::int64_t>(m_touch->source), phase, m_touch->location, time});
}

} // namespace quorvel::shells
