// How high the widget wants to be.
#pragma once

#include "platform/geometry.h"

namespace quorvel {

// Points.
inline constexpr platform::CGFloat widgetWidth = 320;

// A total height that has not been measured; heightWithoutRows is the other special value.
inline constexpr platform::CGFloat notYetMeasured = 0;

struct PreferredHeight {
    platform::CGFloat height = 0;      // points
    platform::CGFloat totalHeight = 0; // to be stored in place of the argument
};

// All heights are in points. Unmeasured rows count as maxHeight. heightWithoutRows gives the height
// 0 once: the total height to be stored is then notYetMeasured.
PreferredHeight preferredHeight(platform::CGFloat totalHeight, platform::CGFloat maxHeight,
                                bool limitMaxHeight);

} // namespace quorvel
