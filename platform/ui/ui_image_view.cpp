#include "platform/ui/ui_image_view.h"

#include <algorithm>
#include <utility>

namespace quorvel::platform {

namespace {

enum class Place { start, middle, end };

CGFloat placed(Place place, CGFloat origin, CGFloat room, CGFloat length) {
    switch (place) {
    case Place::start:
        return origin;
    case Place::middle:
        return origin + (room - length) / 2;
    case Place::end:
        return origin + room - length;
    }
    return origin;
}

CGRect placedRect(const CGRect& bounds, CGSize size, Place across, Place down) {
    return {{placed(across, bounds.origin.x, bounds.size.width, size.width),
             placed(down, bounds.origin.y, bounds.size.height, size.height)},
            size};
}

bool hasArea(CGSize size) {
    return size.width > 0 && size.height > 0;
}

CGSize scaledSize(CGSize size, const CGRect& bounds, bool fill) {
    if (!hasArea(size)) {
        return {};
    }
    const CGFloat across = bounds.size.width / size.width;
    const CGFloat down = bounds.size.height / size.height;
    const CGFloat scale = fill ? std::max(across, down) : std::min(across, down);
    return {size.width * scale, size.height * scale};
}

} // namespace

std::string_view contentModeName(UIViewContentMode mode) {
    switch (mode) {
    case UIViewContentMode::scaleToFill:
        return "scaleToFill";
    case UIViewContentMode::scaleAspectFit:
        return "scaleAspectFit";
    case UIViewContentMode::scaleAspectFill:
        return "scaleAspectFill";
    case UIViewContentMode::redraw:
        return "redraw";
    case UIViewContentMode::center:
        return "center";
    case UIViewContentMode::top:
        return "top";
    case UIViewContentMode::bottom:
        return "bottom";
    case UIViewContentMode::left:
        return "left";
    case UIViewContentMode::right:
        return "right";
    case UIViewContentMode::topLeft:
        return "topLeft";
    case UIViewContentMode::topRight:
        return "topRight";
    case UIViewContentMode::bottomLeft:
        return "bottomLeft";
    case UIViewContentMode::bottomRight:
        return "bottomRight";
    }
    return "scaleToFill";
}

CGRect imageRect(UIViewContentMode mode, CGSize imageSize, const CGRect& bounds) {
    const auto at = [&](Place across, Place down) {
        return placedRect(bounds, imageSize, across, down);
    };
    switch (mode) {
    case UIViewContentMode::scaleToFill:
    case UIViewContentMode::redraw:
        return bounds;
    case UIViewContentMode::scaleAspectFit:
        return placedRect(bounds, scaledSize(imageSize, bounds, false), Place::middle,
                          Place::middle);
    case UIViewContentMode::scaleAspectFill:
        return placedRect(bounds, scaledSize(imageSize, bounds, true), Place::middle,
                          Place::middle);
    case UIViewContentMode::center:
        return at(Place::middle, Place::middle);
    case UIViewContentMode::top:
        return at(Place::middle, Place::start);
    case UIViewContentMode::bottom:
        return at(Place::middle, Place::end);
    case UIViewContentMode::left:
        return at(Place::start, Place::middle);
    case UIViewContentMode::right:
        return at(Place::end, Place::middle);
    case UIViewContentMode::topLeft:
        return at(Place::start, Place::start);
    case UIViewContentMode::topRight:
        return at(Place::end, Place::start);
    case UIViewContentMode::bottomLeft:
        return at(Place::start, Place::end);
    case UIViewContentMode::bottomRight:
        return at(Place::end, Place::end);
    }
    return bounds;
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
