#include "platform/ui/ui_touch.h"

#include "platform/ui/ui_window.h"

namespace quorvel::platform {

namespace {

CGPoint inView(const CGPoint& point, const std::shared_ptr<UIWindow>& window, const UIView* view) {
    return window && view != nullptr ? window->convertPointToView(point, view) : point;
}

} // namespace

CGPoint UITouch::locationInView(const UIView* view) const {
    return inView(m_fields.locationInWindow, window(), view);
}

CGPoint UITouch::previousLocationInView(const UIView* view) const {
    return inView(m_fields.previousLocationInWindow, window(), view);
}

void UITouch::moveTo(const CGPoint& locationInWindow, double timestamp) {
    m_fields.previousLocationInWindow = m_fields.locationInWindow;
    m_fields.locationInWindow = locationInWindow;
    m_fields.timestamp = timestamp;
}

} // namespace quorvel::platform
