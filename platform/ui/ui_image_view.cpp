#include "platform/ui/ui_image_view.h"

#include <algorithm>
#include <utility>

namespace quorvel::platform {

namespace {

bool hasArea(CGSize size) {
    return size.width > 0 && size.height > 0;
}

// The largest rectangle of the picture's proportions, in the middle of the bounds.
CGRect aspectFitRect(CGSize imageSize, const CGRect& bounds) {
    const CGFloat scale = hasArea(imageSize) ? std::min(bounds.size.width / imageSize.width,
                                                        bounds.size.height / imageSize.height)
                                             : 0;
    const CGSize size = {imageSize.width * scale, imageSize.height * scale};
    return {{bounds.origin.x + (bounds.size.width - size.width) / 2,
             bounds.origin.y + (bounds.size.height - size.height) / 2},
            size};
}

} // namespace

std::string_view contentModeName(UIViewContentMode mode) {
    return mode == UIViewContentMode::scaleAspectFit ? "scaleAspectFit" : "scaleToFill";
}

CGRect imageRect(UIViewContentMode mode, CGSize imageSize, const CGRect& bounds) {
    return mode == UIViewContentMode::scaleAspectFit ? aspectFitRect(imageSize, bounds) : bounds;
}

UIImageView::UIImageView(const CGRect& frame)
    : UIView(frame) {
    setUserInteractionEnabled(false);
}

void UIImageView::setImage(std::shared_ptr<const UIImage> image) {
    m_image = std::move(image);
}

void UIImageView::drawRect(GraphicsContext& context) {
    if (m_image && hasArea(m_image->size())) {
        context.drawImage(*m_image, imageRect(m_contentMode, m_image->size(), bounds()));
    }
}

} // namespace quorvel::platform
