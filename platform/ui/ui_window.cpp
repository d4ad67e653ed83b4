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

// Views that outlive their window must not stay pulled.
UIWindow::~UIWindow() {
    stopScrollingBelow(*this);
}

double UIWindow::orderedFingerTime(double time) {
    if (time > m_fingerTime) {
        m_fingerTime = time;
    }
    return m_fingerTime;
}

void UIWindow::sendFinger(const FingerReport& report) {
    if (!std::isfinite(report.location.x) || !std::isfinite(report.location.y) ||
        !std::isfinite(report.time)) {
        return;
    }
    const auto retained = shared_from_this();
    FingerReport ordered = report;
    ordered.time = orderedFingerTime(report.time);
    const std::shared_ptr<TouchTracking> tracking = m_tracking;
    const bool isKnown = tracking && tracking->finger() == report.finger;
    if (!isKnown && report.phase != UITouchPhase::began) {
        return;
    }
    switch (report.phase) {
    case UITouchPhase::began:
        if (isKnown) { // its lift was never reported
            cancelFinger(ordered.time);
        }
        beginTracking(ordered);
        break;
    case UITouchPhase::moved:
        tracking->move(ordered);
        break;
    case UITouchPhase::stationary:
        break;
    case UITouchPhase::ended:
        liftFinger(tracking, ordered);
        break;
    case UITouchPhase::cancelled:
        cancelFinger(ordered.time);
        break;
    }
}

void UIWindow::beginTracking(const FingerReport& report) {
    if (!m_tracking) {
        const auto tracking = std::make_shared<TouchTracking>(*this, report);
        m_tracking = tracking;
        tracking->begin();
    }
}

// Reports the last movement while the finger is still down, as the receiver may cancel the touch.
void UIWindow::liftFinger(const std::shared_ptr<TouchTracking>& tracking,
                          const FingerReport& report) {
    if (report.location != tracking->location()) {
        tracking->move(report);
    }
    if (m_tracking == tracking) {
        m_tracking = nullptr;
        tracking->lift(report);
    }
}

void UIWindow::cancelFinger(double time) {
    if (const auto tracking = std::exchange(m_tracking, nullptr)) {
        const auto retained = shared_from_this();
        tracking->cancel(orderedFingerTime(time));
    }
}

bool UIWindow::isFingerDown() const {
    return m_tracking != nullptr;
}

std::shared_ptr<UIScrollView> UIWindow::draggedScrollView() const {
    return m_tracking ? m_tracking->dragged() : nullptr;
}

void UIWindow::stopScrollingBelow(const UIView& view) {
    if (m_tracking) {
        m_tracking->stopScrollingBelow(view);
    }
    const auto stopped =
        std::stable_partition(m_active.begin(), m_active.end(), [&view](const auto& active) {
            const auto scrollView = active.lock();
            return scrollView && !scrollView->isDescendantOfView(view);
        });
    std::for_each(stopped, m_active.end(), [](const auto& active) {
        const auto scrollView = active.lock();
        if (scrollView && (scrollView->isDragging() || scrollView->isDecelerating())) {
            scrollView->settle();
        }
    });
    m_active.erase(stopped, m_active.end());
}

void UIWindow::addActive(const std::shared_ptr<UIScrollView>& view) {
    const auto isSameOrGone = [&view](const auto& active) {
        const auto other = active.lock();
        return !other || other == view;
    };
    m_active.erase(std::remove_if(m_active.begin(), m_active.end(), isSameOrGone), m_active.end());
    m_active.push_back(view);
}

bool UIWindow::advance(double time) {
    const auto retained = shared_from_this();
    if (std::isfinite(time)) {
        const double now = m_frameTime = std::max(time, m_frameTime);
        const auto active = m_active; // each message may change the list
        for (const auto& one : active) {
            if (const auto view = one.lock(); view && view->isDecelerating()) {
                view->advanceMotion(now);
            }
        }
    }
    return isMoving();
}

bool UIWindow::isMoving() const {
    return std::any_of(m_active.begin(), m_active.end(), [](const auto& active) {
        const auto view = active.lock();
        return view && view->isDecelerating();
    });
}

} // namespace quorvel::platform
