// The colours of calendars: as their files write them, and one for those that have none.
#pragma once

#include <optional>
#include <string_view>

#include "platform/ui_color.h"

namespace quorvel::freedesktop::calendars {

// "#RGB", "#RRGGBB", "#RRGGBBAA" or one of the 148 names of CSS, regardless of case. Absent where
// it is none of them.
std::optional<platform::UIColor> calendarColour(std::string_view text);

// Always the same one for an identifier; readable on a dark backdrop.
platform::UIColor stableColour(std::string_view identifier);

} // namespace quorvel::freedesktop::calendars
