// Cutting bytes into content lines, with every kind of line break.
#include "freedesktop/calendar/content_lines.h"

#include <vector>

#include <gtest/gtest.h>

namespace quorvel::freedesktop::ics {
namespace {

std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines;
    ContentLineReader reader(text);
    RawLine line;
    std::string scratch;
    while (reader.next(line)) {
        lines.push_back(std::to_string(line.number) + "|" + std::string(unfolded(line, scratch)));
    }
    return lines;
}

using Lines = std::vector<std::string>;

TEST(ContentLines, EndWithAnyLineBreak) {
    const Lines expected{"1|A:1", "2|B:2", "3|C:3"};
    EXPECT_EQ(linesOf("A:1\r\nB:2\r\nC:3\r\n"), expected);
    EXPECT_EQ(linesOf("A:1\nB:2\nC:3"), expected);
    EXPECT_EQ(linesOf("A:1\rB:2\rC:3\r"), expected);
    EXPECT_EQ(linesOf("\xEF\xBB\xBF"
                      "A:1\r\nB:2\nC:3"),
              expected);
}

TEST(ContentLines, AreUnfolded) {
    EXPECT_EQ(linesOf("A:on\r\n e\r\n\t two\r\nB:2\r\n"), (Lines{"1|A:one two", "4|B:2"}));
    EXPECT_EQ(linesOf("A:on\n e\nB:2"), (Lines{"1|A:one", "3|B:2"}));
    EXPECT_EQ(linesOf("A:on\r e\rB:2"), (Lines{"1|A:one", "3|B:2"}));
    EXPECT_EQ(linesOf("SUMM\r\n ARY:x"), (Lines{"1|SUMMARY:x"}));
}

TEST(ContentLines, OfAnEmptyTextAreNone) {
    EXPECT_EQ(linesOf(""), Lines{});
    EXPECT_EQ(linesOf("\xEF\xBB\xBF"), Lines{});
}

TEST(ContentLines, SplitAtTheFirstColonOutsideQuotes) {
    const auto line = splitContentLine("DTSTART;X=\"a:b;c\";TZID=Europe/Berlin:20240101T000000");
    ASSERT_TRUE(line);
    EXPECT_EQ(line->name, "DTSTART");
    EXPECT_EQ(line->value, "20240101T000000");
    EXPECT_EQ(parameterValue(line->parameters, "TZID"), "Europe/Berlin");
    EXPECT_EQ(parameterValue(line->parameters, "X"), "a:b;c");
    EXPECT_EQ(parameterValue(line->parameters, "Y"), std::nullopt);
    EXPECT_EQ(parameterValue("tzid=UTC", "TZID"), "UTC");
}

TEST(ContentLines, WithoutNameOrColonAreNone) {
    EXPECT_FALSE(splitContentLine("just words"));
    EXPECT_FALSE(splitContentLine(":value"));
    EXPECT_FALSE(splitContentLine("NAME;X=1"));
    EXPECT_EQ(splitContentLine("NAME;X=\"1:value")->value, "value");
    EXPECT_EQ(splitContentLine("NAME:")->value, "");
}

} // namespace
} // namespace quorvel::freedesktop::ics
