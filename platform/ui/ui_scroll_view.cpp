#include "platform/ui/ui_scroll_view.h"

#include <cmath>

namespace quorvel::platform {

UIScrollView::UIScrollView(const CGRect& frame)
    : UIView(frame) {
    setClipsToBounds(true);
}

void UIScrollView::setContentOffset(const CGPoint& offset) {
    if (offset == contentOffset() || !std::isfinite(offset.x) || !std::isfinite(offset.y)) {
        return;
    }
    setBounds({offset, bounds().size});
    if (const auto receiver = delegate()) {
        receiver->scrollViewDidScroll(this);
    }
}

} // namespace quorvel::platform
