// Functions that walk a tree use a list instead of recursion, so that only memory limits the depth
// of a tree. The exception is a touch, which views pass on to each other.
#include "platform/ui/ui_view.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/ui/ui_event.h"
#include "platform/ui/ui_window.h"

namespace quorvel::platform {

namespace {

// Limits layouts that request another layout.
constexpr int mostLayoutPasses = 8;

CGPoint plus(const CGPoint& a, const CGPoint& b) {
    return {a.x + b.x, a.y + b.y};
}

CGPoint minus(const CGPoint& a, const CGPoint& b) {
    return {a.x - b.x, a.y - b.y};
}

bool isEmpty(const CGRect& rect) {
    return !(rect.size.width > 0 && rect.size.height > 0);
}

bool intersects(const CGRect& a, const CGRect& b) {
    return CGRectGetMinX(a) < CGRectGetMaxX(b) && CGRectGetMinX(b) < CGRectGetMaxX(a) &&
           CGRectGetMinY(a) < CGRectGetMaxY(b) && CGRectGetMinY(b) < CGRectGetMaxY(a);
}

CGRect intersection(const CGRect& a, const CGRect& b) {
    const CGFloat x = std::max(CGRectGetMinX(a), CGRectGetMinX(b));
    const CGFloat y = std::max(CGRectGetMinY(a), CGRectGetMinY(b));
    return CGRectMake(x, y, std::min(CGRectGetMaxX(a), CGRectGetMaxX(b)) - x,
                      std::min(CGRectGetMaxY(a), CGRectGetMaxY(b)) - y);
}

// A view's position and length along one axis, and its flexible parts.
struct Span {
    CGFloat origin;
    CGFloat length;
};

struct Flexibility {
    bool before;
    bool length;
    bool after;
};

// The flexible parts share the change in proportion to their lengths, or evenly where all are 0.
Span resizedSpan(const Span& span, Flexibility flexible, CGFloat oldTotal, CGFloat newTotal) {
    const int parts = int{flexible.before} + int{flexible.length} + int{flexible.after};
    if (parts == 0) {
        return span;
    }
    const auto weight = [](bool isFlexible, CGFloat size) {
        return isFlexible ? std::max(size, 0.0) : 0.0;
    };
    const CGFloat before = weight(flexible.before, span.origin);
    const CGFloat length = weight(flexible.length, span.length);
    const CGFloat after = weight(flexible.after, oldTotal - span.origin - span.length);
    const CGFloat weights = before + length + after;
    const CGFloat delta = newTotal - oldTotal;
    const auto share = [&](bool isFlexible, CGFloat ownWeight) {
        if (!isFlexible) {
            return 0.0;
        }
        if (parts == 1) {
            return delta;
        }
        return weights > 0 ? delta * ownWeight / weights : delta / parts;
    };
    const CGFloat grown = span.length + share(flexible.length, length);
    return {span.origin + share(flexible.before, before),
            grown < 0 && span.length >= 0 ? 0.0 : grown};
}

CGRect resizedFrame(const CGRect& frame, unsigned mask, CGSize oldSize, CGSize newSize) {
    const auto has = [mask](UIViewAutoresizing part) { return (mask & part) != 0; };
    const Span across = resizedSpan({frame.origin.x, frame.size.width},
                                    {has(UIViewAutoresizingFlexibleLeftMargin),
                                     has(UIViewAutoresizingFlexibleWidth),
                                     has(UIViewAutoresizingFlexibleRightMargin)},
                                    oldSize.width, newSize.width);
    const Span down = resizedSpan({frame.origin.y, frame.size.height},
                                  {has(UIViewAutoresizingFlexibleTopMargin),
                                   has(UIViewAutoresizingFlexibleHeight),
                                   has(UIViewAutoresizingFlexibleBottomMargin)},
                                  oldSize.height, newSize.height);
    return CGRectMake(across.origin, down.origin, across.length, down.length);
}

} // namespace

// A view whose subviews are being painted.
struct UIView::OpenPainting {
    std::vector<std::shared_ptr<UIView>> subviews;
    std::size_t next;
    std::optional<CGRect> clip; // in the view's own coordinates; absent: unknown
};

UIView::UIView(const CGRect& frame)
    : m_origin(frame.origin)
    , m_bounds{{}, frame.size} {}

// A subview with another owner outlives this view, and must not refer to it afterwards.
UIView::~UIView() {
    std::vector<std::shared_ptr<UIView>> orphans;
    const auto takeSubviews = [&orphans](UIView& view) {
        for (auto& subview : view.m_subviews) {
            subview->m_superview = nullptr;
            orphans.push_back(std::move(subview));
        }
        view.m_subviews.clear();
    };
    takeSubviews(*this);
    while (!orphans.empty()) {
        const std::shared_ptr<UIView> view = std::move(orphans.back());
        orphans.pop_back();
        if (view.use_count() ==
            1) { // destroys its subviews here and not in its destructor, against deep recursion
            takeSubviews(*view);
        }
    }
}

CGRect UIView::frame() const {
    return {m_origin, m_bounds.size};
}

void UIView::setFrame(const CGRect& frame) {
    m_origin = frame.origin;
    setSize(frame.size);
}

void UIView::setBounds(const CGRect& bounds) {
    if (bounds.size != m_bounds.size) {
        m_origin.x += (m_bounds.size.width - bounds.size.width) / 2;
        m_origin.y += (m_bounds.size.height - bounds.size.height) / 2;
    }
    if (bounds.origin != m_bounds.origin) {
        m_bounds.origin = bounds.origin;
        setNeedsLayout();
        notifyVisibleAreasBelow();
    }
    setSize(bounds.size);
}

void UIView::setSize(CGSize size) {
    struct Resized {
        UIView* view;
        CGSize oldSize;
    };
    std::vector<Resized> resized;
    const auto resize = [&resized](UIView& view, CGSize newSize) {
        if (view.m_bounds.size != newSize) {
            resized.push_back({&view, view.m_bounds.size});
            view.m_bounds.size = newSize;
            view.setNeedsLayout();
        }
    };
    resize(*this, size);
    const bool isResized = !resized.empty();
    while (!resized.empty()) {
        const Resized one = resized.back();
        resized.pop_back();
        for (const auto& subview : one.view->m_subviews) {
            const CGRect place = resizedFrame(subview->frame(), subview->m_autoresizingMask,
                                              one.oldSize, one.view->m_bounds.size);
            subview->m_origin = place.origin;
            resize(*subview, place.size);
        }
    }
    if (isResized) {
        notifyVisibleAreasBelow();
    }
}

void UIView::notifyVisibleAreasBelow() {
    std::vector<UIView*> views = {this};
    while (!views.empty()) {
        const UIView* view = views.back();
        views.pop_back();
        for (const auto& subview : view->m_subviews) {
            subview->visibleAreaDidChange();
            views.push_back(subview.get());
        }
    }
}

CGRect UIView::visibleArea() const {
    CGRect area = m_bounds;
    CGPoint shift; // from this view's coordinates to those of the view
    for (const UIView* view = this; view->m_superview != nullptr; view = view->m_superview) {
        shift = plus(shift, minus(view->m_origin, view->m_bounds.origin));
        if (view->m_superview->m_clipsToBounds) {
            const CGRect& bounds = view->m_superview->m_bounds;
            area = intersection(area, {minus(bounds.origin, shift), bounds.size});
        }
    }
    return area;
}

UIWindow* UIView::window() {
    for (UIView* view = this; view != nullptr; view = view->m_superview) {
        if (auto* found = dynamic_cast<UIWindow*>(view)) {
            return found;
        }
    }
    return nullptr;
}

void UIView::addSubview(const std::shared_ptr<UIView>& view) {
    insertSubview(view, m_subviews.size());
}

void UIView::insertSubview(const std::shared_ptr<UIView>& view, std::size_t index) {
    // Only a view with subviews can contain this one.
    if (!view || view.get() == this || (!view->m_subviews.empty() && isDescendantOfView(*view))) {
        return;
    }
    // The argument may refer to an entry of a list that changes here.
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): the copy owns the view
    const std::shared_ptr<UIView> added = view;
    UIWindow* oldWindow = added->window();
    if (added->m_superview != nullptr) {
        added->detach();
    }
    const auto position = static_cast<std::ptrdiff_t>(std::min(index, m_subviews.size()));
    m_subviews.insert(m_subviews.begin() + position, added);
    added->m_superview = this;
    if (window() != oldWindow) {
        added->setNeedsLayoutThroughout();
        if (oldWindow != nullptr) {
            oldWindow->stopScrollingBelow(*added);
        }
    }
    setNeedsLayout();
}

