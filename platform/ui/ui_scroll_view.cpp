#include "platform/ui/ui_scroll_view.h"

#include <algorithm>
#include <cmath>

#include "platform/ui/ui_window.h"

namespace quorvel::platform {

namespace {

ScrollRange scrollRange(CGFloat contentLength, CGFloat viewLength) {
    return {0, std::max(contentLength - viewLength, 0.0)};
}

// The least movement that shows the span from `low` to `high`.
CGFloat offsetShowing(CGFloat offset, CGFloat viewLength, CGFloat low, CGFloat high) {
    if (low < offset || high - low > viewLength) {
        return low;
    }
    return std::max(offset, high - viewLength);
}

} // namespace

UIScrollView::UIScrollView(const CGRect& frame)
    : UIView(frame) {
    setClipsToBounds(true);
}

void UIScrollView::setContentOffset(const CGPoint& offset) {
    m_motion.reset();
    moveContentTo(offset);
}

void UIScrollView::moveContentTo(const CGPoint& offset) {
    if (offset == contentOffset() || !std::isfinite(offset.x) || !std::isfinite(offset.y)) {
        return;
    }
    setBounds({offset, bounds().size});
    if (const auto receiver = delegate()) {
        receiver->scrollViewDidScroll(this);
    }
}

void UIScrollView::scrollToShow(const CGRect& rect) {
    const CGPoint offset = contentOffset();
    const CGSize size = bounds().size;
    setContentOffset({clampedOffset(offsetShowing(offset.x, size.width, CGRectGetMinX(rect),
                                                  CGRectGetMaxX(rect)),
                                    horizontalRange()),
                      clampedOffset(offsetShowing(offset.y, size.height, CGRectGetMinY(rect),
                                                  CGRectGetMaxY(rect)),
                                    verticalRange())});
}

ScrollRange UIScrollView::horizontalRange() const {
    return scrollRange(m_contentSize.width, bounds().size.width);
}

ScrollRange UIScrollView::verticalRange() const {
    return scrollRange(m_contentSize.height, bounds().size.height);
}

bool UIScrollView::canMoveHorizontally() const {
    return m_scrollEnabled &&
           (horizontalRange().high > 0 || (m_bounces && m_alwaysBounceHorizontal));
}

bool UIScrollView::canMoveVertically() const {
    return m_scrollEnabled && (verticalRange().high > 0 || (m_bounces && m_alwaysBounceVertical));
}

// Drags.

void UIScrollView::beginDrag() {
    const CGPoint offset = contentOffset();
    const CGSize size = bounds().size;
    m_motion.reset();
    m_dragStart = {unbandedOffset(offset.x, horizontalRange(), size.width, m_bounces),
                   unbandedOffset(offset.y, verticalRange(), size.height, m_bounces)};
    m_isDragging = true;
    if (const auto receiver = delegate()) {
        receiver->scrollViewWillBeginDragging(this);
    }
}

void UIScrollView::dragBy(const CGPoint& translation) {
    CGPoint offset = contentOffset();
    const CGSize size = bounds().size;
    if (canMoveHorizontally()) {
        offset.x =
            bandedOffset(m_dragStart.x - translation.x, horizontalRange(), size.width, m_bounces);
    }
    if (canMoveVertically()) {
        offset.y =
            bandedOffset(m_dragStart.y - translation.y, verticalRange(), size.height, m_bounces);
    }
    moveContentTo(offset);
}

// The motion is planned before the delegate hears of the end, who is told whether there is one; it
// begins afterwards, unless the delegate has put the content somewhere else.
void UIScrollView::endDrag(const CGPoint& fingerVelocity, double time) {
    const CGPoint offset = contentOffset();
    const CGSize size = bounds().size;
    CGPoint velocity;
    if (canMoveHorizontally()) {
        velocity.x =
            -fingerVelocity.x * bandSlope(offset.x, horizontalRange(), size.width, m_bounces);
    }
    if (canMoveVertically()) {
        velocity.y =
            -fingerVelocity.y * bandSlope(offset.y, verticalRange(), size.height, m_bounces);
    }
    m_isDragging = false;
    const auto receiver = delegate();
    const bool willDecelerate = plannedMotion(velocity, time).duration() > 0;
    if (receiver) {
        receiver->scrollViewDidEndDragging(this, willDecelerate);
    }
    if (contentOffset() != offset) {
        velocity = {};
    }
    startMotion(velocity, time);
}

void UIScrollView::cancelDrag(double time) {
    m_isDragging = false;
    startMotion({}, time);
}

bool UIScrollView::dragTo(const CGPoint& offset, double time) {
    const CGPoint from = contentOffset();
    if (!std::isfinite(offset.x) || !std::isfinite(offset.y) || !std::isfinite(time) ||
        window() == nullptr || !canBeTouched() || !m_scrollEnabled || m_isDragging ||
        (offset.x != from.x && !canMoveHorizontally()) ||
        (offset.y != from.y && !canMoveVertically())) {
        return false;
    }
    const auto keptAlive = shared_from_this();
    beginDrag();
    moveContentTo(offset);
    endDrag({}, time);
    return true;
}

// Motion.

double UIScrollView::Motion::duration() const {
    return std::max(x.duration(), y.duration());
}

UIScrollView::Motion UIScrollView::plannedMotion(const CGPoint& velocity, double time) const {
    const CGPoint offset = contentOffset();
    const ScrollRange across = horizontalRange();
    const ScrollRange down = verticalRange();
    return {time, across, down, AxisMotion(offset.x, velocity.x, across, m_bounces),
            AxisMotion(offset.y, velocity.y, down, m_bounces)};
}

void UIScrollView::startMotion(const CGPoint& velocity, double time) {
    m_motion = plannedMotion(velocity, time);
    UIWindow* top = window();
    if (m_motion->duration() == 0 || top == nullptr) {
        finishMotion();
        return;
    }
    top->addMoving(std::static_pointer_cast<UIScrollView>(shared_from_this()));
}

// Where the motion would end, within the edges as they are now.
void UIScrollView::finishMotion() {
    constexpr double atLast = 1e9;
    const CGPoint end{clampedOffset(m_motion->x.offsetAt(atLast), horizontalRange()),
                      clampedOffset(m_motion->y.offsetAt(atLast), verticalRange())};
    m_motion.reset();
    moveContentTo(end);
}

bool UIScrollView::advanceMotion(double time) {
    if (!m_motion) {
        return false;
    }
    replanForNewEdges(time);
    const double elapsed = std::max(time - m_motion->start, 0.0);
    if (elapsed < m_motion->duration()) {
        moveContentTo({m_motion->x.offsetAt(elapsed), m_motion->y.offsetAt(elapsed)});
        return m_motion.has_value();
    }
    finishMotion();
    if (const auto receiver = delegate()) {
        receiver->scrollViewDidEndDecelerating(this);
    }
    return m_motion.has_value();
}

void UIScrollView::replanForNewEdges(double time) {
    if (m_motion->across == horizontalRange() && m_motion->down == verticalRange()) {
        return;
    }
    const double elapsed = std::max(time - m_motion->start, 0.0);
    m_motion =
        plannedMotion({m_motion->x.velocityAt(elapsed), m_motion->y.velocityAt(elapsed)}, time);
}

void UIScrollView::settle() {
    m_isDragging = false;
    m_motion.reset();
    const CGPoint offset = contentOffset();
    moveContentTo(
        {clampedOffset(offset.x, horizontalRange()), clampedOffset(offset.y, verticalRange())});
}

} // namespace quorvel::platform
