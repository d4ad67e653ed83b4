#include "shells/headless/terminal_text.h"

#include <gtest/gtest.h>

#include <string>

namespace quorvel::headless {
namespace {

TEST(HarmlessText, KeepsWhatPeopleWrite) {
    for (const char* text : {"Dentist", "日本語のレッスン", "Crêpes 🎂", "مرحبا", "e\u0301"}) {
        EXPECT_EQ(harmlessText(text), text);
    }
}

TEST(HarmlessText, StaysOnOneLine) {
    EXPECT_EQ(harmlessText("a\nb\r\nc\td\u2028e\u0085f"), "a b  c d e f");
}

TEST(HarmlessText, ReplacesControlCharacters) {
    EXPECT_EQ(harmlessText(std::string("\x1b[31m\x07\0x\x7f", 9)), "\uFFFD[31m\uFFFD\uFFFDx\uFFFD");
    EXPECT_EQ(harmlessText("\u009b31m"), "\uFFFD31m");
}

TEST(HarmlessText, ReplacesDamagedBytes) {
    EXPECT_EQ(harmlessText("a\xff"
                           "b"),
              "a\uFFFDb");
    EXPECT_EQ(harmlessText("\xc0\xaf"), "\uFFFD\uFFFD");                // overlong
    EXPECT_EQ(harmlessText("\xed\xa0\x80"), "\uFFFD\uFFFD\uFFFD");      // half of a pair
    EXPECT_EQ(harmlessText("\xf4\x90\x80\x80").substr(0, 3), "\uFFFD"); // beyond the last
    EXPECT_EQ(harmlessText("\xe2\x82"), "\uFFFD\uFFFD");                // cut off
}

TEST(HarmlessText, TakesOutWhatTurnsTheLineAround) {
    EXPECT_EQ(harmlessText("a\u202E\u2066b\u2069\u202Cc"), "abc");
}

TEST(DisplayWidth, CountsColumnsAndNotBytes) {
    EXPECT_EQ(displayWidth("abc"), 3U);
    EXPECT_EQ(displayWidth("日本"), 4U);
    EXPECT_EQ(displayWidth("e\u0301"), 1U);
    EXPECT_EQ(displayWidth("🎂"), 2U);
    EXPECT_EQ(displayWidth(""), 0U);
}

TEST(TextCutToWidth, PutsAnEllipsisWhereSomethingIsMissing) {
    EXPECT_EQ(textCutToWidth("abcdef", 6), "abcdef");
    EXPECT_EQ(textCutToWidth("abcdef", 4), "abc…");
    EXPECT_EQ(textCutToWidth("日本語", 5), "日本…");
    EXPECT_EQ(textCutToWidth("日本語", 4), "日…");
    EXPECT_EQ(textCutToWidth("abc", 0), "");
}

TEST(TextCutToWidth, BoundsMarksThatTakeNoColumn) {
    std::string text = "a";
    for (int count = 0; count < 20000; ++count) {
        text += "\u0301";
    }
    const std::string cut = textCutToWidth(text, 10);
    EXPECT_LE(cut.size(), 10U * 32 + 3);
    EXPECT_TRUE(cut.ends_with("…"));
    EXPECT_EQ(harmlessText(cut), cut); // no character was cut in two
}

TEST(TextInColumns, SetsCellsUnderEachOther) {
    EXPECT_EQ(textInColumns({{"14:30", "日本", "Room"}, {"Tomorrow", "Tea", ""}, {"", "x"}}),
              "14:30     日本  Room\n"
              "Tomorrow  Tea\n"
              "          x\n");
}

TEST(TextInColumns, LetsAWideCellPushItsOwnLineAlone) {
    EXPECT_EQ(textInColumns({{"abcdefgh", "1"}, {"ab", "2"}}, {4, 6}), "abcde…  1\n"
                                                                       "ab    2\n");
}

} // namespace
} // namespace quorvel::headless
