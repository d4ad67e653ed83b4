// The touch of a finger, from the moment it comes down until it lifts.
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "platform/geometry.h"

namespace quorvel::platform {

class UIView;
class UIWindow;

enum class UITouchPhase { began = 0, moved = 1, stationary = 2, ended = 3, cancelled = 4 };

// All data of a touch.
struct UITouchFields {
    int tapCount = 0;
    CGPoint locationInWindow; // points, in the window's coordinates
    CGPoint previousLocationInWindow;
    std::shared_ptr<UIView> view;   // where the finger came down; null: none
    std::weak_ptr<UIWindow> window; // may be destroyed
    UITouchPhase phase = UITouchPhase::began;
    unsigned touchFlags = 0;
    double timestamp = 0; // seconds, of the clock of the touch's creator
};

class UITouch {
public:
    UITouch() = default;
    explicit UITouch(UITouchFields fields)
        : m_fields(std::move(fields)) {}

    int tapCount() const { return m_fields.tapCount; }
    const std::shared_ptr<UIView>& view() const { return m_fields.view; }
    std::shared_ptr<UIWindow> window() const { return m_fields.window.lock(); }
    UITouchPhase phase() const { return m_fields.phase; }
    void setPhase(UITouchPhase phase) { m_fields.phase = phase; }
    double timestamp() const { return m_fields.timestamp; }
    // In that view's coordinates; in the window's for null.
    CGPoint locationInView(const UIView* view) const;
    CGPoint previousLocationInView(const UIView* view) const;

    // The host has reported another location of the finger.
    void moveTo(const CGPoint& locationInWindow, double timestamp);

    const UITouchFields& fields() const { return m_fields; }

private:
    UITouchFields m_fields;
};

using UITouchSet = std::vector<std::shared_ptr<UITouch>>; // without duplicates; never null

} // namespace quorvel::platform
