#include "platform/ui/finger_path.h"

#include <gtest/gtest.h>

namespace quorvel::platform {
namespace {

FingerPath pathTo(const CGPoint& end) {
    FingerPath path({100, 100}, 0);
    path.add(end, 1);
    return path;
}

TEST(FingerPathTest, DragsBeyondTenPoints) {
    EXPECT_FALSE(FingerPath({100, 100}, 0).axis());
    EXPECT_FALSE(pathTo({110, 100}).axis());
    EXPECT_FALSE(pathTo({90, 110}).axis()); // on each axis
    EXPECT_EQ(pathTo({110.001, 100}).axis(), DragAxis::horizontal);
    EXPECT_EQ(pathTo({89.999, 100}).axis(), DragAxis::horizontal);
    EXPECT_EQ(pathTo({100, 110.001}).axis(), DragAxis::vertical);
    EXPECT_EQ(pathTo({100, 89.999}).axis(), DragAxis::vertical);
}

TEST(FingerPathTest, TheAxisOfTheLongerDistanceDecides) {
    EXPECT_EQ(pathTo({120, 119}).axis(), DragAxis::horizontal);
    EXPECT_EQ(pathTo({119, 80}).axis(), DragAxis::vertical);
    EXPECT_EQ(pathTo({120, 120}).axis(), DragAxis::vertical); // the same distance
    EXPECT_EQ(pathTo({80, 120}).axis(), DragAxis::vertical);
}

TEST(FingerPathTest, DecidesOnce) {
    FingerPath path = pathTo({120, 100});
    path.add({120, 300}, 2);
    EXPECT_EQ(path.axis(), DragAxis::horizontal);
}

TEST(FingerPathTest, LeavesTheSlopOutOfTheTranslation) {
    EXPECT_EQ(pathTo({130, 107}).translation(), (CGPoint{20, 7}));
    EXPECT_EQ(pathTo({70, 93}).translation(), (CGPoint{-20, -7}));
    EXPECT_EQ(pathTo({107, 130}).translation(), (CGPoint{7, 20}));
    FingerPath path = pathTo({130, 100});
    path.add({80, 100}, 2); // back beyond the start
    EXPECT_EQ(path.translation(), (CGPoint{-30, 0}));
}

TEST(FingerPathTest, TheTranslationDoesNotDependOnTheNumberOfReports) {
    FingerPath path({100, 100}, 0);
    for (int i = 1; i <= 400; ++i) {
        path.add({100 + 0.25 * i, 100}, 0.001 * i);
    }
    EXPECT_EQ(path.translation(), pathTo({200, 100}).translation());
    EXPECT_EQ(path.translation(), (CGPoint{90, 0}));
}

TEST(FingerPathTest, HasTheSpeedOfTheLastTenthOfASecond) {
    FingerPath path({0, 0}, 0);
    path.add({500, 0}, 0.25);
    path.add({510, -20}, 0.3125);
    path.add({520, -40}, 0.34375);
    EXPECT_NEAR(path.velocity().x, 20 / 0.09375, 1e-9);
    EXPECT_NEAR(path.velocity().y, -40 / 0.09375, 1e-9);
}

TEST(FingerPathTest, HasNoSpeedAfterARest) {
    FingerPath path({0, 0}, 0);
    EXPECT_EQ(path.velocity(), CGPoint{});
    path.add({100, 0}, 0.0625);
    EXPECT_NEAR(path.velocity().x, 1600, 1e-9);
    path.add({100, 0}, 0.125);
    EXPECT_NEAR(path.velocity().x, 0, 1e-9);
    path.add({100, 0}, 0.25);
    EXPECT_EQ(path.velocity(), CGPoint{});
}

TEST(FingerPathTest, LimitsTheVelocity) {
    FingerPath path({0, 0}, 0);
    path.add({300, -300}, 1e-6);
    EXPECT_EQ(path.velocity(), (CGPoint{20000, -20000}));
    path.add({1e308, 0}, 2e-6);
    path.add({-1e308, 0}, 1);
    path.add({1e308, 0}, 1 + 1e-9);
    EXPECT_EQ(path.velocity(), (CGPoint{20000, 0}));
}

TEST(FingerPathTest, TheLastReportOfAMomentCounts) {
    FingerPath path({0, 0}, 5);
    for (int i = 0; i < 1000; ++i) {
        path.add({static_cast<CGFloat>(i), 0}, 5);
    }
    EXPECT_EQ(path.velocity(), CGPoint{});
    path.add({1009, 0}, 5.0625);
    EXPECT_NEAR(path.velocity().x, 160, 1e-9); // 10 points
}

} // namespace
} // namespace quorvel::platform
