#include "platform/ui/scroll_physics.h"

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
    EXPECT_DOUBLE_EQ(bandedOffset(0, range, 320, true), 0);
    EXPECT_DOUBLE_EQ(bandedOffset(500, range, 320, true), 500);
    EXPECT_NEAR(bandedOffset(-193.939394, range, 320, true), -80, 1e-6);
    EXPECT_NEAR(bandedOffset(693.939394, range, 320, true), 580, 1e-6);
    EXPECT_DOUBLE_EQ(bandedOffset(-100, range, 320, false), 0);
    EXPECT_DOUBLE_EQ(bandedOffset(600, range, 320, false), 500);
}

TEST(RubberBandTest, CanBeUndone) {
    EXPECT_NEAR(unbandedOffset(-80, noWay, 320, true), -193.939394, 1e-6);
    EXPECT_NEAR(unbandedOffset(-160, noWay, 320, true), -581.818182, 1e-6); // 320 / 0.55
    EXPECT_NEAR(unbandedOffset(580, {0, 500}, 320, true), 693.939394, 1e-6);
    EXPECT_DOUBLE_EQ(unbandedOffset(123, longWay, 320, true), 123);
    EXPECT_DOUBLE_EQ(unbandedOffset(-80, noWay, 320, false), 0);
    EXPECT_DOUBLE_EQ(unbandedOffset(-80, noWay, 0, true), 0);
    EXPECT_DOUBLE_EQ(unbandedOffset(-320, noWay, 320, true), 0);
}

TEST(RubberBandTest, IsLongerFarOut) {
    EXPECT_DOUBLE_EQ(bandLength(250, {0, 500}, 320), 320);
    EXPECT_DOUBLE_EQ(bandLength(-160, {0, 500}, 320), 320);
    EXPECT_DOUBLE_EQ(bandLength(-161, {0, 500}, 320), 322);
    EXPECT_DOUBLE_EQ(bandLength(900, {0, 500}, 320), 800);
    EXPECT_DOUBLE_EQ(bandLength(-5, {0, 500}, 0), 10);
}

TEST(RubberBandTest, SlowsTheContentDown) {
    EXPECT_DOUBLE_EQ(bandSlope(10, longWay, 320, true), 1);
    // A quarter of the view past the edge: 0.55 * 0.75 * 0.75.
    EXPECT_NEAR(bandSlope(-80, noWay, 320, true), 0.309375, 1e-9);
    EXPECT_DOUBLE_EQ(bandSlope(-80, noWay, 320, false), 0);
    EXPECT_DOUBLE_EQ(bandSlope(-400, noWay, 320, true), 0);
}

TEST(GlideTest, LosesTwoInAThousandEachMillisecond) {
    const Glide glide{100, 1000};
    EXPECT_NEAR(glide.wholeWay(), 499, 1e-9); // 1000 * 0.998 / 2
    EXPECT_DOUBLE_EQ(glide.offsetAt(0), 100);
    EXPECT_NEAR(glide.offsetAt(0.001), 100.998, 1e-9);
    EXPECT_NEAR(glide.offsetAt(0.002), 101.994004, 1e-9); // 0.998 + 0.998^2
    EXPECT_NEAR(glide.velocityAt(0.001), 998, 1e-9);
    EXPECT_NEAR(glide.velocityAt(0.5), 367.511, 1e-3); // 0.998^500
    EXPECT_NEAR(Glide::timeUntilLeft(0.998), 0.001, 1e-12);
    EXPECT_DOUBLE_EQ(Glide::timeUntilLeft(1), 0);
}

TEST(SpringTest, DrawsBackFromRestWithoutSwinging) {
    const Spring spring{500, -100, 0};
    EXPECT_DOUBLE_EQ(spring.offsetAt(0), 400);
    EXPECT_NEAR(spring.offsetAt(0.1), 426.424112, 1e-6); // 500 - 200/e
    EXPECT_NEAR(spring.offsetAt(0.2), 459.399415, 1e-6); // 500 - 300/e^2
    EXPECT_DOUBLE_EQ(spring.velocityAt(0), 0);
    EXPECT_NEAR(spring.velocityAt(0.1), 367.879441, 1e-6); // 1000/e
    EXPECT_NEAR(spring.timeToRest(), 0.743, 5e-4);         // (1 + 7.43) * e^-7.43 = 0.005
    EXPECT_FALSE(spring.timeAtEdge());
}

TEST(SpringTest, IsPushedOutByItsSpeed) {
    const Spring spring{0, 0, 900};
    EXPECT_DOUBLE_EQ(spring.velocityAt(0), 900);
    EXPECT_NEAR(spring.offsetAt(0.1), 33.109150, 1e-6); // the farthest: 90/e
    EXPECT_NEAR(spring.velocityAt(0.1), 0, 1e-9);
    EXPECT_FALSE(spring.timeAtEdge());
}

TEST(SpringTest, SwingsThroughItsEdgeOnceAtTheMost) {
    const Spring spring{0, -50, 1000}; // e^-10t * (-50 + 500t)
    ASSERT_TRUE(spring.timeAtEdge());
    EXPECT_DOUBLE_EQ(*spring.timeAtEdge(), 0.1);
    EXPECT_NEAR(spring.offsetAt(0.1), 0, 1e-9);
    EXPECT_NEAR(spring.velocityAt(0.1), 183.939721, 1e-6); // 500/e
    EXPECT_FALSE((Spring{0, -50, 500}.timeAtEdge()));      // reaches it never
    EXPECT_FALSE((Spring{0, -50, 400}.timeAtEdge()));
}

TEST(SpringTest, RestsWhereLessThanHalfAPointIsLeft) {
    EXPECT_DOUBLE_EQ((Spring{0, 0.49, 0}.timeToRest()), 0);
    EXPECT_DOUBLE_EQ((Spring{0, 0, 13.5}.timeToRest()), 0); // 1.35/e at its farthest
    EXPECT_GT((Spring{0, 0, 13.7}.timeToRest()), 0.1);
    const Spring spring{0, -80, 0};
    const double rest = spring.timeToRest();
    EXPECT_NEAR(spring.offsetAt(rest), -0.5, 1e-6);
}

} // namespace
} // namespace quorvel::platform
