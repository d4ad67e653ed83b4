#include "freedesktop/text/line_text.h"

#include <gtest/gtest.h>

namespace quorvel::freedesktop {
namespace {

constexpr std::string_view ellipsis = "\xE2\x80\xA6";
constexpr std::string_view acute = "\xCC\x81";

std::string repeated(std::string_view piece, std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i)
        text += piece;
    return text;
}

TEST(LineText, GoodTextStaysAsItIs) {
    EXPECT_EQ(lineText(""), "");
    EXPECT_EQ(lineText("Zahnarzt, 日本語, مرحبا, 👩‍🚀"),
              "Zahnarzt, 日本語, مرحبا, 👩‍🚀");
}

TEST(LineText, ControlCharactersAndLineEndsBecomeSpaces) {
    EXPECT_EQ(lineText("a\nb\tc\x01"
                       "d\x7F"
                       "e"),
              "a b c d e");
    EXPECT_EQ(lineText(std::string_view("a\0b", 3)), "a b");
    EXPECT_EQ(lineText("a\xC2\x85"
                       "b\xE2\x80\xA8"
                       "c\xE2\x80\xA9"
                       "d"),
              "a b c d");
}

TEST(LineText, DamagedBytesAreReplacedOneByOne) {
    EXPECT_EQ(lineText("a\xFF"
                       "b"),
              "a\xEF\xBF\xBD"
              "b");
    EXPECT_EQ(lineText("\xE6\x97"), "\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(lineText("\xED\xA0\x80"), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"); // a surrogate
}

TEST(LineText, LongTextsEndWithAnEllipsis) {
    EXPECT_EQ(lineText(std::string(lineTextMaximumCharacters, 'i')),
              std::string(lineTextMaximumCharacters, 'i'));
    EXPECT_EQ(lineText(std::string(1 << 20, 'i')),
              std::string(lineTextMaximumCharacters, 'i') + std::string(ellipsis));
}

TEST(LineText, MarksAreBounded) {
    const std::string text = lineText("a" + repeated(acute, 1000) + "b");
    EXPECT_EQ(text, "a" + repeated(acute, lineTextMaximumMarks) + "b");
    const std::string endless = lineText("a" + repeated(acute, 20000) + "b");
    EXPECT_EQ(endless, "a" + repeated(acute, lineTextMaximumMarks) + std::string(ellipsis));
}

TEST(LineText, MarksAreCutWithTheirLetter) {
    const std::string text = lineText(repeated("e" + std::string(acute), 5000));
    EXPECT_EQ(text, repeated("e" + std::string(acute), lineTextMaximumCharacters) +
                        std::string(ellipsis));
}

TEST(LineText, TheCutFallsBetweenCharacters) {
    // 16384 bytes end in the middle of a character of three bytes.
    const std::string text = lineText("a" + repeated("\xE2\x80\x8D", 10000));
    EXPECT_EQ(text.find("\xEF\xBF\xBD"), std::string::npos);
    EXPECT_TRUE(text.ends_with(ellipsis));
}

} // namespace
} // namespace quorvel::freedesktop
