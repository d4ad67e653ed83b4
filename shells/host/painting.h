// Paints the backdrop, the corners and the focus around the widget.
#pragma once

#include <optional>

#include "platform/geometry.h"
#include "platform/ui_color.h"

struct _cairo; // the painting library's context

namespace quorvel::shells {

// Replaces the content of the rectangle by the backdrop's colour; absent: by transparency. Where
// the screen does not support translucent windows, the result is opaque.
void paintBackdrop(struct _cairo* context, const platform::CGRect& rect,
                   const std::optional<platform::UIColor>& color, bool isTranslucent);

// Makes the parts of the rectangle outside its rounded corners transparent. `radius` in points.
void clearCorners(struct _cairo* context, const platform::CGRect& rect, platform::CGFloat radius);

// Paints an outline of almost that colour into the row that has the focus.
void paintFocus(struct _cairo* context, const platform::CGRect& row,
                const platform::UIColor& color);

// Paints a bar with round ends, in the colour at less than half of the opacity.
void paintBar(struct _cairo* context, const platform::CGRect& bar, const platform::UIColor& color,
              platform::CGFloat opacity);

} // namespace quorvel::shells
