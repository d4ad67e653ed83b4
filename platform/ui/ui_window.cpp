#include "platform/ui/ui_window.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/ui/touch_tracking.h"
#include "platform/ui/ui_scroll_view.h"

namespace quorvel::platform {

UIWindow::UIWindow(const CGRect& frame, const Screen& screen)
    : UIView(frame)
    , m_screen(screen) {}

UIWindow::~UIWindow() = default;

void UIWindow::sendFinger(const FingerReport& report) {
    if (!std::isfinite(report.location.x) || !std::isfinite(report.location.y) ||
        !std::isfinite(report.time)) {
        return;
    }
    const auto keptAlive = shared_from_this();
    FingerReport ordered = report;
    ordered.time = m_latestTime = std::max(report.time, m_latestTime);
    const std::shared_ptr<TouchTracking> tracking = m_tracking;
    const bool isKnown = tracking && tracking->finger() == report.finger;
    switch (report.phase) {
    case UITouchPhase::began:
        if (isKnown) { // its lift was never reported
            cancelFinger(ordered.time);
        }
        if (!m_tracking) {
            m_tracking = std::make_shared<TouchTracking>(*this, ordered);
            std::shared_ptr(m_tracking)->begin();
        }
        break;
    case UITouchPhase::moved:
        if (isKnown) {
            tracking->move(ordered);
        }
        break;
    case UITouchPhase::stationary:
        break;
    case UITouchPhase::ended:
        if (isKnown) {
            m_tracking = nullptr;
            tracking->lift(ordered);
        }
        break;
    case UITouchPhase::cancelled:
        if (isKnown) {
            cancelFinger(ordered.time);
        }
        break;
    }
}

void UIWindow::cancelFinger(double time) {
    if (const auto tracking = std::exchange(m_tracking, nullptr)) {
        const auto keptAlive = shared_from_this();
        m_latestTime = std::max(time, m_latestTime);
        tracking->cancel(m_latestTime);
    }
}

bool UIWindow::isFingerDown() const {
    return m_tracking != nullptr;
}

std::shared_ptr<UIScrollView> UIWindow::draggedScrollView() const {
    return m_tracking ? m_tracking->dragged() : nullptr;
}

void UIWindow::letGoBelow(const UIView& view) {
    if (m_tracking) {
        m_tracking->letGoBelow(view);
    }
}

void UIWindow::addMoving(const std::shared_ptr<UIScrollView>& view) {
    m_moving.push_back(view);
}

bool UIWindow::advance(double time) {
    const auto keptAlive = shared_from_this();
    for (const auto& moving : std::exchange(m_moving, {})) {
        const auto view = moving.lock();
        if (!view || !view->isDecelerating()) {
            continue;
        }
        if (view->window() != this) {
            view->settle();
        } else if (view->advanceMotion(time)) {
            m_moving.push_back(view);
        }
    }
    return isMoving();
}

bool UIWindow::isMoving() const {
    return std::any_of(m_moving.begin(), m_moving.end(), [](const auto& moving) {
        const auto view = moving.lock();
        return view && view->isDecelerating();
    });
}

} // namespace quorvel::platform
