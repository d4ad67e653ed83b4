#include "shells/host/scroll_indicator.h"

#include <algorithm>

namespace quorvel::shells {

using platform::CGFloat;
using platform::CGRect;

namespace {

constexpr CGFloat barWidth = 4; // points
constexpr CGFloat barInset = 3;
constexpr CGFloat shortestBar = 24;
constexpr double secondsFading = 0.3;

} // namespace

std::optional<CGRect> scrollIndicatorFrame(const ScrollPosition& position) {
    const CGFloat visible = position.viewport.size.height;
    const CGFloat track = visible - 2 * barInset;
    if (!(position.contentHeight > visible) || !(track > shortestBar)) {
        return std::nullopt;
    }
    const CGFloat length = std::max(track * visible / position.contentHeight, shortestBar);
    const CGFloat progress =
        std::clamp(position.offset / (position.contentHeight - visible), 0.0, 1.0);
    return CGRect{{CGRectGetMaxX(position.viewport) - barInset - barWidth,
                   CGRectGetMinY(position.viewport) + barInset + progress * (track - length)},
                  {barWidth, length}};
}

void ScrollIndicator::update(const ScrollPosition& position, double time) {
    const bool isSameList = m_position && m_position->viewport == position.viewport &&
                            m_position->contentHeight == position.contentHeight;
    if (isSameList && m_position->offset != position.offset) {
        m_scrolledAt = time;
    }
    m_position = position;
}

CGFloat ScrollIndicator::opacity(double time) const {
    if (!m_scrolledAt) {
        return 0;
    }
    const double faded = (time - *m_scrolledAt - secondsShown) / secondsFading;
    return std::clamp(1 - faded, 0.0, 1.0);
}

} // namespace quorvel::shells
