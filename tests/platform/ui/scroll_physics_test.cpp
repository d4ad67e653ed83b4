#include "platform/ui/scroll_physics.h"

#include <cmath>

#include <gtest/gtest.h>

namespace quorvel::platform {
namespace {

constexpr ScrollRange noWay{0, 0};
constexpr ScrollRange longWay{0, 10000};

TEST(RubberBandTest, GivesWayLessAndLess) {
    EXPECT_DOUBLE_EQ(rubberBand(0, 320), 0);
    EXPECT_NEAR(rubberBand(193.939394, 320), 80, 1e-6); // 193.94 * 0.55 / 320 = 1/3
    EXPECT_NEAR(rubberBand(100, 200), 43.137255, 1e-6); // 200 * (1 - 1/1.275)
    EXPECT_LT(rubberBand(1e9, 320), 320);
    EXPECT_DOUBLE_EQ(rubberBand(100, 0), 0);
}

TEST(RubberBandTest, HoldsAtBothEdgesAndNowhereElse) {
    const ScrollRange range{0, 500};
    EXPECT_DOUBLE_EQ(bandedOffset(250, range, 320, true), 250);
    EXPECT_NEAR(bandedOffset(-193.939394, range, 320, true), -80, 1e-6);
    EXPECT_NEAR(bandedOffset(693.939394, range, 320, true), 580, 1e-6);
    EXPECT_DOUBLE_EQ(bandedOffset(-100, range, 320, false), 0);
    EXPECT_DOUBLE_EQ(bandedOffset(600, range, 320, false), 500);
}

TEST(RubberBandTest, CanBeUndone) {
    EXPECT_NEAR(unbandedOffset(-80, noWay, 320, true), -193.939394, 1e-6);
    EXPECT_NEAR(unbandedOffset(580, {0, 500}, 320, true), 693.939394, 1e-6);
    EXPECT_DOUBLE_EQ(unbandedOffset(123, longWay, 320, true), 123);
    EXPECT_DOUBLE_EQ(unbandedOffset(-400, noWay, 320, true), 0); // farther than any finger pulls
}

TEST(RubberBandTest, SlowsTheContentDown) {
    EXPECT_DOUBLE_EQ(bandSlope(10, longWay, 320, true), 1);
    // A quarter of the view past the edge: 0.55 * 0.75 * 0.75.
    EXPECT_NEAR(bandSlope(-80, noWay, 320, true), 0.309375, 1e-9);
    EXPECT_DOUBLE_EQ(bandSlope(-80, noWay, 320, false), 0);
}

TEST(AxisMotionTest, GlidesHalfASecondOfItsSpeed) {
    const AxisMotion motion(100, 1000, longWay, true);
    EXPECT_DOUBLE_EQ(motion.offsetAt(0), 100);
    EXPECT_NEAR(motion.offsetAt(0.001), 100.998, 1e-6); // 499 * 0.002
    EXPECT_NEAR(motion.offsetAt(0.5), 415.61, 0.01);    // 0.998^500 = 0.36751
    EXPECT_NEAR(motion.velocityAt(0.5), 367.51, 0.01);
    EXPECT_NEAR(motion.duration(), 3.4494, 1e-3); // ln(0.5/499) / (1000 ln 0.998)
    EXPECT_DOUBLE_EQ(motion.offsetAt(motion.duration()), 599);
    EXPECT_DOUBLE_EQ(motion.velocityAt(10), 0);
}

TEST(AxisMotionTest, RestsWhereNothingIsLeftToGo) {
    const AxisMotion slow(100, 1, longWay, true); // 0.499 points
    EXPECT_DOUBLE_EQ(slow.duration(), 0);
    EXPECT_DOUBLE_EQ(slow.offsetAt(0), 100);
}

TEST(AxisMotionTest, SpringsBackFromRestWithoutSwinging) {
    const AxisMotion motion(-100, 0, noWay, true);
    EXPECT_DOUBLE_EQ(motion.offsetAt(0), -100);
    EXPECT_NEAR(motion.offsetAt(0.1), -73.576, 1e-3); // e^-1 * 200
    EXPECT_NEAR(motion.offsetAt(0.5), -4.0428, 1e-4); // e^-5 * 600
    EXPECT_GT(motion.duration(), 0.7);
    EXPECT_LT(motion.duration(), 0.82);
    EXPECT_DOUBLE_EQ(motion.offsetAt(motion.duration()), 0);
    for (double time = 0; time < 1; time += 0.01) {
        EXPECT_LE(motion.offsetAt(time), 0);
    }
}

TEST(AxisMotionTest, GoesOverTheEdgeAndComesBack) {
    // 49.9 points of a way of 499 are there: a tenth of the speed is gone at the edge.
    const AxisMotion motion(450.1, 1000, {0, 500}, true);
    const double atEdge = std::log(0.9) / (1000 * std::log(0.998)); // 0.05263 s
    EXPECT_NEAR(motion.offsetAt(atEdge), 500, 1e-6);
    EXPECT_NEAR(motion.velocityAt(atEdge + 1e-9), 900, 1e-3);
    EXPECT_NEAR(motion.offsetAt(atEdge + 0.1), 533.11, 0.01); // 900 * 0.1 * e^-1
    EXPECT_DOUBLE_EQ(motion.offsetAt(motion.duration()), 500);
}

TEST(AxisMotionTest, StopsAtTheEdgeWithoutABounce) {
    const AxisMotion motion(450.1, 1000, {0, 500}, false);
    EXPECT_NEAR(motion.duration(), 0.052627, 1e-5);
    EXPECT_DOUBLE_EQ(motion.offsetAt(1), 500);
}

} // namespace
} // namespace quorvel::platform
