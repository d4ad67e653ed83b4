#include "platform/ui/scroll_physics.h"

#include <gtest/gtest.h>

namespace quorvel::platform {
namespace {

constexpr ScrollRange emptyRange{0, 0};
constexpr ScrollRange longRange{0, 10000};

TEST(RubberBandTest, FollowsLessAndLess) {
    EXPECT_DOUBLE_EQ(rubberBand(0, 320), 0);
    EXPECT_NEAR(rubberBand(193.939394, 320), 80, 1e-6); // 193.94 * 0.55 / 320 = 1/3
    EXPECT_NEAR(rubberBand(100, 200), 43.137255, 1e-6); // 200 * (1 - 1/1.275)
    EXPECT_LT(rubberBand(1e9, 320), 320);
    EXPECT_DOUBLE_EQ(rubberBand(100, 0), 0);
}

TEST(RubberBandTest, PullsAtBothEdgesOnly) {
    const ScrollRange range{0, 500};
    EXPECT_DOUBLE_EQ(bandedOffset(250, range, 320, true), 250);
    EXPECT_DOUBLE_EQ(bandedOffset(0, range, 320, true), 0);
    EXPECT_DOUBLE_EQ(bandedOffset(500, range, 320, true), 500);
    EXPECT_NEAR(bandedOffset(-193.939394, range, 320, true), -80, 1e-6);
    EXPECT_NEAR(bandedOffset(693.939394, range, 320, true), 580, 1e-6);
    EXPECT_DOUBLE_EQ(bandedOffset(-100, range, 320, false), 0);
    EXPECT_DOUBLE_EQ(bandedOffset(600, range, 320, false), 500);
}

TEST(RubberBandTest, HasAnInverse) {
    EXPECT_NEAR(unbandedOffset(-80, emptyRange, 320, true), -193.939394, 1e-6);
    EXPECT_NEAR(unbandedOffset(-160, emptyRange, 320, true), -581.818182, 1e-6); // 320 / 0.55
    EXPECT_NEAR(unbandedOffset(580, {0, 500}, 320, true), 693.939394, 1e-6);
    EXPECT_DOUBLE_EQ(unbandedOffset(123, longRange, 320, true), 123);
    EXPECT_DOUBLE_EQ(unbandedOffset(-80, emptyRange, 320, false), 0);
    EXPECT_DOUBLE_EQ(unbandedOffset(-80, emptyRange, 0, true), 0);
    EXPECT_DOUBLE_EQ(unbandedOffset(-320, emptyRange, 320, true), 0);
}

TEST(RubberBandTest, IsLongerFarPastTheEdge) {
    EXPECT_DOUBLE_EQ(bandLength(250, {0, 500}, 320), 320);
    EXPECT_DOUBLE_EQ(bandLength(-160, {0, 500}, 320), 320);
    EXPECT_DOUBLE_EQ(bandLength(-161, {0, 500}, 320), 322);
    EXPECT_DOUBLE_EQ(bandLength(900, {0, 500}, 320), 800);
    EXPECT_DOUBLE_EQ(bandLength(-5, {0, 500}, 0), 10);
}

TEST(RubberBandTest, SlowsTheContentDown) {
    EXPECT_DOUBLE_EQ(bandSlope(10, longRange, 320, true), 1);
    // A quarter of the view past the edge: 0.55 * 0.75 * 0.75.
    EXPECT_NEAR(bandSlope(-80, emptyRange, 320, true), 0.309375, 1e-9);
    EXPECT_DOUBLE_EQ(bandSlope(-80, emptyRange, 320, false), 0);
    EXPECT_DOUBLE_EQ(bandSlope(-400, emptyRange, 320, true), 0);
}

TEST(DecelerationTest, LosesTwoThousandthsInEachMillisecond) {
    const Deceleration deceleration{100, 1000};
    EXPECT_NEAR(deceleration.distance(), 499, 1e-9); // 1000 * 0.998 / 2
    EXPECT_DOUBLE_EQ(deceleration.offsetAt(0), 100);
    EXPECT_NEAR(deceleration.offsetAt(0.001), 100.998, 1e-9);
    EXPECT_NEAR(deceleration.offsetAt(0.002), 101.994004, 1e-9); // 0.998 + 0.998^2
    EXPECT_NEAR(deceleration.velocityAt(0.001), 998, 1e-9);
    EXPECT_NEAR(deceleration.velocityAt(0.5), 367.511, 1e-3); // 0.998^500
    EXPECT_NEAR(Deceleration::timeUntilRemaining(0.998), 0.001, 1e-12);
    EXPECT_DOUBLE_EQ(Deceleration::timeUntilRemaining(1), 0);
}

TEST(SpringTest, PullsBackFromRestWithoutSwinging) {
    const Spring spring{500, -100, 0};
    EXPECT_DOUBLE_EQ(spring.offsetAt(0), 400);
    EXPECT_NEAR(spring.offsetAt(0.1), 426.424112, 1e-6); // 500 - 200/e
    EXPECT_NEAR(spring.offsetAt(0.2), 459.399415, 1e-6); // 500 - 300/e^2
    EXPECT_DOUBLE_EQ(spring.velocityAt(0), 0);
    EXPECT_NEAR(spring.velocityAt(0.1), 367.879441, 1e-6); // 1000/e
    EXPECT_NEAR(spring.timeToRest(), 0.743, 5e-4);         // (1 + 7.43) * e^-7.43 = 0.005
    EXPECT_FALSE(spring.timeAtEdge());
}

TEST(SpringTest, MovesOutwardsWithItsSpeed) {
    const Spring spring{0, 0, 900};
    EXPECT_DOUBLE_EQ(spring.velocityAt(0), 900);
    EXPECT_NEAR(spring.offsetAt(0.1), 33.109150, 1e-6); // the farthest: 90/e
    EXPECT_NEAR(spring.velocityAt(0.1), 0, 1e-9);
    EXPECT_FALSE(spring.timeAtEdge());
}

TEST(SpringTest, SwingsPastItsEdgeAtMostOnce) {
    const Spring spring{0, -50, 1000}; // e^-10t * (-50 + 500t)
    ASSERT_TRUE(spring.timeAtEdge());
    EXPECT_DOUBLE_EQ(*spring.timeAtEdge(), 0.1);
    EXPECT_NEAR(spring.offsetAt(0.1), 0, 1e-9);
    EXPECT_NEAR(spring.velocityAt(0.1), 183.939721, 1e-6); // 500/e
    EXPECT_FALSE((Spring{0, -50, 500}.timeAtEdge()));      // never reaches it
    EXPECT_FALSE((Spring{0, -50, 400}.timeAtEdge()));
}

TEST(SpringTest, RestsWhereLessThanHalfAPointRemains) {
    EXPECT_DOUBLE_EQ((Spring{0, 0.49, 0}.timeToRest()), 0);
    EXPECT_DOUBLE_EQ((Spring{0, 0, 13.5}.timeToRest()), 0); // 1.35/e at its farthest
    EXPECT_GT((Spring{0, 0, 13.7}.timeToRest()), 0.1);
    const Spring spring{0, -80, 0};
    const double rest = spring.timeToRest();
    EXPECT_NEAR(spring.offsetAt(rest), -0.5, 1e-6);
}

} // namespace
} // namespace quorvel::platform
