#include "platform/ui/touch_tracking.h"

#include <algorithm>
#include <utility>

#include "platform/ui/ui_event.h"
#include "platform/ui/ui_scroll_view.h"

namespace quorvel::platform {

namespace {

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

void send(const std::shared_ptr<UITouch>& touch, UITouchPhase phase, TouchMessage message) {
    touch->setPhase(phase);
    if (const auto view = touch->view()) {
        UIEvent event({touch});
        ((*view).*message)(event.allTouches(), event);
    }
}

} // namespace

TouchTracking::TouchTracking(UIWindow& window, const FingerReport& report)
    : m_finger(report.finger)
    , m_path(report.location, report.time)
    , m_touch(makeTouch(window, report))
    , m_chain(scrollViewsFrom(m_touch->view().get())) {}

void TouchTracking::begin() {
    stopMotions();
    send(m_touch, UITouchPhase::began, &UIView::touchesBegan);
}

// Null also where the view itself has ended the drag.
std::shared_ptr<UIScrollView> TouchTracking::dragged() const {
    return m_dragged && m_dragged->isDragging() ? m_dragged : nullptr;
}

void TouchTracking::stopMotions() {
    for (const auto& view : m_chain) {
        if (view->isDecelerating()) {
            view->stopMotion();
            m_stopped.push_back(view);
        }
    }
}

// Views that were stopped past an edge and are not dragged spring back.
void TouchTracking::resumeStopped(double time) {
    for (const auto& view : std::exchange(m_stopped, {})) {
        if (!view->isDragging() && !view->isDecelerating()) {
            view->startMotion({}, time);
        }
    }
}

void TouchTracking::move(const FingerReport& report) {
    m_touch->moveTo(report.location, report.time);
    send(m_touch, UITouchPhase::moved, &UIView::touchesMoved);
    if (!m_hasEnded) {
        follow(report);
    }
}

void TouchTracking::follow(const FingerReport& report) {
    const bool wasDecided = m_path.axis().has_value();
    m_path.add(report.location, report.time);
    if (!wasDecided && m_path.axis()) {
        m_dragged = innermostMovable(*m_path.axis());
        if (const auto view = m_dragged) {
            view->beginDrag();
        }
        resumeStopped(report.time);
    }
    if (const auto view = dragged()) {
        view->dragBy(m_path.translation());
    }
}

std::shared_ptr<UIScrollView> TouchTracking::innermostMovable(DragAxis axis) const {
    const auto found = std::find_if(m_chain.begin(), m_chain.end(), [axis](const auto& view) {
        return axis == DragAxis::horizontal ? view->canMoveHorizontally()
                                            : view->canMoveVertically();
    });
    return found != m_chain.end() ? *found : nullptr;
}

void TouchTracking::lift(const FingerReport& report) {
    m_hasEnded = true;
    m_path.add(report.location, report.time);
    m_touch->moveTo(report.location, report.time);
    send(m_touch, UITouchPhase::ended, &UIView::touchesEnded);
    if (const auto view = dragged()) {
        view->endDrag(m_path.velocity(), report.time);
    }
    resumeStopped(report.time);
}

void TouchTracking::cancel(double time) {
    m_hasEnded = true;
    m_touch->moveTo(location(), time);
    send(m_touch, UITouchPhase::cancelled, &UIView::touchesCancelled);
    if (const auto view = dragged()) {
        view->cancelDrag(time);
    }
    resumeStopped(time);
}

void TouchTracking::stopScrollingBelow(const UIView& view) {
    const auto isBelow = [&view](const auto& candidate) {
        return candidate->isDescendantOfView(view);
    };
    for (const auto& stopped : m_stopped) {
        if (isBelow(stopped)) {
            stopped->settle();
        }
    }
    m_stopped.erase(std::remove_if(m_stopped.begin(), m_stopped.end(), isBelow), m_stopped.end());
    m_chain.erase(std::remove_if(m_chain.begin(), m_chain.end(), isBelow), m_chain.end());
    if (m_dragged && isBelow(m_dragged)) {
        std::exchange(m_dragged, nullptr)->settle();
    }
}

} // namespace quorvel::platform
