// Describes a tree of views in JSON.
#pragma once

#include "shells/headless/json.h"

namespace quorvel::platform {
class TextMeasurer;
class UIView;
} // namespace quorvel::platform

namespace quorvel::headless {

// The view and its subviews at every depth, from back to front. Labels are measured with their
// current text.
Json viewJson(const platform::UIView& view, platform::TextMeasurer& textMeasurer);

} // namespace quorvel::headless
