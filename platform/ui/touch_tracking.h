// One finger, from the moment it comes down to the moment it lifts: whom its touch is told to, and
// which scroll view follows it.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

#include "platform/ui/ui_touch.h"
#include "platform/ui/ui_window.h"

namespace quorvel::platform {

class TouchTracking {
public:
    // `window` outlives the tracking.
    TouchTracking(UIWindow& window, const FingerReport& report);

    void begin(); // once, before anything else

    std::int64_t finger() const { return m_finger; }
    std::shared_ptr<UIScrollView> dragged() const { return m_dragged; }

    void move(const FingerReport& report);
    void lift(const FingerReport& report);
    void cancel(double time);
    // The view shows something else from now on: a drag at or below it ends as if the finger had
    // been taken away, and none begins there.
    void letGoBelow(const UIView& view);

private:
    struct Sample {
        CGPoint location;
        double time;
    };

    void stopMotions();
    void resumeStopped(double time);
    void follow(const CGPoint& location, double time);
    void decide(const CGPoint& location, double time);
    void addSample(const CGPoint& location, double time);
    CGPoint velocity() const;
    bool holdsDragged();

    UIWindow& m_window;
    std::int64_t m_finger;
    CGPoint m_start; // where the drag counts from, once it has been decided
    bool m_isDecided = false;
    std::shared_ptr<UITouch> m_touch;
    std::vector<std::shared_ptr<UIScrollView>> m_chain; // under the finger, the deepest first
    std::vector<std::shared_ptr<UIScrollView>> m_stopped;
    std::shared_ptr<UIScrollView> m_dragged;
    std::deque<Sample> m_samples; // of the last moments
};

} // namespace quorvel::platform
