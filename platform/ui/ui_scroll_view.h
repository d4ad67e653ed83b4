// A view whose content may be larger than itself; its bounds' origin is the content offset.
#pragma once

#include <memory>
#include <utility>

#include "platform/ui/ui_view.h"

namespace quorvel::platform {

class UIScrollView;

class UIScrollViewDelegate {
public:
    virtual ~UIScrollViewDelegate() = default;
    virtual void scrollViewDidScroll(UIScrollView*) {}
};

// Clips its content.
class UIScrollView : public UIView {
public:
    explicit UIScrollView(const CGRect& frame = {});

    std::string_view className() const override { return "UIScrollView"; }

    CGSize contentSize() const { return m_contentSize; }
    void setContentSize(CGSize size) { m_contentSize = size; }
    CGPoint contentOffset() const { return bounds().origin; }
    void setContentOffset(const CGPoint& offset); // taken as it is, also past an edge

    bool isScrollEnabled() const { return m_scrollEnabled; }
    void setScrollEnabled(bool enabled) { m_scrollEnabled = enabled; }
    bool bounces() const { return m_bounces; }
    void setBounces(bool bounces) { m_bounces = bounces; }
    bool alwaysBounceHorizontal() const { return m_alwaysBounceHorizontal; }
    void setAlwaysBounceHorizontal(bool bounces) { m_alwaysBounceHorizontal = bounces; }
    bool alwaysBounceVertical() const { return m_alwaysBounceVertical; }
    void setAlwaysBounceVertical(bool bounces) { m_alwaysBounceVertical = bounces; }

    // Not owned; nothing is sent to a delegate that is gone.
    std::shared_ptr<UIScrollViewDelegate> delegate() const { return m_delegate.lock(); }
    void setDelegate(std::weak_ptr<UIScrollViewDelegate> delegate) {
        m_delegate = std::move(delegate);
    }

private:
    CGSize m_contentSize;
    bool m_scrollEnabled = true;
    bool m_bounces = true;
    bool m_alwaysBounceHorizontal = false;
    bool m_alwaysBounceVertical = false;
    std::weak_ptr<UIScrollViewDelegate> m_delegate;
};

} // namespace quorvel::platform
