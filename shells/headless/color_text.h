// Colours as text, as users write them and as JSON documents contain them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/ui_color.h"

namespace quorvel::headless {

// "#RRGGBBAA" with upper-case digits. A component below 0 counts as 0, one above 1 as 1.
std::string colorText(const platform::UIColor& color);

// "#RGB", "#RRGGBB", "#RRGGBBAA" or one of the common English names, in upper or lower case.
std::optional<platform::UIColor> parseColor(std::string_view text);

} // namespace quorvel::headless
