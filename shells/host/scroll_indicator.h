// A bar at the edge of a list that shows, while the list scrolls, which part of it is visible.
#pragma once

#include <optional>

#include "platform/geometry.h"

namespace quorvel::shells {

// Of a list that scrolls vertically; lengths in points.
struct ScrollPosition {
    platform::CGRect viewport; // in the area
    platform::CGFloat contentHeight = 0;
    platform::CGFloat offset = 0;
    bool operator==(const ScrollPosition&) const = default;
};

// The place of the bar in the area. Absent where the whole list is visible.
std::optional<platform::CGRect> scrollIndicatorFrame(const ScrollPosition& position);

// When the bar appears and fades. Times are seconds of the frame clock.
class ScrollIndicator {
public:
    // The bar appears where the offset has changed since the last call; the first call only stores
    // it, as do calls with another content or viewport.
    void update(const ScrollPosition& position, double time);
    // 0: invisible, 1: as after a scroll.
    platform::CGFloat opacity(double time) const;
    bool isVisible(double time) const { return opacity(time) > 0; }
    static constexpr double secondsShown = 0.8; // before it fades

private:
    std::optional<ScrollPosition> m_position;
    std::optional<double> m_scrolledAt;
};

} // namespace quorvel::shells
