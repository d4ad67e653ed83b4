// Where a finger goes: when it drags, along which axis, how far, and how fast it is at the end.
#pragma once

#include <deque>
#include <optional>

#include "platform/geometry.h"

namespace quorvel::platform {

enum class DragAxis { horizontal, vertical };

// Locations are in points, times in seconds that do not run backwards.
class FingerPath {
public:
    FingerPath(const CGPoint& start, double time);

    void add(const CGPoint& location, double time);

    // Absent until the finger has been more than 10 points from its start on one axis; from then on
    // the axis on which it was farther at that moment, or the vertical one.
    std::optional<DragAxis> axis() const { return m_axis; }
    // From the start; on the axis of the drag without the 10 points, so that what follows the
    // finger does not jump.
    CGPoint way() const { return m_way; }
    // Points a second, over the last tenth of a second before the last location; on each axis no
    // more than a finger can do, however close together the last reports were.
    CGPoint velocity() const;

private:
    struct Sample {
        CGPoint location;
        double time;
    };

    void decideAxis(const CGPoint& location);

    CGPoint m_start; // where the way counts from
    std::optional<DragAxis> m_axis;
    CGPoint m_way;
    std::deque<Sample> m_samples; // of the last moments, one each
};

} // namespace quorvel::platform
