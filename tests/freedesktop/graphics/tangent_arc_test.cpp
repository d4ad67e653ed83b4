#include "freedesktop/graphics/tangent_arc.h"

#include <numbers>

#include <gtest/gtest.h>

namespace quorvel::freedesktop {
namespace {

constexpr double pi = std::numbers::pi;

TEST(TangentArc, RoundsARightAngle) {
    // Rightwards along the top, then down.
    const auto arc = tangentArc({0, 0}, {10, 0}, {10, 10}, 4);
    ASSERT_TRUE(arc);
    EXPECT_NEAR(arc->center.x, 6, 1e-9);
    EXPECT_NEAR(arc->center.y, 4, 1e-9);
    EXPECT_NEAR(arc->startAngle, -pi / 2, 1e-9);
    EXPECT_NEAR(arc->endAngle, 0, 1e-9);
    EXPECT_TRUE(arc->clockwise);
}

TEST(TangentArc, RoundsTheOtherWay) {
    // Rightwards, then up.
    const auto arc = tangentArc({0, 0}, {10, 0}, {10, -10}, 4);
    ASSERT_TRUE(arc);
    EXPECT_NEAR(arc->center.x, 6, 1e-9);
    EXPECT_NEAR(arc->center.y, -4, 1e-9);
    EXPECT_NEAR(arc->startAngle, pi / 2, 1e-9);
    EXPECT_FALSE(arc->clockwise);
}

TEST(TangentArc, HowFarTheSecondLineGoesDoesNotMatter) {
    const auto near = tangentArc({0, 0}, {10, 0}, {10, 0.1}, 4);
    const auto far = tangentArc({0, 0}, {10, 0}, {10, 1000}, 4);
    ASSERT_TRUE(near && far);
    EXPECT_NEAR(near->center.x, far->center.x, 1e-9);
    EXPECT_NEAR(near->endAngle, far->endAngle, 1e-9);
}

TEST(TangentArc, ASharpCornerTouchesFarAway) {
    // 45 degrees: the arc touches at radius / tan(22.5 degrees).
    const auto arc = tangentArc({0, 0}, {100, 0}, {0, 100}, 10);
    ASSERT_TRUE(arc);
    EXPECT_NEAR(arc->center.x, 100 - 24.142135623730951, 1e-9);
    EXPECT_NEAR(arc->center.y, 10, 1e-9);
}

TEST(TangentArc, NothingToRound) {
    EXPECT_FALSE(tangentArc({0, 0}, {10, 0}, {10, 10}, 0));
    EXPECT_FALSE(tangentArc({0, 0}, {10, 0}, {10, 10}, -1));
    EXPECT_FALSE(tangentArc({10, 0}, {10, 0}, {10, 10}, 4));
    EXPECT_FALSE(tangentArc({0, 0}, {10, 0}, {10, 0}, 4));
    EXPECT_FALSE(tangentArc({0, 0}, {10, 0}, {20, 0}, 4));
    EXPECT_FALSE(tangentArc({0, 0}, {10, 0}, {5, 0}, 4));
}

} // namespace
} // namespace quorvel::freedesktop
