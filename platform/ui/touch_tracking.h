// Follows one finger until it lifts: reports its touch to the view under it, and moves the scroll
// view that it drags.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/ui/finger_path.h"
#include "platform/ui/ui_touch.h"
#include "platform/ui/ui_window.h"

namespace quorvel::platform {

// Every message to a view may cancel the tracking, and change or destroy views.
class TouchTracking {
public:
    TouchTracking(UIWindow& window, const FingerReport& report);

    void begin(); // once, before the other functions

    std::int64_t finger() const { return m_finger; }
    CGPoint location() const { return m_touch->fields().locationInWindow; }
    std::shared_ptr<UIScrollView> dragged() const;

    void move(const FingerReport& report);
    // Call one of these at the end; no view follows the finger afterwards.
    void lift(const FingerReport& report);
    void cancel(double time);
    // The finger no longer moves the scroll views at and below that view.
    void stopScrollingBelow(const UIView& view);

private:
    void stopMotions();
    void resumeStopped(double time);
    void follow(const FingerReport& report);
    std::shared_ptr<UIScrollView> innermostMovable(DragAxis axis) const;

    std::int64_t m_finger;
    bool m_hasEnded = false;
    FingerPath m_path;
    std::shared_ptr<UITouch> m_touch;
    std::vector<std::shared_ptr<UIScrollView>> m_chain; // under the finger, innermost first
    std::vector<std::shared_ptr<UIScrollView>> m_stopped;
    std::shared_ptr<UIScrollView> m_dragged;
};

} // namespace quorvel::platform
