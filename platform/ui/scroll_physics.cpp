#include "platform/ui/scroll_physics.h"

#include <algorithm>
#include <cmath>

namespace quorvel::platform {

namespace {

constexpr CGFloat bandStiffness = 0.55;
// Content that a finger catches is past its edge by at most this part of the rubber band's length.
constexpr CGFloat farthestCatch = 0.5;
// The part of the speed that remains after a millisecond, and the distance that follows from a
// speed of one: the sum of the distances of all later milliseconds.
constexpr double speedFactorPerMillisecond = 0.998;
constexpr double distanceOfUnitSpeed =
    speedFactorPerMillisecond / (1000 * (1 - speedFactorPerMillisecond));
constexpr double springRate = 10; // the square root of the stiffness

double speedFactorAfter(double seconds) {
    return std::pow(speedFactorPerMillisecond, 1000 * seconds);
}

} // namespace

CGFloat clampedOffset(CGFloat offset, const ScrollRange& range) {
    return std::clamp(offset, range.low, range.high);
}

// The rubber band.

CGFloat rubberBand(CGFloat overshoot, CGFloat viewLength) {
    return viewLength > 0 ? (1 - 1 / (overshoot * bandStiffness / viewLength + 1)) * viewLength : 0;
}

CGFloat bandedOffset(CGFloat offset, const ScrollRange& range, CGFloat viewLength, bool bounces) {
    const CGFloat edge = clampedOffset(offset, range);
    const CGFloat past = bounces ? rubberBand(std::abs(offset - edge), viewLength) : 0;
    return edge + std::copysign(past, offset - edge);
}

CGFloat unbandedOffset(CGFloat banded, const ScrollRange& range, CGFloat viewLength, bool bounces) {
    const CGFloat edge = clampedOffset(banded, range);
    const CGFloat past = std::abs(banded - edge);
    if (!bounces || !(past < viewLength)) {
        return edge;
    }
    const CGFloat overshoot = (1 / (1 - past / viewLength) - 1) * viewLength / bandStiffness;
    return edge + std::copysign(overshoot, banded - edge);
}

CGFloat bandSlope(CGFloat banded, const ScrollRange& range, CGFloat viewLength, bool bounces) {
    const CGFloat past = std::abs(banded - clampedOffset(banded, range));
    if (past == 0) {
        return 1;
    }
    if (!bounces || !(past < viewLength)) {
        return 0;
    }
    const CGFloat remaining = 1 - past / viewLength;
    return bandStiffness * remaining * remaining;
}

CGFloat bandLength(CGFloat caught, const ScrollRange& range, CGFloat viewLength) {
    const CGFloat past = std::abs(caught - clampedOffset(caught, range));
    return std::max(viewLength, past / farthestCatch);
}

// The deceleration.

CGFloat Deceleration::distance() const {
    return velocity * distanceOfUnitSpeed;
}

CGFloat Deceleration::offsetAt(double seconds) const {
    return start + distance() * (1 - speedFactorAfter(seconds));
}

CGFloat Deceleration::velocityAt(double seconds) const {
    return velocity * speedFactorAfter(seconds);
}

double Deceleration::timeUntilRemaining(double part) {
    return std::log(part) / (1000 * std::log(speedFactorPerMillisecond));
}

// The spring.

CGFloat Spring::offsetAt(double seconds) const {
    return edge + std::exp(-springRate * seconds) *
                      (displacement + (velocity + springRate * displacement) * seconds);
}

CGFloat Spring::velocityAt(double seconds) const {
    return std::exp(-springRate * seconds) *
           (velocity - springRate * (velocity + springRate * displacement) * seconds);
}

// Bisects an upper bound of the displacement where the bound only decreases.
double Spring::timeToRest() const {
    const CGFloat initial = std::abs(displacement);
    const CGFloat growth = std::abs(velocity + springRate * displacement);
    const auto widest = [&](double seconds) {
        return std::exp(-springRate * seconds) * (initial + growth * seconds);
    };
    double early = growth > 0 ? std::max(1 / springRate - initial / growth, 0.0) : 0.0;
    if (widest(early) < restDistance) {
        return 0;
    }
    double late = early + 1;
    while (widest(late) >= restDistance) {
        late += 1;
    }
    constexpr int halvings = 50;
    for (int i = 0; i < halvings; ++i) {
        const double middle = (early + late) / 2;
        (widest(middle) < restDistance ? late : early) = middle;
    }
    return late;
}

std::optional<double> Spring::timeAtEdge() const {
    const CGFloat pull = velocity + springRate * displacement;
    const double seconds = -displacement / pull;
    return seconds > 0 && std::isfinite(seconds) ? std::optional(seconds) : std::nullopt;
}

} // namespace quorvel::platform
