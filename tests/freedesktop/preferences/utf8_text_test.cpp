#include "freedesktop/preferences/utf8_text.h"

#include <gtest/gtest.h>

namespace quorvel::freedesktop {
namespace {

using namespace std::string_view_literals;

TEST(Utf8Text, KeepsWhatIsWellFormed) {
    EXPECT_EQ(wellFormedUtf8("aé日😀"), "aé日😀");
    EXPECT_EQ(wellFormedUtf8(""), "");
    EXPECT_EQ(wellFormedUtf8("\xF4\x8F\xBF\xBF"), "\xF4\x8F\xBF\xBF");
}

TEST(Utf8Text, ReplacesWhatIsNot) {
    EXPECT_EQ(wellFormedUtf8("a\xFFz"), "a\uFFFDz");
    EXPECT_EQ(wellFormedUtf8("\xC0\xAF"), "\uFFFD\uFFFD");
    EXPECT_EQ(wellFormedUtf8("\xE2\x82"), "\uFFFD\uFFFD");
    EXPECT_EQ(wellFormedUtf8("\xED\xA0\x80"), "\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(wellFormedUtf8("\xF4\x90\x80\x80").size(), 12U);
}

TEST(Utf8Text, ReadsByteOrderMarks) {
    EXPECT_EQ(decodedText("\xEF\xBB\xBFhé"), "hé");
    EXPECT_EQ(decodedText("\xFE\xFF\0h\xD8\x3D\xDE\x00"sv), "h😀");
    EXPECT_EQ(decodedText("\xFF\xFEh\0\x3D\xD8\x00\xDE"sv), "h😀");
    EXPECT_EQ(decodedText("\xFE\xFF\xD8\x3D\0h"sv), "\uFFFDh");
    EXPECT_EQ(decodedText("\xFF\xFEh\0x"sv), "h");
}

TEST(Utf8Text, KnowsUtf16ByTheFirstAngleOfXml) {
    EXPECT_EQ(decodedText("\0<\0\xE9"sv), "<é");
    EXPECT_EQ(decodedText("<\0\xE9\0"sv), "<é");
    EXPECT_EQ(decodedText("h\0"sv), "h\0"sv);
    for (const std::string_view bytes :
         {"\0<"sv, "<\0"sv, "\xFE\xFF"sv, "\xFF\xFE"sv, "\xEF\xBB\xBF"sv}) {
        EXPECT_TRUE(showsItsEncoding(bytes));
    }
    for (const std::string_view bytes : {""sv, "<"sv, "<?"sv, "\xEF\xBB"sv}) {
        EXPECT_FALSE(showsItsEncoding(bytes));
    }
}

} // namespace
} // namespace quorvel::freedesktop
