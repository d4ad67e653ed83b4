// The view: a retained tree of rectangles that lay themselves out, take hits and paint.
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

// Which parts of a view's place follow its superview's size; to be or-ed together.
enum UIViewAutoresizing : unsigned {
    UIViewAutoresizingNone = 0,
    UIViewAutoresizingFlexibleLeftMargin = 1U << 0U,
    UIViewAutoresizingFlexibleWidth = 1U << 1U,
    UIViewAutoresizingFlexibleRightMargin = 1U << 2U,
    UIViewAutoresizingFlexibleTopMargin = 1U << 3U,
    UIViewAutoresizingFlexibleHeight = 1U << 4U,
    UIViewAutoresizingFlexibleBottomMargin = 1U << 5U,
};

// Always made with std::make_shared. A view owns its subviews; the superview is a back reference.
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

    UIView* superview() const { return m_superview; }              // null for the top of a tree
    UIWindow* window();                                            // null outside a window
    const std::vector<std::shared_ptr<UIView>>& subviews() const { // back first
        return m_subviews;
    }
    // Takes the view from its old superview. Nothing happens for null, or where a view would come
    // to lie in itself.
    void addSubview(const std::shared_ptr<UIView>& view);
    // `index`: its place among the subviews afterwards; the front where that is too large.
    void insertSubview(const std::shared_ptr<UIView>& view, std::size_t index);
    // Where a view leaves its window, drags and motions at and below it end at once, with the
    // content inside its edges and without a message.
    void removeFromSuperview();
    bool isDescendantOfView(const UIView& view) const; // a view descends from itself

    std::int64_t tag() const { return m_tag; }
    void setTag(std::int64_t tag) { m_tag = tag; }
    const std::optional<UIColor>& backgroundColor() const { return m_backgroundColor; }
    void setBackgroundColor(const std::optional<UIColor>& color) { m_backgroundColor = color; }
    unsigned autoresizingMask() const { return m_autoresizingMask; }
    void setAutoresizingMask(unsigned mask) { m_autoresizingMask = mask; }
    bool isHidden() const { return m_hidden; }
    // Hiding a view ends drags and motions at and below it, as if it left the window.
    void setHidden(bool hidden);
    bool isUserInteractionEnabled() const { return m_userInteractionEnabled; }
    void setUserInteractionEnabled(bool enabled) { m_userInteractionEnabled = enabled; }
    bool clipsToBounds() const { return m_clipsToBounds; }
    void setClipsToBounds(bool clips) { m_clipsToBounds = clips; }

    void setNeedsLayout();
    // Lays out this view and everything below it where a layout is due.
    void layoutIfNeeded();
    virtual void layoutSubviews() {}

    // The deepest view under the point (in this view's coordinates); null where there is none.
    // Hidden views and those without interaction are skipped with everything below them.
    std::shared_ptr<UIView> hitTest(const CGPoint& point);
    virtual bool pointInside(const CGPoint& point) const;
    // `view` null: the coordinates of the top of the tree.
    CGPoint convertPointToView(const CGPoint& point, const UIView* view) const;

    // What happens to a touch that came down on this view, on the view itself first. Unless a class
    // does something of its own, the message goes on to the superview, up to the window. A view
    // goes on getting its touch while a scroll view moves with it.
    virtual void touchesBegan(const UITouchSet& touches, UIEvent& event);
    virtual void touchesMoved(const UITouchSet& touches, UIEvent& event);
    virtual void touchesEnded(const UITouchSet& touches, UIEvent& event);
    virtual void touchesCancelled(const UITouchSet& touches, UIEvent& event);
    // Whether a finger on it would reach it: neither it nor a view above it is hidden or without
    // interaction.
    bool canBeTouched() const;

    // Paints this view and its subviews, as they are laid out now; the context's origin is the
    // view's bounds origin.
    void render(GraphicsContext& context);
    virtual void drawRect(GraphicsContext&) {} // its own content, where it has a size

private:
    struct OpenPainting;

    std::shared_ptr<UIView> detach(); // the view itself
    void setSize(CGSize size);
    void setNeedsLayoutThroughout();
    void layoutDueViews();
    void layoutOwnIfDue();
    bool takesTouches() const;
    std::shared_ptr<UIView> retainedSuperview() const;
    CGPoint fromSuperview(const CGPoint& point) const;
    CGPoint originInTree() const;
    bool isPainted(const std::optional<CGRect>& clip) const;
    OpenPainting beginPainting(GraphicsContext& context, const CGPoint& shift,
                               const std::optional<CGRect>& clip);

    UIView* m_superview = nullptr;
    std::vector<std::shared_ptr<UIView>> m_subviews;
    CGPoint m_origin; // the frame's
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
