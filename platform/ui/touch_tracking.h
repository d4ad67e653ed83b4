// One finger, from the moment it comes down to the moment it lifts: the view that gets its touch,
// and the scroll view that follows it.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/ui/finger_path.h"
#include "platform/ui/ui_touch.h"
#include "platform/ui/ui_window.h"

namespace quorvel::platform {

// Every message that is sent may end the tracking, change the views or destroy them.
class TouchTracking {
public:
    TouchTracking(UIWindow& window, const FingerReport& report);

    void begin(); // once, before anything else

    std::int64_t finger() const { return m_finger; }
    CGPoint location() const { return m_touch->fields().locationInWindow; }
    std::shared_ptr<UIScrollView> dragged() const;

    void move(const FingerReport& report);
    // One of them at the end, after which nothing follows the finger any more.
    void lift(const FingerReport& report);
    void cancel(double time);
    // The finger goes on without the scroll views at and below that view.
    void stopScrollingBelow(const UIView& view);

private:
    void stopMotions();
    void resumeStopped(double time);
    void follow(const FingerReport& report);
    std::shared_ptr<UIScrollView> deepestThatMoves(DragAxis axis) const;

    std::int64_t m_finger;
    bool m_hasEnded = false;
    FingerPath m_path;
    std::shared_ptr<UITouch> m_touch;
    std::vector<std::shared_ptr<UIScrollView>> m_chain; // under the finger, the deepest first
    std::vector<std::shared_ptr<UIScrollView>> m_stopped;
    std::shared_ptr<UIScrollView> m_dragged;
};

} // namespace quorvel::platform
