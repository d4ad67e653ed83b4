#include "drawing/color_from_hex_string.h"

#include <gtest/gtest.h>

#include <string>

namespace quorvel {
namespace {

using namespace platform;

constexpr UIColor color(int red, int green, int blue) {
    return {red / 255.0, green / 255.0, blue / 255.0, 1.0};
}

constexpr UIColor sample = color(0x1A, 0x2B, 0x3C);

TEST(ColorFromHexString, ReadsSixDigitsBehindAPrefix) {
    EXPECT_EQ(colorFromHexString("#1A2B3C"), sample);
    EXPECT_EQ(colorFromHexString("#1a2b3c"), sample);
    EXPECT_EQ(colorFromHexString("#FFFFFF"), UIColor::whiteColor());
    EXPECT_EQ(colorFromHexString("#000000"), UIColor::blackColor());
    EXPECT_EQ(colorFromHexString("#7f0001"), color(127, 0, 1));
}

TEST(ColorFromHexString, TakesAnyPrefixButNeedsOne) {
    EXPECT_EQ(colorFromHexString("X1A2B3C"), sample);
    EXPECT_EQ(colorFromHexString("01A2B3C"), sample);
    EXPECT_EQ(colorFromHexString(" 1A2B3C"), sample);
    EXPECT_EQ(colorFromHexString("\u00E91A2B3C"), sample);
    EXPECT_EQ(colorFromHexString("\u20AC1A2B3C"), sample);
    EXPECT_EQ(colorFromHexString("1A2B3C"), UIColor::whiteColor());
}

TEST(ColorFromHexString, IgnoresTheLastTwoOfNine) {
    EXPECT_EQ(colorFromHexString("#1A2B3C80"), sample);
    EXPECT_EQ(colorFromHexString("#1A2B3Czz"), sample);
    EXPECT_EQ(colorFromHexString("#1A2B3C\u20AC\u00E9"), sample);
    EXPECT_EQ(colorFromHexString("#1A2B3C\U0001F600"), sample); // two units
}

TEST(ColorFromHexString, IsWhiteForEveryOtherLength) {
    for (const char* text : {"", "#", "#FFF", "#12345", "#0000000", "#000000000",
                             "\U0001F600000000", "#000000000000000000"}) {
        EXPECT_EQ(colorFromHexString(text), UIColor::whiteColor()) << text;
    }
    EXPECT_EQ(colorFromHexString(std::nullopt), UIColor::whiteColor());
    EXPECT_EQ(colorFromHexString(std::string(10000000, '0')), UIColor::whiteColor());
}

TEST(ColorFromHexString, IsBlackWithoutADigit) {
    EXPECT_EQ(colorFromHexString("#GGGGGG"), UIColor::blackColor());
    EXPECT_EQ(colorFromHexString("#-12345"), UIColor::blackColor());
    EXPECT_EQ(colorFromHexString("##12345"), UIColor::blackColor());
    EXPECT_EQ(colorFromHexString("#0xZZ12"), UIColor::blackColor());
    EXPECT_EQ(colorFromHexString("#      "), UIColor::blackColor());
}

TEST(ColorFromHexString, ReadsNoMoreThanTheLeadingDigits) {
    EXPECT_EQ(colorFromHexString("#12zz56"), color(0, 0, 0x12));
    EXPECT_EQ(colorFromHexString("#12345 "), color(0x01, 0x23, 0x45));
    EXPECT_EQ(colorFromHexString("#1234\u20AC6"), color(0, 0x12, 0x34));
}

TEST(ColorFromHexString, SkipsWhiteSpace) {
    EXPECT_EQ(colorFromHexString("# 12345"), color(0x01, 0x23, 0x45));
    EXPECT_EQ(colorFromHexString("#\n\t1234"), color(0, 0x12, 0x34));
    EXPECT_EQ(colorFromHexString("#\u00A0\u2003\u3000123"), color(0, 0x01, 0x23));
}

TEST(ColorFromHexString, TakesAMarkAmongTheSix) {
    EXPECT_EQ(colorFromHexString("#0x1234"), color(0, 0x12, 0x34));
    EXPECT_EQ(colorFromHexString("#0X1234"), color(0, 0x12, 0x34));
    EXPECT_EQ(colorFromHexString("#0x123456"), color(0, 0x12, 0x34));
}

// The first of the six is then the second half of the prefix.
TEST(ColorFromHexString, CutsAPrefixOfTwoUnitsApart) {
    EXPECT_EQ(colorFromHexString("\U0001F60012345"), UIColor::blackColor());
    EXPECT_EQ(colorFromHexString("\U0001F6001A2B3C"), UIColor::whiteColor()); // eight units
    EXPECT_EQ(colorFromHexString("\U0001F6001A2B3C8"), UIColor::blackColor());
}

TEST(ColorFromHexString, CountsADamagedByteAsOneUnit) {
    for (const char* prefix : {"\x80", "\xC1", "\xC3", "\xE2", "\xF0", "\xF5", "\xFF"}) {
        EXPECT_EQ(colorFromHexString(prefix + std::string("1A2B3C")), sample);
    }
    EXPECT_EQ(colorFromHexString("#1A2B3C\xE2\x82"), sample); // nine: cut off in a sequence
    EXPECT_EQ(colorFromHexString("#1A2B3C\xC0\x80"), sample);
    EXPECT_EQ(colorFromHexString("#1A\xE0\x80\xB1 "), color(0, 0, 0x1A)); // no digit written long
    EXPECT_EQ(colorFromHexString("#1A\xED\xA0\x80 "), color(0, 0, 0x1A)); // half a pair
    EXPECT_EQ(colorFromHexString("#1A\xF4\x90\x80\x80"), color(0, 0, 0x1A)); // beyond the last
}

} // namespace
} // namespace quorvel
