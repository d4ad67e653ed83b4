// What the host shows behind a row while it is pulled sideways: the effect that the pull will have,
// in the colour of the row's calendar.
#pragma once

#include <optional>

#include "platform/geometry.h"
#include "platform/ui_color.h"

namespace quorvel::platform {
class GraphicsContext;
} // namespace quorvel::platform

namespace quorvel::shells {

// A row whose content is to the right of its place.
struct RowPull {
    platform::CGRect frame;                 // of the whole row, in points of the area
    platform::CGFloat distance = 0;         // points that the content has moved, more than 0
    std::optional<platform::UIColor> color; // of the calendar; absent: the host's own
};

// Whether lifting the finger now has the row's effect. The bundle runs it for a distance of more
// than 80 points.
bool isFirm(const RowPull& pull);

// Paints the part of the row that its content has left: "Open" on the calendar's colour, which is
// pale until the pull is firm. `textColor`: of texts on the backdrop, which the pale colour hardly
// changes.
void paintPull(platform::GraphicsContext& context, const RowPull& pull,
               const platform::UIColor& textColor);

} // namespace quorvel::shells