void UIView::removeFromSuperview() {
    if (m_superview == nullptr) {
        return;
    }
    UIWindow* oldWindow = window();
    const std::shared_ptr<UIView> retained = detach();
    if (oldWindow != nullptr) {
        oldWindow->stopScrollingBelow(*this);
    }
}

std::shared_ptr<UIView> UIView::detach() {
    UIView& superview = *m_superview;
    auto& siblings = superview.m_subviews;
    const auto place = std::find_if(siblings.begin(), siblings.end(),
                                    [this](const auto& view) { return view.get() == this; });
    std::shared_ptr<UIView> self = *place;
    siblings.erase(place);
    m_superview = nullptr;
    superview.setNeedsLayout();
    return self;
}

bool UIView::isDescendantOfView(const UIView& view) const {
    const UIView* candidate = this;
    while (candidate != nullptr && candidate != &view) {
        candidate = candidate->m_superview;
    }
    return candidate != nullptr;
}

void UIView::setHidden(bool hidden) {
    m_hidden = hidden;
    if (UIWindow* top = hidden ? window() : nullptr) {
        top->stopScrollingBelow(*this);
    }
}

void UIView::setNeedsLayout() {
    m_needsLayout = true;
    // The flag of a view implies that of all views around it.
    for (UIView* view = this; view != nullptr && !view->m_holdsDueLayout;
         view = view->m_superview) {
        view->m_holdsDueLayout = true;
    }
}

