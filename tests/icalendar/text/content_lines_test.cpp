// Cutting bytes into content lines, with every kind of line break.
#include "icalendar/text/content_lines.h"

#include <cstring>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "tests/test_seed.h"

namespace quorvel::icalendar {
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

TEST(ContentLines, EndEachInItsOwnLineBreak) {
    EXPECT_EQ(linesOf("A:1\r\r\nB:2\r\nC:3\r\n"), (Lines{"1|A:1", "2|B:2", "3|C:3"}));
    EXPECT_EQ(linesOf("A:1\nB:2\rC:3\nD:4\r\r\nE:5\r"),
              (Lines{"1|A:1", "2|B:2", "3|C:3", "4|D:4", "5|E:5"}));
    EXPECT_EQ(linesOf("A:1\r\r\r\nB:2"), (Lines{"1|A:1", "2|", "3|B:2"}));
    EXPECT_EQ(linesOf("A:1\r\rB:2\n\rC:3"), (Lines{"1|A:1", "2|", "3|B:2", "4|", "5|C:3"}));
    EXPECT_EQ(linesOf("A:o\r\r\n n\r e\n \r\n  two\r\r\nB:2"), (Lines{"1|A:one two", "6|B:2"}));
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

std::vector<std::string> linesOfPieces(std::string_view text, std::size_t pieceLength) {
    std::vector<std::string> lines;
    ContentLineReader reader;
    RawLine line;
    std::string scratch;
    std::string pending;
    for (std::size_t at = 0; at <= text.size(); at += pieceLength) {
        pending += text.substr(at, pieceLength);
        reader.continueWith(pending, at + pieceLength > text.size());
        while (reader.next(line)) {
            lines.push_back(std::to_string(line.number) + "|" +
                            std::string(unfolded(line, scratch)));
        }
        pending = std::string(reader.remaining());
    }
    return lines;
}

TEST(ContentLines, AreTheSameOfPieces) {
    for (const std::string_view text :
         {"A:1\r\nB:2\r\n",
          "\xEF\xBB\xBF"
          "A:on\r\n e\r\n\t two\r\nB:2\r\n\r\n",
          "A:1\rB:2\r 3\rC:4", "A:1\nB:2\n\n 3\n", "\n", "\xEF\xBB\xBF", "A:1\r", "\r\n \r\n A"}) {
        for (std::size_t length = 1; length < 9; ++length) {
            EXPECT_EQ(linesOfPieces(text, length), linesOf(text)) << text << " by " << length;
        }
    }
}

// By the rule alone, from one byte to the next.
Lines expectedLines(const std::string& text) {
    Lines lines;
    std::string line;
    std::size_t number = 1;
    std::size_t breaks = 0;
    for (std::size_t at = 0; at < text.size();) {
        std::size_t length = 0;
        for (const char* lineBreak : {"\r\r\n", "\r\n", "\r", "\n"}) {
            if (length == 0 && text.compare(at, std::strlen(lineBreak), lineBreak) == 0) {
                length = std::strlen(lineBreak);
            }
        }
        if (length == 0) {
            line += text[at++];
            continue;
        }
        at += length;
        ++breaks;
        if (at < text.size() && (text[at] == ' ' || text[at] == '\t')) {
            ++at;
            continue;
        }
        lines.push_back(std::to_string(number) + "|" + line);
        line.clear();
        number = breaks + 1;
    }
    const bool isOpen = !text.empty() && text.back() != '\r' && text.back() != '\n';
    if (isOpen) {
        lines.push_back(std::to_string(number) + "|" + line);
    }
    return lines;
}

TEST(ContentLines, OfAnyBreaksFollowTheRule) {
    std::mt19937 random(testSeed());
    constexpr std::string_view letters = "\r\r\r\n\n \tA";
    for (int round = 0; round < 3000; ++round) {
        std::string text;
        for (std::size_t length = random() % 40; length > 0; --length) {
            text += letters[random() % letters.size()];
        }
        // Far breaks are found in another way than near ones.
        text.insert(random() % (text.size() + 1), std::string(random() % 3 * 9000, 'x'));
        const Lines expected = expectedLines(text);
        ASSERT_EQ(linesOf(text), expected) << round;
        const std::size_t length = text.size() < 100 ? 1 + random() % 7 : 1000 + random() % 9000;
        ASSERT_EQ(linesOfPieces(text, length), expected) << round;
    }
}

// This takes hours if all bytes are examined again for each line.
TEST(ContentLines, OfLittleButBreaksAreReadInOnePass) {
    struct Case {
        std::string_view repeated;
        std::size_t moreLines; // than repetitions
    };
    for (const Case& one : {Case{"\r", 0}, Case{"\r\r\n", 0}, Case{"\r\n\r", 1}, Case{"\n\r", 1}}) {
        constexpr std::size_t repetitions = 3'000'000;
        std::string text;
        for (std::size_t i = 0; i < repetitions; ++i) {
            text += one.repeated;
        }
        ContentLineReader reader(text);
        RawLine line;
        std::size_t count = 0;
        while (reader.next(line)) {
            ++count;
        }
        EXPECT_EQ(count, repetitions + one.moreLines);
    }
}

TEST(ContentLines, BeyondFourMegabytesAreCut) {
    constexpr std::size_t longest = std::size_t{4} << 20U;
    const std::string text = "A:" + std::string(longest, 'x') + "\n x\n x\n x\nB:2\n 3\n" + "C:4";
    const Lines whole = linesOf(text);
    ASSERT_EQ(whole.size(), 3U);
    EXPECT_EQ(whole[0].size(), 2 + longest);
    EXPECT_EQ(whole[1], "5|B:23");
    EXPECT_EQ(whole[2], "7|C:4");
    for (const std::size_t length : {std::size_t{100000}, longest - 1, longest, longest + 6}) {
        EXPECT_EQ(linesOfPieces(text, length), whole) << length;
    }
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

TEST(ContentLines, NameAZoneInAnyWay) {
    const auto zoneOf = [](std::string_view text) {
        const auto line = splitContentLine(text);
        const auto zone = line ? zoneParameter(line->parameters) : std::nullopt;
        return zone ? std::string(*zone) + "|" + std::string(line->value) : "none";
    };
    EXPECT_EQ(zoneOf("DTSTART;TZID=Europe/Berlin:2024"), "Europe/Berlin|2024");
    EXPECT_EQ(zoneOf("DTSTART;TZID=\"(UTC+01:00) Bern, Rome\":2024"),
              "(UTC+01:00) Bern, Rome|2024");
    EXPECT_EQ(zoneOf("DTSTART;TZID=(UTC+01:00) Bern, Rome;X=1:2024"),
              "(UTC+01:00) Bern, Rome|2024");
    EXPECT_EQ(zoneOf("DTSTART;TZID=(UTC-5:30):2024"), "(UTC-5:30)|2024");
    EXPECT_EQ(zoneOf("DTSTART;TZID=Europe/Berlin,UTC:2024"), "Europe/Berlin|2024");
    EXPECT_EQ(zoneOf("DTSTART;TZID=(UTC+01:00) Bern"), "(UTC+01|00) Bern");
    EXPECT_EQ(zoneOf("DTSTART;TZID=(X+01:00):2024"), "(X+01|00):2024");
    EXPECT_EQ(zoneOf("DTSTART;VALUE=DATE:2024"), "none");
}

// Whatever the lines before were.
TEST(ContentLines, AreSplitAlikeOneAfterTheOther) {
    const std::string_view parameters[] = {
        "TZID=Europe/Berlin", "TZID=Europe/Berlin;X=1", "TZID=Europe",  "X=\"a:b",
        "X=\"a:b\"",          "TZID=(UTC+01:00) Bern",  "TZID=(UTC+01", "",
        "VALUE=DATE"};
    const std::string_view values[] = {"", "20240101", "00) Bern:20240101", "a\":b", ":x"};
    ContentLineSplitter splitter;
    for (int round = 0; round < 2; ++round) {
        for (const std::string_view one : parameters) {
            for (const std::string_view value : values) {
                for (const char* colon : {":", ""}) {
                    const std::string line =
                        "DTSTART;" + std::string(one) + colon + std::string(value);
                    const auto expected = splitContentLine(line, 7);
                    ContentLine content;
                    ASSERT_EQ(splitter.split(line, 7, content), expected.has_value()) << line;
                    if (expected) {
                        EXPECT_EQ(content.name, expected->name) << line;
                        EXPECT_EQ(content.parameters, expected->parameters) << line;
                        EXPECT_EQ(content.value, expected->value) << line;
                    }
                }
            }
        }
    }
}

TEST(ContentLines, OfSeveralZonesInTurnAreSplitAlike) {
    const std::string zones[] = {"TZID=A", "TZID=A;X=1", "VALUE=DATE", "TZID=Europe/Berlin",
                                 "TZID=America/New_York"};
    ContentLineSplitter splitter;
    for (const std::size_t count : {2U, 3U, 4U, 5U}) {
        for (std::size_t i = 0; i < 3 * count; ++i) {
            const std::string& zone = zones[i % count];
            const std::string value = "2024:" + std::to_string(i);
            const std::string line = "DTEND;" + zone + ":" + value;
            ContentLine content;
            ASSERT_TRUE(splitter.split(line, 5, content)) << line;
            EXPECT_EQ(content.name, "DTEND");
            EXPECT_EQ(content.parameters, zone);
            EXPECT_EQ(content.value, value);
        }
    }
}

TEST(ContentLines, WithoutNameOrColonAreNone) {
    EXPECT_FALSE(splitContentLine("just words"));
    EXPECT_FALSE(splitContentLine(":value"));
    EXPECT_FALSE(splitContentLine("NAME;X=1"));
    EXPECT_EQ(splitContentLine("NAME;X=\"1:value")->value, "value");
    EXPECT_EQ(splitContentLine("NAME:")->value, "");
}

} // namespace
} // namespace quorvel::icalendar
