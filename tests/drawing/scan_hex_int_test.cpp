#include "drawing/scan_hex_int.h"

#include <gtest/gtest.h>

#include <string>

namespace quorvel {
namespace {

TEST(ScanHexInt, ReadsTheLongestRunOfDigits) {
    EXPECT_EQ(scanHexInt(u"12"), 0x12U);
    EXPECT_EQ(scanHexInt(u"0123456"), 0x123456U);
    EXPECT_EQ(scanHexInt(u"aBcDeF"), 0xABCDEFU);
    EXPECT_EQ(scanHexInt(u"ff0000zz"), 0xFF0000U);
    EXPECT_EQ(scanHexInt(u"12 34"), 0x12U);
    EXPECT_EQ(scanHexInt(u"9g"), 9U);
    EXPECT_EQ(scanHexInt(u"0"), 0U);
    EXPECT_EQ(scanHexInt(u"1x2"), 1U);
}

TEST(ScanHexInt, TakesAMark) {
    EXPECT_EQ(scanHexInt(u"0x1234"), 0x1234U);
    EXPECT_EQ(scanHexInt(u"0XfF"), 0xFFU);
    EXPECT_EQ(scanHexInt(u"0x0x12"), 0U);
    EXPECT_EQ(scanHexInt(u"00x12"), 0U);
}

TEST(ScanHexInt, ReadsNothingBehindAMarkAsNought) {
    EXPECT_EQ(scanHexInt(u"0x"), 0U);
    EXPECT_EQ(scanHexInt(u"0X"), 0U);
    EXPECT_EQ(scanHexInt(u"0xZZ12"), 0U);
    EXPECT_EQ(scanHexInt(u"0x 12"), 0U);
}

TEST(ScanHexInt, SkipsWhiteSpaceAndNewlinesInFront) {
    EXPECT_EQ(scanHexInt(u" \t\n\v\f\r12"), 0x12U);
    EXPECT_EQ(scanHexInt(u"\u0085\u00A0\u1680\u2000\u200B\u2028\u2029\u202F\u205F\u3000f"), 0xFU);
    EXPECT_EQ(scanHexInt(u"  0x12"), 0x12U);
}

TEST(ScanHexInt, FindsNothing) {
    for (const char16_t* text : {u"", u" ", u"x12", u"xyz", u"#ff", u"-1", u"+1", u"g", u"G", u"/",
                                 u":", u"@", u"`", u"\u200C1", u"\uFF11", u"\u0661"}) {
        EXPECT_EQ(scanHexInt(text), std::nullopt) << testing::PrintToString(std::u16string(text));
    }
    EXPECT_EQ(scanHexInt(std::u16string{0xD83D, u'1'}), std::nullopt); // half a pair
}

TEST(ScanHexInt, StopsAtTheLargestOf32Bits) {
    EXPECT_EQ(scanHexInt(u"FFFFFFFF"), 0xFFFFFFFFU);
    EXPECT_EQ(scanHexInt(u"FFFFFFFE"), 0xFFFFFFFEU);
    EXPECT_EQ(scanHexInt(u"000000000012"), 0x12U);
    EXPECT_EQ(scanHexInt(u"100000000"), 0xFFFFFFFFU);
    EXPECT_EQ(scanHexInt(u"0x123456789"), 0xFFFFFFFFU);
    EXPECT_EQ(scanHexInt(u"10000000000000000000000000 "), 0xFFFFFFFFU);
    EXPECT_EQ(scanHexInt(std::u16string(1000000, u'1')), 0xFFFFFFFFU);
}

} // namespace
} // namespace quorvel
