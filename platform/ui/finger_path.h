// The path of a finger: whether it drags, along which axis, how far, and its velocity at the end.
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
    // The distance from the start; on the axis of the drag without the 10 points, so that the
    // content does not jump when the drag begins.
    CGPoint translation() const { return m_translation; }
    // Points per second, over the last tenth of a second. Limited on each axis, as reports may be
    // very close together.
    CGPoint velocity() const;

private:
    struct Sample {
        CGPoint location;
        double time;
    };

    void decideAxis(const CGPoint& location);

    CGPoint m_start; // of the translation
    std::optional<DragAxis> m_axis;
    CGPoint m_translation;
    std::deque<Sample> m_samples; // of the last tenth of a second, at different times
};

} // namespace quorvel::platform
