// A picture with rounded corners.
#pragma once

#include <memory>

#include "platform/geometry.h"
#include "platform/ui_image.h"

namespace quorvel::platform {
class GraphicsContexts;
class Screen;
} // namespace quorvel::platform

namespace quorvel {

// A copy of the picture at the screen's scale, its corners rounded with a radius of
// factor * factor points. With the factor 0 the picture itself. Null for no picture, and where the
// platform cannot hold one of that size.
std::shared_ptr<const platform::UIImage> roundedRectImageFromImage(
    platform::GraphicsContexts& graphicsContexts, const platform::Screen& screen,
    const std::shared_ptr<const platform::UIImage>& image, platform::CGFloat factor);

} // namespace quorvel
