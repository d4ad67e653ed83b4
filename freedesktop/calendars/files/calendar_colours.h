// The colours of calendars, from the text in their files or from a palette.
#pragma once

#include <optional>
#include <string_view>

#include "platform/ui_color.h"

namespace quorvel::freedesktop::calendars {

// "#RGB", "#RRGGBB", "#RRGGBBAA" or one of the 148 names of CSS, regardless of case. Absent where
// it is none of them.
std::optional<platform::UIColor> calendarColour(std::string_view text);

// The palette's colour for a calendar that has none: the same in every process, and legible on a
// dark backdrop.
platform::UIColor stableColour(std::string_view identifier);

} // namespace quorvel::freedesktop::calendars
