#include "platform/ui/scroll_physics.h"

#include <algorithm>
#include <cmath>

namespace quorvel::platform {

namespace {

constexpr CGFloat bandStiffness = 0.55;
// A finger catches content no farther out than this part of the length that counts.
constexpr CGFloat farthestCatch = 0.5;
// What is left of the speed after a millisecond, and so how far a speed of one carries: the sum of
// the ways of all milliseconds to come.
constexpr double keptEachMillisecond = 0.998;
constexpr double wayOfUnitSpeed = keptEachMillisecond / (1000 * (1 - keptEachMillisecond));
constexpr double springRate = 10; // the root of the stiffness

double keptAfter(double seconds) {
    return std::pow(keptEachMillisecond, 1000 * seconds);
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
    const CGFloat left = 1 - past / viewLength;
    return bandStiffness * left * left;
}

CGFloat bandLength(CGFloat caught, const ScrollRange& range, CGFloat viewLength) {
    const CGFloat past = std::abs(caught - clampedOffset(caught, range));
    return std::max(viewLength, past / farthestCatch);
}

// The glide.

CGFloat Glide::wholeWay() const {
    return velocity * wayOfUnitSpeed;
}

CGFloat Glide::offsetAt(double seconds) const {
    return start + wholeWay() * (1 - keptAfter(seconds));
}

CGFloat Glide::velocityAt(double seconds) const {
    return velocity * keptAfter(seconds);
}

double Glide::timeUntilLeft(double part) {
    return std::log(part) / (1000 * std::log(keptEachMillisecond));
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

// Bisects the part of a bound for the displacement in which the bound does nothing but shrink.
double Spring::timeToRest() const {
    const CGFloat still = std::abs(displacement);
    const CGFloat growth = std::abs(velocity + springRate * displacement);
    const auto widest = [&](double seconds) {
        return std::exp(-springRate * seconds) * (still + growth * seconds);
    };
    double early = growth > 0 ? std::max(1 / springRate - still / growth, 0.0) : 0.0;
    if (widest(early) < negligibleWay) {
        return 0;
    }
    double late = early + 1;
    while (widest(late) >= negligibleWay) {
        late += 1;
    }
    constexpr int halvings = 50;
    for (int i = 0; i < halvings; ++i) {
        const double middle = (early + late) / 2;
        (widest(middle) < negligibleWay ? late : early) = middle;
    }
    return late;
}

std::optional<double> Spring::timeAtEdge() const {
    const CGFloat pull = velocity + springRate * displacement;
    const double seconds = -displacement / pull;
    return seconds > 0 && std::isfinite(seconds) ? std::optional(seconds) : std::nullopt;
}

} // namespace quorvel::platform
