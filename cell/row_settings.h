// The settings that a row's layout reads, and the two heights that it writes. Process-wide:
// shared by every agenda view, and the last load wins.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/geometry.h"
#include "platform/ui_color.h"

namespace quorvel::settings {

// Absent until the first load.
extern std::optional<platform::UIColor> textColor;
extern std::optional<platform::UIColor> subtitleTextColor;
extern std::optional<platform::UIColor> dateTextColor;

// Font sizes in points.
extern std::int64_t textSize;
extern std::int64_t subtitleTextSize;
extern std::int64_t dateTextSize;

extern bool titleColorSameAsCalendarColor; // derived from the stored colour of the title
extern bool rightAlignedDate;

// Points; written by every layout of a row. Hosts read them by name; the widget itself does not.
extern platform::CGFloat cellWithoutSubtitleHeight;
extern platform::CGFloat cellWithSubtitleHeight;

} // namespace quorvel::settings
