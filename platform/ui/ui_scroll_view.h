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
    // When the finger lifts, once for each drag that began, before the content moves on; not for a
    // cancelled finger. `willDecelerate`: the content continues to move.
    virtual void scrollViewDidEndDragging(UIScrollView*, bool willDecelerate) {
        static_cast<void>(willDecelerate);
    }
    // The motion has reached its end. A finger or a new offset ends a motion without this message.
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
    // Not limited to the edges. Ends a motion.
    void setContentOffset(const CGPoint& offset);

    bool isScrollEnabled() const { return m_scrollEnabled; }
    void setScrollEnabled(bool enabled) { m_scrollEnabled = enabled; }
    bool bounces() const { return m_bounces; }
    void setBounces(bool bounces) { m_bounces = bounces; }
    bool alwaysBounceHorizontal() const { return m_alwaysBounceHorizontal; }
    void setAlwaysBounceHorizontal(bool bounces) { m_alwaysBounceHorizontal = bounces; }
    bool alwaysBounceVertical() const { return m_alwaysBounceVertical; }
    void setAlwaysBounceVertical(bool bounces) { m_alwaysBounceVertical = bounces; }

    // Scrolls by the shortest distance that shows the rectangle (in the view's coordinates), or its
    // top where it is higher than the view. The content stays within its edges.
    void scrollToShow(const CGRect& rect);

    // Whether a drag on that axis would move the content: scrolling is on, and the content is
    // larger than the view or always bounces.
    bool canMoveHorizontally() const;
    bool canMoveVertically() const;
    bool isDragging() const { return m_isDragging; }
    // The content moves without a finger: it decelerates or springs back.
    bool isDecelerating() const { return m_motion.has_value(); }

    // Has the effect of a finger that drags the content to that offset, rests and lifts: the
    // delegate receives the messages of a drag, then the content springs back. False, without any
    // effect, where a finger could not do that. `time`: seconds of the frame clock.
    bool dragTo(const CGPoint& offset, double time);
    // Ends a drag and a motion immediately, with the content within its edges and without messages
    // to the delegate.
    void settle();

    // Not owned; may be destroyed before the view.
    std::shared_ptr<UIScrollViewDelegate> delegate() const { return m_delegate.lock(); }
    void setDelegate(std::weak_ptr<UIScrollViewDelegate> delegate) {
        m_delegate = std::move(delegate);
    }

private:
    friend class TouchTracking;
    friend class UIWindow;

    // The motion of both axes, and the edges that it was planned for.
    struct Motion {
        double start;  // seconds of the frame clock
        double latest; // the time of the latest frame; `start` before the first frame
        ScrollRange across;
        ScrollRange down;
        AxisMotion x;
        AxisMotion y;
        double duration() const;
        bool isAtRest() const;
        CGPoint offsetAt(double elapsed) const;
        CGPoint velocityAt(double elapsed) const;
    };

    // Velocities are points per second.
    void beginDrag();
    void dragBy(const CGPoint& translation); // since beginDrag()
    void endDrag(const CGPoint& fingerVelocity, double time);
    void cancelDrag(double time);

    void stopMotion() { m_motion.reset(); }
    void startMotion(const CGPoint& velocity, double time); // velocity of the offset
    void advanceMotion(double time);                        // there is a motion
    Motion plannedMotion(const CGPoint& velocity, double time) const;
    void replanForNewEdges();
    void moveContentTo(const CGPoint& offset);
    bool isOtherOffset(const CGPoint& offset) const;
    CGPoint limitedOffset(const CGPoint& offset) const;
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
    CGPoint m_dragStart; // the unbanded offset at the beginning of the drag
    CGSize m_bandSize;   // the lengths of the rubber band
    std::optional<Motion> m_motion;
};

} // namespace quorvel::platform
