#include "shells/headless/terminal_text.h"

#include <gtest/gtest.h>

#include <string>

#include "freedesktop/plain_text/terminal_line.h"

namespace quorvel::headless {
namespace {

TEST(DisplayWidth, CountsColumnsInsteadOfBytes) {
    EXPECT_EQ(displayWidth("abc"), 3U);
    EXPECT_EQ(displayWidth("日本"), 4U);
    EXPECT_EQ(displayWidth("e\u0301"), 1U);
    EXPECT_EQ(displayWidth("🎂"), 2U);
    EXPECT_EQ(displayWidth(""), 0U);
}

TEST(TruncatedToWidth, EndsWithAnEllipsis) {
    EXPECT_EQ(truncatedToWidth("abcdef", 6), "abcdef");
    EXPECT_EQ(truncatedToWidth("abcdef", 4), "abc…");
    EXPECT_EQ(truncatedToWidth("日本語", 5), "日本…");
    EXPECT_EQ(truncatedToWidth("日本語", 4), "日…");
    EXPECT_EQ(truncatedToWidth("abc", 0), "");
}

TEST(TruncatedToWidth, LimitsMarksThatOccupyNoColumn) {
    std::string text = "a";
    for (int count = 0; count < 20000; ++count) {
        text += "\u0301";
    }
    const std::string truncated = truncatedToWidth(text, 10);
    EXPECT_LE(truncated.size(), 10U * 32 + 3);
    EXPECT_TRUE(truncated.ends_with("…"));
    EXPECT_EQ(freedesktop::terminalLine(truncated), truncated); // all characters are complete
}

TEST(TextInColumns, AlignsColumns) {
    EXPECT_EQ(textInColumns({{"14:30", "日本", "Room"}, {"Tomorrow", "Tea", ""}, {"", "x"}}),
              "14:30     日本  Room\n"
              "Tomorrow  Tea\n"
              "          x\n");
}

TEST(TextInColumns, PrintsEveryCellOnOneLine) {
    EXPECT_EQ(textInColumns({{"a\nb", "\x1b[31mc"}, {"\u202Ed", "e"}}), "a b  \uFFFD[31mc\n"
                                                                        "d    e\n");
}

TEST(TextInColumns, AWideCellMovesItsOwnLineOnly) {
    EXPECT_EQ(textInColumns({{"abcdefgh", "1"}, {"ab", "2"}}, {4, 6}), "abcde…  1\n"
                                                                       "ab    2\n");
}

} // namespace
} // namespace quorvel::headless
