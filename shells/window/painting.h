// What the window paints around the widget.
#pragma once

#include <optional>

#include "platform/geometry.h"
#include "platform/ui_color.h"

struct _cairo; // the painting library's context

namespace quorvel::window {

// Replaces what is there with the backdrop; absent: with nothing. Where the screen cannot show what
// lies behind a window, the backdrop is opaque.
void paintBackdrop(struct _cairo* context, const platform::CGRect& rect,
                   const std::optional<platform::UIColor>& color, bool isTranslucent);

// Takes away what has been painted outside the rectangle's rounded corners, but inside its own.
void cutCorners(struct _cairo* context, const platform::CGRect& rect, platform::CGFloat radius);

// The outline of the row that has the focus.
void paintFocus(struct _cairo* context, const platform::CGRect& row);

} // namespace quorvel::window
