#include "platform/ui/ui_scroll_view.h"

#include <algorithm>
#include <cmath>

#include "platform/ui/ui_window.h"

namespace quorvel::platform {

namespace {

ScrollRange scrollRange(CGFloat contentLength, CGFloat viewLength) {
    const CGFloat hidden = contentLength - viewLength;
    return {0, hidden > 0 ? hidden : 0}; // also for NaN
}

// The nearest offset that shows the span from `low` to `high`.
CGFloat offsetShowing(CGFloat offset, CGFloat viewLength, CGFloat low, CGFloat high) {
    if (low < offset || high - low > viewLength) {
        return low;
    }
    return std::max(offset, high - viewLength);
}

bool isHiddenWithinTree(const UIView& view) {
    const UIView* candidate = &view;
    while (candidate != nullptr && !candidate->isHidden()) {
        candidate = candidate->superview();
    }
    return candidate != nullptr;
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
    if (isOtherOffset(offset)) {
        setBounds({offset, bounds().size});
        if (const auto receiver = delegate()) {
            receiver->scrollViewDidScroll(this);
        }
    }
}

bool UIScrollView::isOtherOffset(const CGPoint& offset) const {
    return offset != contentOffset() && std::isfinite(offset.x) && std::isfinite(offset.y);
}

void UIScrollView::scrollToShow(const CGRect& rect) {
    const CGPoint offset = contentOffset();
    const CGSize size = bounds().size;
    setContentOffset(limitedOffset(
        {offsetShowing(offset.x, size.width, CGRectGetMinX(rect), CGRectGetMaxX(rect)),
         offsetShowing(offset.y, size.height, CGRectGetMinY(rect), CGRectGetMaxY(rect))}));
}

CGPoint UIScrollView::limitedOffset(const CGPoint& offset) const {
    return {clampedOffset(offset.x, horizontalRange()), clampedOffset(offset.y, verticalRange())};
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
    const ScrollRange across = horizontalRange();
    const ScrollRange down = verticalRange();
    m_motion.reset();
    m_bandSize = {bandLength(offset.x, across, bounds().size.width),
                  bandLength(offset.y, down, bounds().size.height)};
    m_dragStart = {unbandedOffset(offset.x, across, m_bandSize.width, m_bounces),
                   unbandedOffset(offset.y, down, m_bandSize.height, m_bounces)};
    m_isDragging = true;
    if (UIWindow* top = window()) {
        top->addActive(std::static_pointer_cast<UIScrollView>(shared_from_this()));
    }
    if (const auto receiver = delegate()) {
        receiver->scrollViewWillBeginDragging(this);
    }
}

void UIScrollView::dragBy(const CGPoint& translation) {
    CGPoint offset = contentOffset();
    if (canMoveHorizontally()) {
        offset.x = bandedOffset(m_dragStart.x - translation.x, horizontalRange(), m_bandSize.width,
                                m_bounces);
    }
    if (canMoveVertically()) {
        offset.y = bandedOffset(m_dragStart.y - translation.y, verticalRange(), m_bandSize.height,
                                m_bounces);
    }
    moveContentTo(offset);
}

CGPoint UIScrollView::contentVelocity(const CGPoint& fingerVelocity) const {
    const CGPoint offset = contentOffset();
    CGPoint velocity;
    if (canMoveHorizontally()) {
        velocity.x =
            -fingerVelocity.x * bandSlope(offset.x, horizontalRange(), m_bandSize.width, m_bounces);
    }
    if (canMoveVertically()) {
        velocity.y =
            -fingerVelocity.y * bandSlope(offset.y, verticalRange(), m_bandSize.height, m_bounces);
    }
    return velocity;
}

// The delegate is notified before the motion begins. A drag or motion that the delegate begins
// replaces the motion; where it moves the content, the motion begins without velocity.
void UIScrollView::endDrag(const CGPoint& fingerVelocity, double time) {
    const CGPoint offset = contentOffset();
    const CGPoint velocity = contentVelocity(fingerVelocity);
    const bool willDecelerate = !plannedMotion(velocity, time).isAtRest();
    m_isDragging = false;
    if (const auto receiver = delegate()) {
        receiver->scrollViewDidEndDragging(this, willDecelerate);
    }
    if (!m_isDragging && !m_motion) {
        startMotion(contentOffset() == offset ? velocity : CGPoint{}, time);
    }
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
    const auto retained = shared_from_this();
    beginDrag();
    if (m_isDragging) {
        moveContentTo(offset);
    }
    const bool isStillDragging = m_isDragging;
    if (isStillDragging) {
        endDrag({}, time);
    }
    return isStillDragging;
}

// Motion.

double UIScrollView::Motion::duration() const {
    return std::max(x.duration(), y.duration());
}

bool UIScrollView::Motion::isAtRest() const {
    return x.isAtRest() && y.isAtRest();
}

CGPoint UIScrollView::Motion::offsetAt(double elapsed) const {
    return {x.offsetAt(elapsed), y.offsetAt(elapsed)};
}

CGPoint UIScrollView::Motion::velocityAt(double elapsed) const {
    return {x.velocityAt(elapsed), y.velocityAt(elapsed)};
}

UIScrollView::Motion UIScrollView::plannedMotion(const CGPoint& velocity, double time) const {
    const CGPoint offset = contentOffset();
    const ScrollRange across = horizontalRange();
    const ScrollRange down = verticalRange();
    return {time,
            time,
            across,
            down,
            AxisMotion(offset.x, velocity.x, across, m_bounces),
            AxisMotion(offset.y, velocity.y, down, m_bounces)};
}

void UIScrollView::startMotion(const CGPoint& velocity, double time) {
    UIWindow* top = window();
    if (top == nullptr || isHiddenWithinTree(*this)) {
        settle();
        return;
    }
    const Motion motion = plannedMotion(velocity, time);
    if (!motion.isAtRest()) {
        m_motion = motion;
        top->addActive(std::static_pointer_cast<UIScrollView>(shared_from_this()));
    }
}

void UIScrollView::advanceMotion(double time) {
    replanForNewEdges();
    m_motion->latest = std::max(time, m_motion->start);
    const double elapsed = m_motion->latest - m_motion->start;
    if (elapsed < m_motion->duration()) {
        moveContentTo(m_motion->offsetAt(elapsed));
        return;
    }
    const CGPoint end{m_motion->x.end(), m_motion->y.end()};
    m_motion.reset();
    moveContentTo(end);
    if (const auto receiver = delegate()) {
        receiver->scrollViewDidEndDecelerating(this);
    }
}

// The content continues from the latest frame with its velocity.
void UIScrollView::replanForNewEdges() {
    if (m_motion->across != horizontalRange() || m_motion->down != verticalRange()) {
        const double elapsed = m_motion->latest - m_motion->start;
        m_motion = plannedMotion(m_motion->velocityAt(elapsed), m_motion->latest);
    }
}

void UIScrollView::settle() {
    m_isDragging = false;
    m_motion.reset();
    const CGPoint inside = limitedOffset(contentOffset());
    if (isOtherOffset(inside)) {
        setBounds({inside, bounds().size});
    }
}

} // namespace quorvel::platform