// The layout of a descendant may depend on the screen, which the window provides.
void UIView::setNeedsLayoutThroughout() {
    std::vector<UIView*> views = {this};
    while (!views.empty()) {
        UIView* view = views.back();
        views.pop_back();
        view->m_needsLayout = true;
        view->m_holdsDueLayout = true;
        for (const auto& subview : view->m_subviews) {
            views.push_back(subview.get());
        }
    }
}

void UIView::layoutIfNeeded() {
    const std::shared_ptr<UIView> retained = weak_from_this().lock();
    for (int pass = 0; pass < mostLayoutPasses && m_holdsDueLayout; ++pass) {
        layoutDueViews();
    }
}

void UIView::layoutDueViews() {
    layoutOwnIfDue();
    std::vector<std::shared_ptr<UIView>> due;
    const auto addDueSubviews = [&due](const UIView& view) {
        std::copy_if(view.m_subviews.rbegin(), view.m_subviews.rend(), std::back_inserter(due),
                     [](const auto& subview) { return subview->m_holdsDueLayout; });
    };
    addDueSubviews(*this);
    while (!due.empty()) {
        const std::shared_ptr<UIView> view = std::move(due.back());
        due.pop_back();
        if (view->m_superview == nullptr) { // removed by an earlier layout
            continue;
        }
        view->layoutOwnIfDue();
        addDueSubviews(*view);
    }
}

void UIView::layoutOwnIfDue() {
    m_holdsDueLayout = false;
    if (std::exchange(m_needsLayout, false)) {
        layoutSubviews();
    }
}

bool UIView::takesTouches() const {
    return !m_hidden && m_userInteractionEnabled;
}

CGPoint UIView::fromSuperview(const CGPoint& point) const {
    return plus(minus(point, m_origin), m_bounds.origin);
}

std::shared_ptr<UIView> UIView::hitTest(const CGPoint& point) {
    if (!takesTouches() || !pointInside(point)) {
        return nullptr;
    }
    // A subview under the point is a result itself, so the search never returns to a superview.
    std::shared_ptr<UIView> hit = shared_from_this();
    CGPoint hitPoint = point;
    for (;;) {
        const auto& subviews = hit->m_subviews;
        const auto front =
            std::find_if(subviews.rbegin(), subviews.rend(), [&](const auto& subview) {
                return subview->takesTouches() &&
                       subview->pointInside(subview->fromSuperview(hitPoint));
            });
        if (front == subviews.rend()) {
            return hit;
        }
        hitPoint = (*front)->fromSuperview(hitPoint);
        hit = std::shared_ptr<UIView>(*front);
    }
}

