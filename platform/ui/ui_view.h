// A node of a retained tree of rectangles, with layout, hit-testing and painting.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/geometry.h"
#include "platform/graphics_context.h"
#include "platform/key_value_coding.h"
#include "platform/ui/ui_touch.h"
#include "platform/ui_color.h"

namespace quorvel::platform {

class UIEvent;
class UIWindow;

// The parts of a view's frame that follow its superview's size; flags that can be combined.
enum UIViewAutoresizing : unsigned {
    UIViewAutoresizingNone = 0,
    UIViewAutoresizingFlexibleLeftMargin = 1U << 0U,
    UIViewAutoresizingFlexibleWidth = 1U << 1U,
    UIViewAutoresizingFlexibleRightMargin = 1U << 2U,
    UIViewAutoresizingFlexibleTopMargin = 1U << 3U,
    UIViewAutoresizingFlexibleHeight = 1U << 4U,
    UIViewAutoresizingFlexibleBottomMargin = 1U << 5U,
};

// Create views with std::make_shared. A view owns its subviews, and refers to its superview.
class UIView : public KeyValueCoding, public std::enable_shared_from_this<UIView> {
public:
    explicit UIView(const CGRect& frame = {});
    ~UIView() override;
    UIView(const UIView&) = delete;
    UIView& operator=(const UIView&) = delete;

    virtual std::string_view className() const { return "UIView"; }

    // In the superview's coordinates. A negative size is allowed.
    CGRect frame() const;
    void setFrame(const CGRect& frame);
    // In the view's own coordinates; a scrolled view's origin is its offset. A new size leaves
    // the frame's centre unchanged.
    const CGRect& bounds() const { return m_bounds; }
    void setBounds(const CGRect& bounds);

    UIView* superview() const { return m_superview; }              // null for the root of a tree
    UIWindow* window();                                            // null outside a window
    const std::vector<std::shared_ptr<UIView>>& subviews() const { // from back to front
        return m_subviews;
    }
    // Removes the view from its old superview. Does nothing for null, and where the view would
    // become its own descendant.
    void addSubview(const std::shared_ptr<UIView>& view);
    // `index`: its index among the subviews afterwards; in front where that is too large.
    void insertSubview(const std::shared_ptr<UIView>& view, std::size_t index);
    // Ends drags and motions at and below the view immediately, with the content within its edges
    // and without messages.
    void removeFromSuperview();
    bool isDescendantOfView(const UIView& view) const; // true for the view itself

    std::int64_t tag() const { return m_tag; }
    void setTag(std::int64_t tag) { m_tag = tag; }
    const std::optional<UIColor>& backgroundColor() const { return m_backgroundColor; }
    void setBackgroundColor(const std::optional<UIColor>& color) { m_backgroundColor = color; }
    unsigned autoresizingMask() const { return m_autoresizingMask; }
    void setAutoresizingMask(unsigned mask) { m_autoresizingMask = mask; }
    bool isHidden() const { return m_hidden; }
    // Hiding a view ends drags and motions at and below it, like removing it.
    void setHidden(bool hidden);
    bool isUserInteractionEnabled() const { return m_userInteractionEnabled; }
    void setUserInteractionEnabled(bool enabled) { m_userInteractionEnabled = enabled; }
    bool clipsToBounds() const { return m_clipsToBounds; }
    void setClipsToBounds(bool clips) { m_clipsToBounds = clips; }

    void setNeedsLayout();
    // Lays out this view and its descendants where a layout is due.
    void layoutIfNeeded();
    virtual void layoutSubviews() {}
    // A view that contains this one was scrolled or resized, so that another part of this one may
    // be visible.
    virtual void visibleAreaDidChange() {}
    // The part of the bounds that no scroll view or window around the view cuts off; may be empty.
    CGRect visibleArea() const;

    // The innermost view under the point (in this view's coordinates); null: none. Skips hidden
    // views and those without user interaction, together with their descendants.
    std::shared_ptr<UIView> hitTest(const CGPoint& point);
    virtual bool pointInside(const CGPoint& point) const;
    // `view` null: the coordinates of the root of the tree.
    CGPoint convertPointToView(const CGPoint& point, const UIView* view) const;

    // The messages of a touch that began on this view. The default passes each one on to the
    // superview, up to the window. The messages continue while a scroll view follows the finger.
    virtual void touchesBegan(const UITouchSet& touches, UIEvent& event);
    virtual void touchesMoved(const UITouchSet& touches, UIEvent& event);
    virtual void touchesEnded(const UITouchSet& touches, UIEvent& event);
    virtual void touchesCancelled(const UITouchSet& touches, UIEvent& event);
    // Whether neither this view nor a view that contains it is hidden or without user interaction.
    bool canBeTouched() const;

    // Paints this view and its descendants with their current layout. The context's origin is the
    // origin of the view's bounds.
    void render(GraphicsContext& context);
    virtual void drawRect(GraphicsContext&) {} // the view's own content; not called without a size

private:
    struct OpenPainting;

    std::shared_ptr<UIView> detach(); // the view itself
    void setSize(CGSize size);
    void setNeedsLayoutThroughout();
    void layoutDueViews();
    void layoutOwnIfDue();
    void notifyVisibleAreasBelow();
    bool takesTouches() const;
    std::shared_ptr<UIView> retainedSuperview() const;
    CGPoint fromSuperview(const CGPoint& point) const;
    CGPoint originInTree() const;
    bool isPainted(const std::optional<CGRect>& clip) const;
    OpenPainting beginPainting(GraphicsContext& context, const CGPoint& shift,
                               const std::optional<CGRect>& clip);

    UIView* m_superview = nullptr;
    std::vector<std::shared_ptr<UIView>> m_subviews;
    CGPoint m_origin; // of the frame
    CGRect m_bounds;
    std::int64_t m_tag = 0;
    std::optional<UIColor> m_backgroundColor;
    unsigned m_autoresizingMask = UIViewAutoresizingNone;
    bool m_hidden = false;
    bool m_userInteractionEnabled = true;
    bool m_clipsToBounds = false;
    bool m_needsLayout = true;
    bool m_holdsDueLayout = true; // a layout is due here or below
};

} // namespace quorvel::platform
