#include "hosting/preferred_size.h"

#include <gtest/gtest.h>

namespace quorvel {
namespace {

void expectHeight(double totalHeight, double maxHeight, bool limit, double height, double stored) {
    const PreferredHeight preferred = preferredHeight(totalHeight, maxHeight, limit);
    EXPECT_EQ(preferred.height, height);
    EXPECT_EQ(preferred.totalHeight, stored);
}

TEST(PreferredSize, IsTheLargestBeforeTheFirstMeasurement) {
    expectHeight(0, 300, false, 300, 300);
    expectHeight(0, 200, true, 200, 200);
}

TEST(PreferredSize, UsesUpTheSignOfNoRows) {
    expectHeight(-1, 300, false, 0, 0);
    expectHeight(-1, 300, true, 0, 0);
}

TEST(PreferredSize, IsTheHeightOfTheRows) {
    expectHeight(150, 200, false, 150, 150);
    expectHeight(150, 200, true, 150, 150);
    expectHeight(350, 200, false, 350, 350);
    expectHeight(200, 200, true, 200, 200);
    expectHeight(200, 200, false, 200, 200);
}

TEST(PreferredSize, IsLimitedOnRequest) {
    expectHeight(350, 200, true, 200, 350);
}

TEST(PreferredSize, FollowsAnOddLargestHeight) {
    expectHeight(-1, -5, false, 0, 0);
    expectHeight(-1, -5, true, -5, 0);
    expectHeight(0, 0, true, 0, 0);
}

} // namespace
} // namespace quorvel
