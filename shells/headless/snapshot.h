// The widget as a picture.
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
    std::function<void(platform::GraphicsContext&)> paint; // while the session lives
};

// Loads the widget, presents it once and gives its view that width (points) and the height that it
// then asks for.
WidgetPicture pictureOfWidget(WidgetSession& session, platform::CGFloat width);

} // namespace quorvel::headless
