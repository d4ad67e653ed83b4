// The colours that the settings name by number.
#pragma once

#include <cstdint>

#include "platform/ui_color.h"

namespace quorvel {

// As the title's colour: white is stored, and the title is shown in its calendar's colour.
inline constexpr std::int64_t calendarColorCode = 999;

// White for every number that names no colour. The numbering is the settings pane's.
platform::UIColor colorForCode(std::int64_t code);

} // namespace quorvel
