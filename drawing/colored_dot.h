// The dot in a calendar's colour that marks a row.
#pragma once

#include <memory>
#include <optional>

#include "platform/geometry.h"
#include "platform/ui_color.h"
#include "platform/ui_image.h"

namespace quorvel::platform {
class GraphicsContexts;
}

namespace quorvel {

// A new picture of 80 by 80 points at scale 1: a disc of that diameter (points) in its middle, with
// a black ring one point wide just outside. Without a colour only the ring is painted. Null where
// the platform gives no context.
std::shared_ptr<const platform::UIImage>
drawColoredDot(platform::GraphicsContexts& graphicsContexts,
               const std::optional<platform::UIColor>& color, platform::CGFloat diameter);

} // namespace quorvel
