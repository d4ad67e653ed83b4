#include "platform/property_list.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace quorvel::platform {
namespace {

PropertyListValue text(const char* value) {
    return {std::string(value)};
}

PropertyListValue integer(std::int64_t value) {
    return {value};
}

PropertyListValue real(double value) {
    return {value};
}

constexpr auto intMax = std::numeric_limits<std::int32_t>::max();
constexpr auto intMin = std::numeric_limits<std::int32_t>::min();
constexpr auto int64Max = std::numeric_limits<std::int64_t>::max();
constexpr auto int64Min = std::numeric_limits<std::int64_t>::min();
constexpr float floatInfinity = std::numeric_limits<float>::infinity();

TEST(PropertyListTest, IntValueReadsAsMuchOfAStringAsIsANumber) {
    EXPECT_EQ(intValue(text("42")), 42);
    EXPECT_EQ(intValue(text("+7")), 7);
    EXPECT_EQ(intValue(text("-7x")), -7);
    EXPECT_EQ(intValue(text("3.9")), 3);
    EXPECT_EQ(intValue(text("1e3")), 1);
    EXPECT_EQ(intValue(text("0x1A")), 0);
    EXPECT_EQ(intValue(text("")), 0);
    EXPECT_EQ(intValue(text("-")), 0);
    EXPECT_EQ(intValue(text("--5")), 0);
    EXPECT_EQ(intValue(text("++5")), 0);
    EXPECT_EQ(intValue(text("abc")), 0);
    EXPECT_EQ(intValue(text("\u0665")), 0); // an Arabic digit
    EXPECT_EQ(intValue(text("YES")), 0);
}

TEST(PropertyListTest, IntValueSkipsWhiteSpaceAroundTheSign) {
    EXPECT_EQ(intValue(text(" \t\r\n 5")), 5);
    EXPECT_EQ(intValue(text("- 5")), -5);
    EXPECT_EQ(intValue(text("\u00A0\u2000\u200B\u3000-\u00A05")), -5);
    EXPECT_EQ(intValue(text("\x7F\u0080"
                            "6")),
              6);
    EXPECT_EQ(intValue(text("\u200C5")), 0);
    EXPECT_EQ(intValue(text("\u00A15")), 0);
    EXPECT_EQ(intValue(text("5 6")), 5);
    EXPECT_EQ(intValue({std::string("\0 8", 3)}), 8);
    EXPECT_EQ(intValue(text("\xC2")), 0); // damaged text
    EXPECT_EQ(intValue(text("\xE2\x80")), 0);
}

TEST(PropertyListTest, IntegersSaturateAtTheirOwnWidth) {
    EXPECT_EQ(intValue(text("2147483647")), intMax);
    EXPECT_EQ(intValue(text("2147483648")), intMax);
    EXPECT_EQ(intValue(text("-2147483648")), intMin);
    EXPECT_EQ(intValue(text("-2147483649")), intMin);
    EXPECT_EQ(intValue(text("99999999999999999999999")), intMax);
    EXPECT_EQ(integerValue(text("2147483648")), 2147483648);
    EXPECT_EQ(integerValue(text("9223372036854775807")), int64Max);
    EXPECT_EQ(integerValue(text("9223372036854775808")), int64Max);
    EXPECT_EQ(integerValue(text("-9223372036854775808")), int64Min);
    EXPECT_EQ(integerValue(text("-9223372036854775809")), int64Min);
}

TEST(PropertyListTest, NumbersBecomeIntegers) {
    EXPECT_EQ(intValue(real(2.9)), 2);
    EXPECT_EQ(intValue(real(-2.9)), -2);
    EXPECT_EQ(intValue(real(1e10)), intMax);
    EXPECT_EQ(intValue(real(-1e10)), intMin);
    EXPECT_EQ(intValue(real(2147483647.5)), intMax);
    EXPECT_EQ(intValue(real(2147483648.0)), intMax);
    EXPECT_EQ(intValue(real(-2147483648.5)), intMin);
    EXPECT_EQ(integerValue(real(9223372036854775808.0)), int64Max);
    EXPECT_EQ(integerValue(real(-9223372036854775808.0)), int64Min);
    EXPECT_EQ(intValue(real(std::nan(""))), 0);
    EXPECT_EQ(integerValue(real(1e30)), int64Max);
    EXPECT_EQ(integerValue(real(-std::numeric_limits<double>::infinity())), int64Min);
    EXPECT_EQ(integerValue(real(4294967301.7)), 4294967301);
    EXPECT_EQ(intValue(integer(4294967301)), 5);
    EXPECT_EQ(intValue(integer(2147483648)), intMin);
    EXPECT_EQ(integerValue(integer(int64Min)), int64Min);
    EXPECT_EQ(intValue({true}), 1);
    EXPECT_EQ(integerValue({false}), 0);
}

TEST(PropertyListTest, FloatValueReadsPlainDecimalNumbers) {
    EXPECT_EQ(floatValue(text(".5")), 0.5F);
    EXPECT_EQ(floatValue(text(" \n\u00A0-2.25abc")), -2.25F);
    EXPECT_EQ(floatValue(text("+1.5e2")), 150.0F);
    EXPECT_EQ(floatValue(text("1e")), 1.0F);
    EXPECT_EQ(floatValue(text("1,5")), 1.0F);
    EXPECT_EQ(floatValue(text("0x10")), 0.0F);
    EXPECT_EQ(floatValue(text("nan")), 0.0F);
    EXPECT_EQ(floatValue(text("inf")), 0.0F);
    EXPECT_EQ(floatValue(text("")), 0.0F);
    EXPECT_EQ(floatValue(text("+-5")), 0.0F);
    EXPECT_EQ(floatValue(text("--5")), 0.0F);
    EXPECT_EQ(floatValue(text("+")), 0.0F);
}

TEST(PropertyListTest, FloatValueBeyondItsRangeIsInfiniteOrZero) {
    EXPECT_EQ(floatValue(text("1e400")), floatInfinity);
    EXPECT_EQ(floatValue(text("-1e400")), -floatInfinity);
    EXPECT_EQ(floatValue(text("1e99999999999999999999")), floatInfinity);
    EXPECT_EQ(floatValue(text("1e39")), floatInfinity);
    EXPECT_EQ(floatValue(text("1e-400")), 0.0F);
    EXPECT_EQ(floatValue({"0." + std::string(500, '0') + "1"}), 0.0F);
    EXPECT_EQ(floatValue({std::string(500, '9')}), floatInfinity);
    EXPECT_EQ(floatValue({"1" + std::string(500, '0') + "e-500"}), 1.0F);
    EXPECT_EQ(floatValue(real(1e300)), floatInfinity);
    EXPECT_EQ(floatValue(real(-1e300)), -floatInfinity);
}

TEST(PropertyListTest, NumbersBecomeFloats) {
    EXPECT_EQ(floatValue(integer(16777217)), 16777216.0F);
    EXPECT_EQ(floatValue(real(0.5)), 0.5F);
    EXPECT_EQ(floatValue({true}), 1.0F);
}

TEST(PropertyListTest, BoolValueOfStrings) {
    for (const char* yes : {"YES", "y", "true", "T", " \nYes", "1", "-1", "+9", "00001", "0012x"}) {
        EXPECT_TRUE(boolValue(text(yes))) << yes;
    }
    for (const char* no : {"NO", "false", "", "on", "0", "0.5", "-0", "+t", "-y", "0t", "++", "++1",
                           "- 5", "--5", "a1"}) {
        EXPECT_FALSE(boolValue(text(no))) << no;
    }
}

TEST(PropertyListTest, BoolValueOfNumbersIsWhetherTheyAreZero) {
    EXPECT_TRUE(boolValue(integer(-1)));
    EXPECT_TRUE(boolValue(integer(4294967296)));
    EXPECT_FALSE(boolValue(integer(0)));
    EXPECT_TRUE(boolValue(real(0.5)));
    EXPECT_FALSE(boolValue(real(-0.0)));
    EXPECT_TRUE(boolValue({true}));
    EXPECT_FALSE(boolValue({false}));
}

TEST(PropertyListTest, IntegersAboveTheSignedRangeAreLargeFloatsAndGiveTheirLowBits) {
    const PropertyListValue largest{std::numeric_limits<std::uint64_t>::max()};
    EXPECT_EQ(floatValue(largest), 18446744073709551616.0F); // 2 to the 64th is the nearest float
    EXPECT_EQ(floatValue({std::uint64_t{1} << 63U}), 9223372036854775808.0F);
    EXPECT_EQ(integerValue(largest), -1);
    EXPECT_EQ(intValue(largest), -1);
    EXPECT_EQ(intValue({(std::uint64_t{1} << 63U) + 5}), 5);
    EXPECT_TRUE(boolValue({std::uint64_t{1} << 63U}));
    EXPECT_EQ(stringValue(largest), "18446744073709551615");
}

TEST(PropertyListTest, OtherKindsAreZero) {
    const PropertyListValue others[] = {{NSDate{5}},
                                        {PropertyListData{std::byte{1}}},
                                        {PropertyListArray{integer(1)}},
                                        {PropertyListDictionary{{"a", integer(1)}}}};
    for (const auto& other : others) {
        EXPECT_EQ(intValue(other), 0);
        EXPECT_EQ(integerValue(other), 0);
        EXPECT_EQ(floatValue(other), 0.0F);
        EXPECT_FALSE(boolValue(other));
        EXPECT_EQ(stringValue(other), std::nullopt);
    }
}

TEST(PropertyListTest, StringValueOfNumbers) {
    EXPECT_EQ(stringValue(text(" a ")), " a ");
    EXPECT_EQ(stringValue(integer(-12)), "-12");
    EXPECT_EQ(stringValue(real(0.1)), "0.1");
    EXPECT_EQ(stringValue(real(14)), "14");
    EXPECT_EQ(stringValue({true}), "1");
}

TEST(PropertyListTest, FindsKeys) {
    const PropertyListDictionary dictionary = {{"a", integer(1)}};
    ASSERT_NE(objectForKey(dictionary, "a"), nullptr);
    EXPECT_EQ(integerValue(*objectForKey(dictionary, "a")), 1);
    EXPECT_EQ(objectForKey(dictionary, "A"), nullptr);
}

} // namespace
} // namespace quorvel::platform