bool UIView::pointInside(const CGPoint& point) const {
    return CGRectContainsPoint(m_bounds, point);
}

// The view's (0, 0) in the coordinates of the root of its tree.
CGPoint UIView::originInTree() const {
    CGPoint origin;
    for (const UIView* view = this; view->m_superview != nullptr; view = view->m_superview) {
        origin = plus(origin, minus(view->m_origin, view->m_bounds.origin));
    }
    return origin;
}

CGPoint UIView::convertPointToView(const CGPoint& point, const UIView* view) const {
    const CGPoint inTree = plus(point, originInTree());
    return view != nullptr ? minus(inTree, view->originInTree()) : inTree;
}

// Touches.

bool UIView::canBeTouched() const {
    const UIView* view = this;
    while (view != nullptr && view->takesTouches()) {
        view = view->m_superview;
    }
    return view == nullptr;
}

// A touch message may remove the view from its tree.
std::shared_ptr<UIView> UIView::retainedSuperview() const {
    return m_superview != nullptr ? m_superview->weak_from_this().lock() : nullptr;
}

void UIView::touchesBegan(const UITouchSet& touches, UIEvent& event) {
    if (const auto above = retainedSuperview()) {
        above->touchesBegan(touches, event);
    }
}

void UIView::touchesMoved(const UITouchSet& touches, UIEvent& event) {
    if (const auto above = retainedSuperview()) {
        above->touchesMoved(touches, event);
    }
}

void UIView::touchesEnded(const UITouchSet& touches, UIEvent& event) {
    if (const auto above = retainedSuperview()) {
        above->touchesEnded(touches, event);
    }
}

void UIView::touchesCancelled(const UITouchSet& touches, UIEvent& event) {
    if (const auto above = retainedSuperview()) {
        above->touchesCancelled(touches, event);
    }
}

// Painting.

bool UIView::isPainted(const std::optional<CGRect>& clip) const {
    if (m_hidden) {
        return false;
    }
    // A view that does not clip may show content outside its bounds.
    return !m_clipsToBounds || (!isEmpty(m_bounds) && (!clip || intersects(frame(), *clip)));
}

UIView::OpenPainting UIView::beginPainting(GraphicsContext& context, const CGPoint& shift,
                                           const std::optional<CGRect>& clip) {
    OpenPainting painting{m_subviews, 0, clip};
    if (painting.clip) {
        painting.clip->origin = minus(painting.clip->origin, shift);
    }
    context.saveGState();
    if (shift != CGPoint{}) {
        context.translateCTM(shift.x, shift.y);
    }
    if (m_clipsToBounds) {
        context.clipToRect(m_bounds);
        painting.clip = painting.clip ? intersection(*painting.clip, m_bounds) : m_bounds;
    }
    if (!isEmpty(m_bounds)) {
        if (m_backgroundColor && m_backgroundColor->alpha > 0) {
            context.setFillColor(*m_backgroundColor);
            context.fillRect(m_bounds);
        }
        drawRect(context);
    }
    return painting;
}

void UIView::render(GraphicsContext& context) {
    if (!isPainted(std::nullopt)) {
        return;
    }
    std::vector<OpenPainting> open;
    open.push_back(beginPainting(context, minus({}, m_bounds.origin), std::nullopt));
    while (!open.empty()) {
        OpenPainting& top = open.back();
        if (top.next == top.subviews.size()) {
            context.restoreGState();
            open.pop_back();
            continue;
        }
        UIView& view = *top.subviews[top.next++];
        if (view.isPainted(top.clip)) {
            const CGPoint shift = minus(view.m_origin, view.m_bounds.origin);
            open.push_back(view.beginPainting(context, shift, top.clip));
        }
    }
}

} // namespace quorvel::platform
