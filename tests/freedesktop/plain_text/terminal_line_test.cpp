// What reaches a terminal of a text that may hold anything.
#include "freedesktop/plain_text/terminal_line.h"

#include <string>

#include <gtest/gtest.h>

namespace quorvel::freedesktop {
namespace {

TEST(TerminalLine, DoesNotChangeOrdinaryText) {
    for (const char* text : {"Dentist", "日本語のレッスン", "Crêpes 🎂", "مرحبا", "e\u0301"}) {
        EXPECT_EQ(terminalLine(text), text);
    }
}

TEST(TerminalLine, StaysOnOneLine) {
    EXPECT_EQ(terminalLine("a\nb\r\nc\td\u2028e\u0085f"), "a b  c d e f");
}

TEST(TerminalLine, ReplacesControlCharacters) {
    EXPECT_EQ(terminalLine(std::string("\x1b[31m\x07\0x\x7f", 9)), "\uFFFD[31m\uFFFD\uFFFDx\uFFFD");
    EXPECT_EQ(terminalLine("\u009b31m"), "\uFFFD31m");
}

TEST(TerminalLine, ReplacesDamagedBytes) {
    EXPECT_EQ(terminalLine("a\xff"
                           "b"),
              "a\uFFFDb");
    EXPECT_EQ(terminalLine("\xc0\xaf"), "\uFFFD\uFFFD");                // overlong
    EXPECT_EQ(terminalLine("\xed\xa0\x80"), "\uFFFD\uFFFD\uFFFD");      // half of a pair
    EXPECT_EQ(terminalLine("\xf4\x90\x80\x80").substr(0, 3), "\uFFFD"); // beyond the last
    EXPECT_EQ(terminalLine("\xe2\x82"), "\uFFFD\uFFFD");                // cut off
}

TEST(TerminalLine, TakesOutWhatTurnsTheLineAround) {
    EXPECT_EQ(terminalLine("a\u202E\u2066b\u2069\u202Cc"), "abc");
}

TEST(TerminalLine, DoesNotChangeDirectionMarksAndJoiners) {
    for (const char* text : {"\u05E4\u05D2\u200F (A\u200E)", "\u061C\u0645",
                             "\u0645\u06CC\u200C\u062E", "\U0001F468\u200D\U0001F467\uFE0F"}) {
        EXPECT_EQ(terminalLine(text), text);
    }
}

} // namespace
} // namespace quorvel::freedesktop
