// Lines and columns, and the places that the parsers of property lists name.
#include "freedesktop/preferences/text_position.h"

#include <gtest/gtest.h>

#include "tests/freedesktop/preferences/property_list_testing.h"

namespace quorvel::freedesktop {
namespace {

TEST(PositionText, CountsLinesAndCharactersFromOne) {
    EXPECT_EQ(positionText("", 0), "1:1");
    EXPECT_EQ(positionText("ab", 1), "1:2");
    EXPECT_EQ(positionText("ab\ncd", 3), "2:1");
    EXPECT_EQ(positionText("ab\ncd", 4), "2:2");
    EXPECT_EQ(positionText("ab\ncd", 99), "2:3");
    EXPECT_EQ(positionText("\xC3\xA4\xE2\x82\xAC!", 5), "1:3");
}

TEST(PositionText, KnowsAllLineEnds) {
    EXPECT_EQ(positionText("a\r\nb\rc\nd", 3), "2:1");
    EXPECT_EQ(positionText("a\r\nb\rc\nd", 5), "3:1");
    EXPECT_EQ(positionText("a\r\nb\rc\nd", 7), "4:1");
}

TEST(PlaceOfAnError, IsLineAndColumnOfXml) {
    EXPECT_EQ(placeOf(parse("<plist>\n<dict>\n  <key>a</key>\n</dict>\n</plist>")), "4:1");
    EXPECT_EQ(placeOf(parse("<plist>\n<dict>\n  <key>a</key> <what/></dict></plist>")), "3:16");
    EXPECT_EQ(placeOf(parse("<plist>\n<dict>\n  <key>a</dict>")), "3:11");
    EXPECT_EQ(placeOf(parse("<plist>\n<dict>\n  <ke")), "3:3");
    EXPECT_EQ(placeOf(parse("<plist>\n<integer>x</integer></plist>")), "2:11");
}

TEST(PlaceOfAnError, CountsWhatPrecedesTheXml) {
    EXPECT_EQ(placeOf(parse("\n \n<plist>\n<what/></plist>")), "4:1");
    EXPECT_EQ(placeOf(parse("\xEF\xBB\xBF<plist><what/></plist>")), "1:8");
    EXPECT_EQ(placeOf(parse("<plist><!-- a -- b\n --><what/></plist>")), "2:5");
}

TEST(PlaceOfAnError, IsLineAndColumnOfTheOldFormat) {
    EXPECT_EQ(placeOf(parse("{ a = 1;\n  b = 2\n  c = 3; }")), "3:3");
    EXPECT_EQ(placeOf(parse("{ a = (1,")), "1:10");
}

TEST(PlaceOfAnError, IsUnknownInTheBinaryForm) {
    const ParsedList list = parse("bplist00 torn");
    EXPECT_EQ(problemOf(list), "the binary list is damaged");
    EXPECT_EQ(placeOf(list), "");
}

} // namespace
} // namespace quorvel::freedesktop
