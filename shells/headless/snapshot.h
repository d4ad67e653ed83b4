// Paints the widget as a picture.
#pragma once

#include <functional>

#include "platform/geometry.h"

namespace quorvel::platform {
class GraphicsContext;
} // namespace quorvel::platform

namespace quorvel::headless {

class WidgetSession;

struct WidgetPicture {
    platform::CGSize size;                                 // points
    std::function<void(platform::GraphicsContext&)> paint; // valid as long as the session
};

// Loads the widget, presents it once, and resizes its view to that width (points) and to its
// preferred height.
WidgetPicture pictureOfWidget(WidgetSession& session, platform::CGFloat width);

} // namespace quorvel::headless
