#include "platform/ui/touch_tracking.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/ui/ui_event.h"
#include "platform/ui/ui_scroll_view.h"

namespace quorvel::platform {

namespace {

constexpr CGFloat slop = 10; // points
// The speed at the lift is that of these last seconds.
constexpr double samplingTime = 0.1;

std::shared_ptr<UITouch> makeTouch(UIWindow& window, const FingerReport& report) {
    UITouchFields fields;
    fields.tapCount = 1;
    fields.locationInWindow = report.location;
    fields.previousLocationInWindow = report.location;
    fields.view = window.hitTest(report.location);
    fields.window = std::static_pointer_cast<UIWindow>(window.shared_from_this());
    fields.timestamp = report.time;
    return std::make_shared<UITouch>(std::move(fields));
}

std::vector<std::shared_ptr<UIScrollView>> scrollViewsFrom(UIView* view) {
    std::vector<std::shared_ptr<UIScrollView>> chain;
    for (; view != nullptr; view = view->superview()) {
        if (auto* scrollView = dynamic_cast<UIScrollView*>(view)) {
            chain.push_back(std::static_pointer_cast<UIScrollView>(scrollView->shared_from_this()));
        }
    }
    return chain;
}

using TouchMessage = void (UIView::*)(const UITouchSet&, UIEvent&);

void tell(const std::shared_ptr<UITouch>& touch, UITouchPhase phase, TouchMessage message) {
    touch->setPhase(phase);
    if (const auto view = touch->view()) {
        UIEvent event({touch});
        ((*view).*message)(event.allTouches(), event);
    }
}

} // namespace

TouchTracking::TouchTracking(UIWindow& window, const FingerReport& report)
    : m_window(window)
    , m_finger(report.finger)
    , m_start(report.location)
    , m_touch(makeTouch(window, report))
    , m_chain(scrollViewsFrom(m_touch->view().get())) {
    addSample(report.location, report.time);
}

void TouchTracking::begin() {
    stopMotions();
    tell(m_touch, UITouchPhase::began, &UIView::touchesBegan);
}

void TouchTracking::stopMotions() {
    for (const auto& view : m_chain) {
        if (view->isDecelerating()) {
            view->stopMotion();
            m_stopped.push_back(view);
        }
    }
}

// What was stopped past an edge and is not dragged now springs back.
void TouchTracking::resumeStopped(double time) {
    for (const auto& view : std::exchange(m_stopped, {})) {
        if (view != m_dragged && view->window() == &m_window) {
            view->startMotion({}, time);
        }
    }
}

void TouchTracking::move(const FingerReport& report) {
    m_touch->moveTo(report.location, report.time);
    tell(m_touch, UITouchPhase::moved, &UIView::touchesMoved);
    follow(report.location, report.time);
}

void TouchTracking::follow(const CGPoint& location, double time) {
    addSample(location, time);
    if (!m_isDecided) {
        decide(location, time);
    }
    if (holdsDragged()) {
        m_dragged->dragBy({location.x - m_start.x, location.y - m_start.y});
    }
}

// The slop is taken off the way of the axis that decided, so that the content does not jump.
void TouchTracking::decide(const CGPoint& location, double time) {
    const CGFloat across = location.x - m_start.x;
    const CGFloat down = location.y - m_start.y;
    if (!(std::max(std::abs(across), std::abs(down)) > slop)) {
        return;
    }
    m_isDecided = true;
    const bool isHorizontal = std::abs(across) > std::abs(down);
    for (const auto& view : m_chain) {
        if (view->window() == &m_window &&
            (isHorizontal ? view->canMoveHorizontally() : view->canMoveVertically())) {
            m_dragged = view;
            break;
        }
    }
    (isHorizontal ? m_start.x : m_start.y) += std::copysign(slop, isHorizontal ? across : down);
    resumeStopped(time);
    if (const auto view = m_dragged) {
        view->beginDrag();
    }
}

// A view that has left the window is no longer dragged.
bool TouchTracking::holdsDragged() {
    if (m_dragged && m_dragged->window() != &m_window) {
        std::exchange(m_dragged, nullptr)->settle();
    }
    return m_dragged != nullptr;
}

void TouchTracking::lift(const FingerReport& report) {
    if (report.location != m_touch->fields().locationInWindow) {
        move(report);
    } else {
        addSample(report.location, report.time);
    }
    tell(m_touch, UITouchPhase::ended, &UIView::touchesEnded);
    if (holdsDragged()) {
        std::exchange(m_dragged, nullptr)->endDrag(velocity(), report.time);
    }
    resumeStopped(report.time);
}

void TouchTracking::cancel(double time) {
    tell(m_touch, UITouchPhase::cancelled, &UIView::touchesCancelled);
    if (holdsDragged()) {
        std::exchange(m_dragged, nullptr)->cancelDrag(time);
    }
    resumeStopped(time);
}

void TouchTracking::letGoBelow(const UIView& view) {
    const auto isBelow = [&view](const auto& candidate) {
        return candidate->isDescendantOfView(view);
    };
    if (m_dragged && isBelow(m_dragged)) {
        std::exchange(m_dragged, nullptr)->settle();
    }
    m_chain.erase(std::remove_if(m_chain.begin(), m_chain.end(), isBelow), m_chain.end());
    m_stopped.erase(std::remove_if(m_stopped.begin(), m_stopped.end(), isBelow), m_stopped.end());
}

void TouchTracking::addSample(const CGPoint& location, double time) {
    m_samples.push_back({location, time});
    while (m_samples.front().time < time - samplingTime) {
        m_samples.pop_front();
    }
}

// Points a second.
CGPoint TouchTracking::velocity() const {
    const Sample& first = m_samples.front();
    const Sample& last = m_samples.back();
    const double seconds = last.time - first.time;
    if (!(seconds > 0)) {
        return {};
    }
    return {(last.location.x - first.location.x) / seconds,
            (last.location.y - first.location.y) / seconds};
}

} // namespace quorvel::platform
