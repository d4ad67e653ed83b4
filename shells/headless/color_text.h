// Colours as scripts and users write them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/ui_color.h"

namespace quorvel::headless {

// "#RRGGBBAA" in capitals; a component outside 0 to 1 counts as the nearer end.
std::string colorText(const platform::UIColor& color);

// "#RGB", "#RRGGBB", "#RRGGBBAA" or one of the common English names, in any case.
std::optional<platform::UIColor> parseColor(std::string_view text);

} // namespace quorvel::headless
