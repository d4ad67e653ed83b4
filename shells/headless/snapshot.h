// Paints the widget as a picture.
#pragma once

#include <functional>

#include "platform/geometry.h"

namespace quorvel::platform {
class GraphicsContext;
} // namespace quorvel::platform

namespace quorvel::shells {
struct Appearance;
struct CalendarState;
} // namespace quorvel::shells

namespace quorvel::headless {

class WidgetSession;

struct WidgetPicture {
    platform::CGSize size;                                 // points
    std::function<void(platform::GraphicsContext&)> paint; // valid as long as the session
};

// Loads the widget, presents it once, resizes its view to that width (points) and to its preferred
// height, and gives it that appearance and the notices of a host. The picture has no backdrop.
// `calendarState` is called after the presentation.
WidgetPicture pictureOfWidget(WidgetSession& session, platform::CGFloat width,
                              const shells::Appearance& appearance,
                              const std::function<shells::CalendarState()>& calendarState);

} // namespace quorvel::headless
