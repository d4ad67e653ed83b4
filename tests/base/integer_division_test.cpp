// Divisions towards one side, on both sides of zero.
#include "base/integer_division.h"

#include <gtest/gtest.h>

namespace quorvel {
namespace {

TEST(IntegerDivision, RoundsDown) {
    EXPECT_EQ(floorDivision(7, 3), 2);
    EXPECT_EQ(floorDivision(6, 3), 2);
    EXPECT_EQ(floorDivision(0, 3), 0);
    EXPECT_EQ(floorDivision(-1, 3), -1);
    EXPECT_EQ(floorDivision(-6, 3), -2);
    EXPECT_EQ(floorDivision(-7, 3), -3);
}

TEST(IntegerDivision, RoundsUp) {
    EXPECT_EQ(ceilingDivision(7, 3), 3);
    EXPECT_EQ(ceilingDivision(6, 3), 2);
    EXPECT_EQ(ceilingDivision(0, 3), 0);
    EXPECT_EQ(ceilingDivision(-1, 3), 0);
    EXPECT_EQ(ceilingDivision(-6, 3), -2);
    EXPECT_EQ(ceilingDivision(-7, 3), -2);
}

} // namespace
} // namespace quorvel
