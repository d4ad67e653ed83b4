// How high the widget wants to be.
#pragma once

#include "platform/geometry.h"

namespace quorvel {

// Points.
inline constexpr platform::CGFloat widgetWidth = 320;

// Two heights stand for something else.
inline constexpr platform::CGFloat notYetMeasured = 0;
inline constexpr platform::CGFloat noRows = -1;

struct PreferredHeight {
    platform::CGFloat height = 0;      // points
    platform::CGFloat totalHeight = 0; // what is known of the rows from now on
};

// Unmeasured rows count as maxHeight. "No rows" is used up by the answer: it gives no height once,
// and the rows count as unmeasured afterwards.
PreferredHeight preferredHeight(platform::CGFloat totalHeight, platform::CGFloat maxHeight,
                                bool limitMaxHeight);

} // namespace quorvel
