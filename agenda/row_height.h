// How high a row is: one or two lines of text and a margin above and below.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/geometry.h"

namespace quorvel::platform {
class TextMeasurer;
}

namespace quorvel {

// The height of one line in the system font of that size, in points.
platform::CGFloat lineHeight(platform::TextMeasurer& textMeasurer, std::int64_t fontSize);

// Whether a row with that location has room for it. An absent location is an empty one.
bool hasLocationLine(const std::optional<std::string>& location, bool displayLocation,
                     bool sameHeightRows);

// Stands for the sum of all row heights where there are no rows.
inline constexpr platform::CGFloat heightWithoutRows = -1;

// Points.
platform::CGFloat rowHeight(platform::CGFloat titleLineHeight, platform::CGFloat locationLineHeight,
                            bool locationLine);

} // namespace quorvel
