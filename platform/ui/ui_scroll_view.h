// A view whose content may be larger than itself; its bounds' origin is the content offset.
#pragma once

#include <memory>
#include <optional>
#include <utility>

#include "platform/ui/scroll_motion.h"
#include "platform/ui/ui_view.h"

namespace quorvel::platform {

class UIScrollView;

class UIScrollViewDelegate {
public:
    virtual ~UIScrollViewDelegate() = default;
    virtual void scrollViewDidScroll(UIScrollView*) {}
    virtual void scrollViewWillBeginDragging(UIScrollView*) {}
    // Once for each drag that began, when the finger lifts, with the offset of that moment; not for
    // one whose finger was taken away. `willDecelerate`: the content goes on moving by itself.
    virtual void scrollViewDidEndDragging(UIScrollView*, bool willDecelerate) {
        static_cast<void>(willDecelerate);
    }
    // The motion has ended by itself. A finger or a new offset ends it without this message.
    virtual void scrollViewDidEndDecelerating(UIScrollView*) {}
};

// Clips its content. Any message to its delegate may change, remove or release the view.
class UIScrollView : public UIView {
public:
    explicit UIScrollView(const CGRect& frame = {});

    std::string_view className() const override { return "UIScrollView"; }

    CGSize contentSize() const { return m_contentSize; }
    void setContentSize(CGSize size) { m_contentSize = size; }
    CGPoint contentOffset() const { return bounds().origin; }
    // Taken as it is, also past an edge; ends a motion.
    void setContentOffset(const CGPoint& offset);

    bool isScrollEnabled() const { return m_scrollEnabled; }
    void setScrollEnabled(bool enabled) { m_scrollEnabled = enabled; }
    bool bounces() const { return m_bounces; }
    void setBounces(bool bounces) { m_bounces = bounces; }
    bool alwaysBounceHorizontal() const { return m_alwaysBounceHorizontal; }
    void setAlwaysBounceHorizontal(bool bounces) { m_alwaysBounceHorizontal = bounces; }
    bool alwaysBounceVertical() const { return m_alwaysBounceVertical; }
    void setAlwaysBounceVertical(bool bounces) { m_alwaysBounceVertical = bounces; }

    // Moves the content as little as it takes to show the rectangle (in the view's coordinates);
    // its top counts where it is too high. The content stays within its edges.
    void scrollToShow(const CGRect& rect);

    // Whether a drag on that axis would move the content: scrolling is on, and the content is
    // larger than the view or always bounces.
    bool canMoveHorizontally() const;
    bool canMoveVertically() const;
    bool isDragging() const { return m_isDragging; }
    // The content moves by itself: deceleration or spring-back.
    bool isDecelerating() const { return m_motion.has_value(); }

    // As if a finger had dragged the content to that offset and lifted there at rest: the delegate
    // gets both messages of a drag, then the content springs back. Nothing happens, and the
    // answer is false, where a finger could not have done it. `time`: seconds of the frame clock.
    bool dragTo(const CGPoint& offset, double time);
    // Ends a drag and a motion at once, with the content inside its edges and without a message to
    // the delegate.
    void settle();

    // Not owned; nothing is sent to a delegate that is gone.
    std::shared_ptr<UIScrollViewDelegate> delegate() const { return m_delegate.lock(); }
    void setDelegate(std::weak_ptr<UIScrollViewDelegate> delegate) {
        m_delegate = std::move(delegate);
    }

private:
    friend class TouchTracking;
    friend class UIWindow;

    // The edges that it was planned for, and how each axis goes.
    struct Motion {
        double start;  // seconds of the frame clock
        double latest; // the frame that the content was moved for; the start before the first one
        ScrollRange across;
        ScrollRange down;
        AxisMotion x;
        AxisMotion y;
        double duration() const;
        bool isAtRest() const;
        CGPoint offsetAt(double elapsed) const;
        CGPoint velocityAt(double elapsed) const;
    };

    // Velocities are the finger's, in points a second.
    void beginDrag();
    void dragBy(const CGPoint& way); // since the beginning
    void endDrag(const CGPoint& fingerVelocity, double time);
    void cancelDrag(double time);

    void stopMotion() { m_motion.reset(); }
    void startMotion(const CGPoint& velocity, double time); // of the offset
    void advanceMotion(double time);                        // of one that goes on
    Motion plannedMotion(const CGPoint& velocity, double time) const;
    void replanForNewEdges();
    void moveContentTo(const CGPoint& offset);
    bool isSomewhereElse(const CGPoint& offset) const;
    CGPoint insideEdges(const CGPoint& offset) const;
    ScrollRange horizontalRange() const;
    ScrollRange verticalRange() const;
    CGPoint contentVelocity(const CGPoint& fingerVelocity) const;

    CGSize m_contentSize;
    bool m_scrollEnabled = true;
    bool m_bounces = true;
    bool m_alwaysBounceHorizontal = false;
    bool m_alwaysBounceVertical = false;
    std::weak_ptr<UIScrollViewDelegate> m_delegate;
    bool m_isDragging = false;
    CGPoint m_dragStart; // the offset without edges, when the drag began
    CGSize m_bandSize;   // the view's, or more where the content was caught far out
    std::optional<Motion> m_motion;
};

} // namespace quorvel::platform
