// A tree of views as a JSON document.
#pragma once

#include "shells/headless/json.h"

namespace quorvel::platform {
class TextMeasurer;
class UIView;
} // namespace quorvel::platform

namespace quorvel::headless {

// The view and everything below it, back first. Labels are measured with their current text.
Json viewJson(const platform::UIView& view, platform::TextMeasurer& textMeasurer);

} // namespace quorvel::headless
