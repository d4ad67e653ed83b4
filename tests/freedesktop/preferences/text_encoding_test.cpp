#include "freedesktop/preferences/text_encoding.h"

#include <gtest/gtest.h>

namespace quorvel::freedesktop {
namespace {

using namespace std::string_view_literals;

TEST(TextEncoding, FollowsTheByteOrderMark) {
    EXPECT_EQ(decodedText("\xEF\xBB\xBFhé"), "hé");
    EXPECT_EQ(decodedText("\xFE\xFF\0h\xD8\x3D\xDE\x00"sv), "h😀");
    EXPECT_EQ(decodedText("\xFF\xFEh\0\x3D\xD8\x00\xDE"sv), "h😀");
    EXPECT_EQ(decodedText("\xFE\xFF\xD8\x3D\0h"sv), "\uFFFDh");
    EXPECT_EQ(decodedText("\xFF\xFEh\0x"sv), "h");
}

TEST(TextEncoding, DetectsUtf16ByTheFirstBracketOfXml) {
    EXPECT_EQ(decodedText("\0<\0\xE9"sv), "<é");
    EXPECT_EQ(decodedText("<\0\xE9\0"sv), "<é");
    EXPECT_EQ(decodedText("h\0"sv), "h\0"sv);
    for (const std::string_view bytes :
         {"\0<"sv, "<\0"sv, "\xFE\xFF"sv, "\xFF\xFE"sv, "\xEF\xBB\xBF"sv}) {
        EXPECT_TRUE(hasDetectableEncoding(bytes));
    }
    for (const std::string_view bytes : {""sv, "<"sv, "<?"sv, "\xEF\xBB"sv}) {
        EXPECT_FALSE(hasDetectableEncoding(bytes));
    }
}

} // namespace
} // namespace quorvel::freedesktop
