#include "drawing/hex_string.h"

#include <gtest/gtest.h>

#include <limits>

#include "platform/cg_color.h"

namespace quorvel {
namespace {

using namespace platform;

TEST(HexString, CutsOffEachComponent) {
    EXPECT_EQ(hexStringOfColor({{1.0, 0.5, 0.0, 0.3}}), "#FF7F00");
    EXPECT_EQ(hexStringOfColor({{0.999, 1.0, 0.25, 1}}), "#FEFF3F");
    EXPECT_EQ(hexStringOfColor({{0x1A / 255.0, 0x2B / 255.0, 0x3C / 255.0, 1}}), "#1A2B3C");
    EXPECT_EQ(hexStringOfColor({{10 / 255.0, 15 / 255.0, 16 / 255.0, 1}}), "#0A0F10");
}

TEST(HexString, WritesMoreDigitsAboveOne) {
    EXPECT_EQ(hexStringOfColor({{1.2, 0, 0, 1}}), "#1320000");
    EXPECT_EQ(hexStringOfColor({{0, 0, 1.2, 1}}), "#0000132");
}

TEST(HexString, WritesTheBitsOfANegativeNumber) {
    EXPECT_EQ(hexStringOfColor({{-1 / 255.0, 0, 0, 1}}), "#FFFFFFFF0000");
    EXPECT_EQ(hexStringOfColor({{0, -2 / 255.0, 0, 1}}), "#00FFFFFFFE00");
    EXPECT_EQ(hexStringOfColor({{-0.9 / 255.0, -0.0, 0, 1}}), "#000000");
}

TEST(HexString, StopsAtTheEndsOfTheRange) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(hexStringOfColor({{1e300, -1e300, notANumber, 1}}), "#7FFFFFFF8000000000");
    EXPECT_EQ(hexStringOfColor({{infinity, -infinity, -infinity, 1}}), "#7FFFFFFF8000000080000000");
    EXPECT_EQ(hexStringOfColor({{-1e9, -1e9, -1e9, 1}}), "#800000008000000080000000");
}

TEST(HexString, TakesAMissingComponentAsNought) {
    EXPECT_EQ(hexStringOfColor({}), "#000000");
    EXPECT_EQ(hexStringOfColor({{0.5, 1.0}}), "#7FFF00"); // a grey's alpha counts as green
    EXPECT_EQ(hexStringOfColor({{1.0, 1.0, 1.0, 0.0, 0.5}}), "#FFFFFF");
}

} // namespace
} // namespace quorvel
