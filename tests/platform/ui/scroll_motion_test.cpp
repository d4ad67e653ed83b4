#include "platform/ui/scroll_motion.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace quorvel::platform {
namespace {

constexpr ScrollRange emptyRange{0, 0};
constexpr ScrollRange longRange{0, 10000};

TEST(AxisMotionTest, DeceleratesOverHalfASecondOfItsSpeed) {
    const AxisMotion motion(100, 1000, longRange, true);
    EXPECT_FALSE(motion.isAtRest());
    EXPECT_DOUBLE_EQ(motion.offsetAt(0), 100);
    EXPECT_NEAR(motion.offsetAt(0.001), 100.998, 1e-6); // 499 * 0.002
    EXPECT_NEAR(motion.offsetAt(0.5), 415.612, 1e-3);   // 0.998^500 = 0.367511
    EXPECT_NEAR(motion.velocityAt(0.5), 367.511, 1e-3);
    EXPECT_NEAR(motion.duration(), 3.4494, 1e-4); // ln(0.5/499) / (1000 ln 0.998)
    EXPECT_NEAR(motion.offsetAt(motion.duration() - 1e-9), 598.5, 1e-6);
    EXPECT_DOUBLE_EQ(motion.offsetAt(motion.duration()), 599);
    EXPECT_DOUBLE_EQ(motion.velocityAt(10), 0);
}

TEST(AxisMotionTest, DeceleratesBackwardsToo) {
    const AxisMotion motion(5000, -2000, longRange, true);
    EXPECT_NEAR(motion.offsetAt(0.001), 4998.004, 1e-9);
    EXPECT_DOUBLE_EQ(motion.end(), 4002);
}

TEST(AxisMotionTest, RestsWhereLessThanHalfAPointRemains) {
    const AxisMotion slow(100, 1, longRange, true); // 0.499 points
    EXPECT_TRUE(slow.isAtRest());
    EXPECT_DOUBLE_EQ(slow.duration(), 0);
    EXPECT_DOUBLE_EQ(slow.offsetAt(0), 100);
    EXPECT_TRUE(AxisMotion(0, 0, emptyRange, true).isAtRest());
}

TEST(AxisMotionTest, IsNeverAtRestPastAnEdge) {
    const AxisMotion motion(-0.25, 0, emptyRange, true);
    EXPECT_FALSE(motion.isAtRest());
    EXPECT_DOUBLE_EQ(motion.duration(), 0);
    EXPECT_DOUBLE_EQ(motion.offsetAt(0), 0);
}

TEST(AxisMotionTest, SpringsBackFromRestWithoutSwinging) {
    const AxisMotion motion(-100, 0, emptyRange, true);
    EXPECT_DOUBLE_EQ(motion.offsetAt(0), -100);
    EXPECT_NEAR(motion.offsetAt(0.1), -73.575888, 1e-6); // e^-1 * 200
    EXPECT_NEAR(motion.offsetAt(0.5), -4.042768, 1e-6);  // e^-5 * 600
    EXPECT_NEAR(motion.duration(), 0.743, 5e-4);
    EXPECT_NEAR(motion.offsetAt(motion.duration() - 1e-9), -0.5, 1e-6);
    EXPECT_DOUBLE_EQ(motion.offsetAt(motion.duration()), 0);
    for (int i = 0; i < 100; ++i) {
        EXPECT_LE(motion.offsetAt(0.01 * i), 0);
    }
}

TEST(AxisMotionTest, MovesPastTheEdgeAndReturns) {
    // The edge is 49.9 points away, of a distance of 499: there a tenth of the speed is lost.
    const AxisMotion motion(450.1, 1000, {0, 500}, true);
    const double atEdge = std::log(0.9) / (1000 * std::log(0.998)); // 0.05263 s
    EXPECT_NEAR(motion.offsetAt(atEdge), 500, 1e-6);
    EXPECT_NEAR(motion.velocityAt(atEdge - 1e-9), 900, 1e-3);
    EXPECT_NEAR(motion.velocityAt(atEdge + 1e-9), 900, 1e-3);
    EXPECT_NEAR(motion.offsetAt(atEdge + 0.1), 533.109150, 1e-6); // 90/e
    EXPECT_DOUBLE_EQ(motion.offsetAt(motion.duration()), 500);
}

TEST(AxisMotionTest, StopsAtTheEdgeWithoutABounce) {
    const AxisMotion motion(450.1, 1000, {0, 500}, false);
    EXPECT_NEAR(motion.duration(), 0.052627, 1e-6);
    EXPECT_DOUBLE_EQ(motion.offsetAt(1), 500);
}

TEST(AxisMotionTest, BouncesImmediatelyAtTheEdge) {
    const AxisMotion motion(0, -900, emptyRange, true);
    EXPECT_NEAR(motion.offsetAt(0.1), -33.109150, 1e-6);
    EXPECT_DOUBLE_EQ(motion.end(), 0);
    EXPECT_TRUE(AxisMotion(0, -900, emptyRange, false).isAtRest());
}

// e^-10t * (-50 + 500t) until a tenth of a second, where the speed is 500/e.
TEST(AxisMotionTest, ContinuesIntoTheViewFromPastItsEdge) {
    const AxisMotion motion(-50, 1000, longRange, true);
    EXPECT_NEAR(motion.offsetAt(0.05), -15.163266, 1e-6); // -25 * e^-0.5
    EXPECT_NEAR(motion.offsetAt(0.1), 0, 1e-6);
    EXPECT_NEAR(motion.velocityAt(0.1 - 1e-9), 183.939721, 1e-3);
    EXPECT_NEAR(motion.velocityAt(0.1 + 1e-9), 183.939721, 1e-3);
    EXPECT_NEAR(motion.end(), 91.785921, 1e-6); // 0.499 * 500/e
    EXPECT_NEAR(motion.offsetAt(0.101), 0.183572, 1e-6);
}

TEST(AxisMotionTest, ReachesTheOtherEdgeFromPastTheFirst) {
    const AxisMotion motion(-50, 1000, {0, 40}, true);
    CGFloat farthest = 0;
    for (int i = 0; i < 200; ++i) {
        farthest = std::max(farthest, motion.offsetAt(0.01 * i));
    }
    EXPECT_NEAR(farthest, 43.8, 0.05); // 183.94 - 40/0.499 = 103.78 a second, over 10e
    EXPECT_DOUBLE_EQ(motion.end(), 40);
}

TEST(AxisMotionTest, SwingsAroundItsEdgeInAnEmptyRange) {
    const AxisMotion motion(-50, 1000, emptyRange, true);
    EXPECT_NEAR(motion.offsetAt(0.2), 6.766764, 1e-6); // 50 * e^-2
    EXPECT_DOUBLE_EQ(motion.offsetAt(motion.duration()), 0);
}

TEST(AxisMotionTest, StopsAtItsEdgeInAnEmptyRangeWithoutABounce) {
    const AxisMotion motion(-50, 1000, emptyRange, false);
    EXPECT_DOUBLE_EQ(motion.duration(), 0.1);
    EXPECT_NEAR(motion.offsetAt(0.05), -15.163266, 1e-6);
    EXPECT_DOUBLE_EQ(motion.offsetAt(0.2), 0);
}

// From any offset and with any velocity: no jump, and at most one change of direction.
TEST(AxisMotionTest, NeverJumpsAndTurnsAtMostOnce) {
    constexpr double step = 0.001;
    for (const CGFloat offset : {-400.0, -50.0, 0.0, 250.0, 500.0, 580.0, 900.0}) {
        for (const CGFloat speed : {-20000.0, -1000.0, -60.0, 0.0, 60.0, 1000.0, 20000.0}) {
            const AxisMotion motion(offset, speed, {0, 500}, true);
            const CGFloat fastest =
                std::abs(speed) + 10 * 400; // includes the greatest speed of the spring
            ASSERT_LT(motion.duration(), 10);
            int turns = 0;
            CGFloat lastWay = 0;
            for (double time = 0; time < motion.duration(); time += step) {
                const CGFloat way = motion.offsetAt(time + step) - motion.offsetAt(time);
                ASSERT_LE(std::abs(way), fastest * step + 0.5) << offset << ", " << speed;
                turns += way * lastWay < 0 ? 1 : 0;
                lastWay = way;
            }
            EXPECT_LE(turns, 1) << offset << ", " << speed;
        }
    }
}

TEST(AxisMotionTest, EndsAtTheEdgeAfterASlowReturn) {
    const AxisMotion motion(-50, 600, longRange, true); // 100 * e^-5 a second at the edge
    EXPECT_DOUBLE_EQ(motion.end(), 0);
    EXPECT_LT(motion.duration(), 1);
}

TEST(AxisMotionTest, EndsWithAnySpeed) {
    constexpr CGFloat infinity = std::numeric_limits<CGFloat>::infinity();
    constexpr CGFloat noNumber = std::numeric_limits<CGFloat>::quiet_NaN();
    for (const CGFloat speed : {1e9, -1e300, infinity, -infinity, noNumber}) {
        for (const CGFloat offset : {-80.0, 0.0, 250.0, 580.0}) {
            const AxisMotion motion(offset, speed, {0, 500}, true);
            EXPECT_LT(motion.duration(), 1000) << speed;
            EXPECT_GE(motion.end(), 0) << speed;
            EXPECT_LE(motion.end(), 500) << speed;
        }
    }
}

} // namespace
} // namespace quorvel::platform
