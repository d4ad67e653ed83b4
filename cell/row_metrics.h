// The fixed distances inside a row, in points.
#pragma once

#include "platform/geometry.h"

namespace quorvel {

// Above the first line of text and below the last one.
inline constexpr platform::CGFloat rowVerticalMargin = 13;

// The icon's place, the same in every row whatever the row's height.
inline constexpr platform::CGRect rowIconFrame = platform::CGRectMake(13, 10, 20, 20);

} // namespace quorvel
