// What is stored of a text, and which problems are reported.
#include "icalendar/model/ics_file_parser.h"

#include <gtest/gtest.h>

namespace quorvel::icalendar {
namespace {

IcsFile read(std::string_view text) {
    return parseIcsFile(text, [](std::string_view name) { return name == "Europe/Berlin"; });
}

std::string calendar(const std::string& content) {
    return "BEGIN:VCALENDAR\r\n" + content + "END:VCALENDAR\r\n";
}

std::string event(const std::string& uid,
                  const std::string& more = "DTSTART:20240101T100000Z\r\n") {
    return "BEGIN:VEVENT\r\nUID:" + uid + "\r\n" + more + "END:VEVENT\r\n";
}

std::string uidsOf(const IcsFile& file) {
    std::string result;
    for (const IcsEvent& one : file.events) {
        result += (result.empty() ? "" : " ") + std::string(file.slice(one.uid));
    }
    return result;
}

std::string problemsOf(const IcsFile& file) {
    std::string result;
    for (const FileProblem& problem : file.problems) {
        result += std::to_string(problem.line) + ": " + problem.what.english() + "\n";
    }
    return result;
}

TEST(IcsFile, KeepsEventsOnly) {
    const IcsFile file =
        read(calendar("BEGIN:VTODO\r\nUID:t\r\nDTSTART:20240101\r\nEND:VTODO\r\n" + event("a") +
                      "BEGIN:VJOURNAL\r\nUID:j\r\nEND:VJOURNAL\r\n" + event("b")));
    EXPECT_EQ(uidsOf(file), "a b");
    EXPECT_EQ(problemsOf(file), "");
}

TEST(IcsFile, PassesOverWhatStandsInAnAlarm) {
    const IcsFile file =
        read(calendar(event("a", "DTSTART:20240101T100000Z\r\nBEGIN:VALARM\r\nSUMMARY:alarm\r\n"
                                 "DURATION:PT5M\r\nUID:x\r\nEND:VALARM\r\nSUMMARY:right\r\n")));
    ASSERT_EQ(uidsOf(file), "a");
    EXPECT_EQ(file.slice(*file.events[0].title), "right");
    EXPECT_FALSE(file.events[0].duration);
}

TEST(IcsFile, ReadsNameAndColourOfTheCalendarOnly) {
    const IcsFile file = read(calendar("X-WR-CALNAME:My\\, own\r\nCOLOR:red\r\n" +
                                       event("a", "DTSTART:20240101\r\nCOLOR:blue\r\n")));
    EXPECT_EQ(file.calendarName, "My, own");
    EXPECT_EQ(file.calendarColour, "red");
}

TEST(IcsFile, SkipsAndNamesMalformedEvents) {
    const IcsFile file =
        read(calendar(event("a") + event("b", "DTSTART:20240231\r\n") +
                      event("c", "SUMMARY:x\r\n") + event("d", "DTSTART:20241301T000000\r\n") +
                      event("e", "DTSTART:20240101\r\nDURATION:long\r\n") + event("f")));
    EXPECT_EQ(uidsOf(file), "a e f");
    EXPECT_EQ(problemsOf(file),
              "8: an event is left out, its DTSTART cannot be read: \"20240231\"\n"
              "10: an event without DTSTART is left out\n"
              "16: an event is left out, its DTSTART cannot be read: \"20241301T000000\"\n"
              "21: an event's DURATION cannot be read: \"long\"; it is shown for one day\n");
}

TEST(IcsFile, ThatEndsInTheMiddleKeepsWholeEvents) {
    const IcsFile file =
        read("BEGIN:VCALENDAR\r\n" + event("a") + "BEGIN:VEVENT\r\nUID:b\r\nDTSTART:2024");
    EXPECT_EQ(uidsOf(file), "a");
    EXPECT_NE(problemsOf(file).find("6: an event without END:VEVENT"), std::string::npos)
        << problemsOf(file);
    EXPECT_EQ(problemsOf(read("BEGIN:VCALENDAR\r\n" + event("a"))),
              "5: the file ends before END:VCALENDAR\n");
}

TEST(IcsFile, ThatIsNoCalendarIsNamed) {
    EXPECT_EQ(problemsOf(read("")), "0: the file is empty\n");
    EXPECT_EQ(problemsOf(read("<html>\n<body>\n")), "1: no calendar: BEGIN:VCALENDAR is missing\n");
}

TEST(IcsFile, NamesLinesThatAreNone) {
    const IcsFile file =
        read(calendar(event("a", "DTSTART:20240101\r\nDESCRIPTION:one\r\ntwo\r\n")));
    EXPECT_EQ(uidsOf(file), "a");
    EXPECT_EQ(problemsOf(file), "6: a line without a name and a value: \"two\"\n");
}

TEST(IcsFile, ReadsAnyLineBreaks) {
    std::string text = calendar(event("a") + event("b"));
    for (const char* lineBreak : {"\n", "\r"}) {
        std::string other = text;
        for (std::size_t at = other.find("\r\n"); at != std::string::npos;
             at = other.find("\r\n")) {
            other.replace(at, 2, lineBreak);
        }
        EXPECT_EQ(uidsOf(read(other)), "a b");
        EXPECT_EQ(uidsOf(read("\xEF\xBB\xBF" + other)), "a b");
    }
}

// Every letter of it is one of ASCII.
std::string utf16(const std::string& text, bool isBigEndian) {
    std::string bytes = isBigEndian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char c : text) {
        bytes += isBigEndian ? std::string{'\0', c} : std::string{c, '\0'};
    }
    return bytes;
}

TEST(IcsFile, InUtf16IsReadInPiecesOfAnySize) {
    const std::function<bool(std::string_view)> isKnown = [](std::string_view) { return true; };
    const std::string text =
        calendar(event("a", "DTSTART:20240101\r\nSUMMARY:fol\r\n ded\r\n") + event("b"));
    for (const bool isBigEndian : {false, true}) {
        const std::string bytes = utf16(text, isBigEndian);
        for (const std::size_t size : {1U, 2U, 3U, 7U, 100U, 1000U}) {
            IcsFileParser reader(isKnown);
            std::string pending;
            for (std::size_t at = 0; at < bytes.size(); at += size) {
                pending += bytes.substr(at, size);
                pending.erase(0, reader.read(pending));
            }
            const IcsFile file = reader.finish(pending);
            ASSERT_EQ(uidsOf(file), "a b") << size;
            EXPECT_EQ(file.slice(*file.events[0].title), "folded");
            EXPECT_EQ(problemsOf(file), "");
        }
    }
    EXPECT_EQ(problemsOf(read("\xFF\xFE")), "0: the file is empty\n");
    EXPECT_EQ(problemsOf(read("\xFF")), "1: no calendar: BEGIN:VCALENDAR is missing\n");
}

TEST(IcsFile, InUtf16HasTheSameLimits) {
    const std::function<bool(std::string_view)> isKnown = [](std::string_view) { return true; };
    std::string events;
    for (int i = 0; i < 20000; ++i) {
        events += event(std::to_string(i));
    }
    const IcsFile file = IcsFileParser(isKnown, 20000).finish(utf16(calendar(events), false));
    EXPECT_TRUE(file.isTruncated);
    EXPECT_LT(file.sizeInMemory(), 21000U);
    const IcsFile all = IcsFileParser(isKnown).finish(utf16(calendar(events), true));
    EXPECT_EQ(all.events.size(), 20000U); // of several parts
    EXPECT_EQ(problemsOf(all), "");
    const std::string title(5U << 20U, 'x');
    const IcsFile cut =
        read(utf16(calendar(event("a", "DTSTART:20240101\r\nSUMMARY:" + title + "\r\n")), false));
    ASSERT_EQ(uidsOf(cut), "a");
    EXPECT_EQ(cut.slice(*cut.events[0].title).size(), (4U << 20U) - 8);
}

TEST(IcsFile, DecodesTitleAndLocation) {
    const IcsFile file = read(calendar(
        event("a", "DTSTART:20240101\r\nSUMMARY;ENCODING=QUOTED-PRINTABLE:one=\r\n two=\r\n"
                   " =C3=BC=\r\nthree\r\nLOCATION;ENCODING=BASE64;CHARSET=ISO-8859-1:\r\n S/Zs\r\n"
                   " bg==\r\n\r\n") +
        event("b", "DTSTART:20240101\r\nSUMMARY;ENCODING=BASE64:!\r\n"
                   "LOCATION;CHARSET=windows-1252:K\xF6ln\r\n")));
    ASSERT_EQ(uidsOf(file), "a b");
    EXPECT_EQ(file.slice(*file.events[0].title), "one two üthree");
    EXPECT_EQ(file.slice(*file.events[0].location), "Köln");
    EXPECT_EQ(file.slice(*file.events[1].title), "!");
    EXPECT_EQ(parseText(file.slice(*file.events[1].location)), "Köln");
    EXPECT_EQ(problemsOf(file),
              "17: a text in base64 cannot be read and is shown as it is\n"
              "18: the character set \"windows-1252\" is not known; the text is read as UTF-8 or "
              "Latin-1\n");
}

TEST(IcsFile, OfQuotedPrintableWithoutEndIsBounded) {
    std::string lines = "DTSTART:20240101\r\nSUMMARY;ENCODING=QUOTED-PRINTABLE:x=\r\n";
    const std::string more = std::string(1000, 'x') + "=\r\n";
    for (int i = 0; i < 6000; ++i) {
        lines += more;
    }
    const IcsFile file = read(calendar(event("a", lines) + event("b")));
    ASSERT_EQ(uidsOf(file), "a b");
    EXPECT_GT(file.slice(*file.events[0].title).size(), 4000000U);
    EXPECT_LE(file.slice(*file.events[0].title).size(), 4U << 20U);
}

TEST(IcsFile, MakesUpAStableUid) {
    const std::string text =
        calendar("BEGIN:VEVENT\r\nDTSTART:20240101\r\nSUMMARY:x\r\nEND:VEVENT\r\n");
    EXPECT_EQ(uidsOf(read(text)), uidsOf(read(text)));
    EXPECT_EQ(uidsOf(read(text)).substr(0, 7), "no-uid-");
}

TEST(IcsFile, TellsTheNewerOfTwoVersions) {
    const std::string start = "DTSTART:20240101\r\n";
    const IcsFile file =
        read(calendar(event("a", start + "SEQUENCE:1\r\nDTSTAMP:20240105T000000Z\r\n") +
                      event("a", start + "SEQUENCE:3\r\n") +
                      event("a", start + "SEQUENCE:3\r\nDTSTAMP:20240102T000000Z\r\n")));
    ASSERT_EQ(file.events.size(), 3U);
    EXPECT_TRUE(IcsFile::isNewer(file.events[1], file.events[0])) << "the sequence first";
    EXPECT_TRUE(IcsFile::isNewer(file.events[2], file.events[1])) << "then the stamp";
    EXPECT_FALSE(IcsFile::isNewer(file.events[0], file.events[2]));
    EXPECT_FALSE(IcsFile::isNewer(file.events[0], file.events[0]));
}

TEST(IcsFile, BoundsTheDaysOfAnEvent) {
    const auto days = [](const std::string& more) {
        const IcsFile file = read(calendar(event("a", more)));
        const std::int64_t start = dayOf(file.events.at(0).start.localTime);
        return std::pair(file.events[0].firstDay - start, file.events[0].lastDay - start);
    };
    EXPECT_EQ(days("DTSTART:20240101T100000Z\r\n"), std::pair(std::int64_t{-2}, std::int64_t{3}));
    EXPECT_EQ(days("DTSTART:20240101\r\nDTEND:20240111\r\n").second, 13);
    EXPECT_EQ(days("DTSTART:20240101\r\nRRULE:FREQ=DAILY;UNTIL=20240201\r\n").second, 34);
    EXPECT_GT(days("DTSTART:20240101\r\nRRULE:FREQ=DAILY\r\n").second, 1000000);
    EXPECT_EQ(days("DTSTART:20240111\r\nRDATE;VALUE=DATE:20240101,20240301\r\n"),
              std::pair(std::int64_t{-12}, std::int64_t{53}));
}

TEST(IcsFile, KeepsDefinitionsOfUnknownZonesOnly) {
    const auto zone = [](const std::string& name) {
        return "BEGIN:VTIMEZONE\r\nTZID:" + name +
               "\r\nBEGIN:STANDARD\r\nDTSTART:19700101T000000\r\nTZOFFSETFROM:+0000\r\n"
               "TZOFFSETTO:-0330\r\nRDATE:20000101T000000\r\nEND:STANDARD\r\nEND:VTIMEZONE\r\n";
    };
    const IcsFile file = read(calendar(zone("Europe/Berlin") + zone("Own") + event("a")));
    EXPECT_EQ(uidsOf(file), "a");
    ASSERT_EQ(file.zones.size(), 1U);
    EXPECT_EQ(file.zones[0].name.name, "Own");
    ASSERT_EQ(file.zones[0].observances.size(), 1U);
    EXPECT_EQ(file.zones[0].observances[0].offsetTo, -12600);
    EXPECT_EQ(file.zones[0].observances[0].dates.size(), 1U);
}

TEST(IcsFile, BeyondWhatIsToBeKeptIsCutAndSaysSo) {
    std::string events;
    for (int i = 0; i < 1000; ++i) {
        events += event(std::to_string(i));
    }
    const std::function<bool(std::string_view)> isKnown = [](std::string_view) { return true; };
    const IcsFile file = IcsFileParser(isKnown, 20000).finish(calendar(events));
    EXPECT_TRUE(file.isTruncated);
    EXPECT_GT(file.events.size(), 50U);
    EXPECT_LT(file.sizeInMemory(), 21000U);
    ASSERT_EQ(file.problems.size(), 1U);
    EXPECT_EQ(file.problems[0].what.english(),
              "there are more events than fit into memory: those that follow are left out");
    EXPECT_EQ(file.problems[0].line, file.events.back().line);
    std::string dates = "DTSTART:20260310\r\n";
    for (int i = 0; i < 2000; ++i) {
        dates += "RDATE:20260311\r\n";
    }
    const IcsFile many =
        IcsFileParser(isKnown, 20000).finish(calendar(event("a", dates) + event("b")));
    EXPECT_EQ(uidsOf(many), "b");
    ASSERT_EQ(many.problems.size(), 1U);
    EXPECT_EQ(many.problems[0].what.english(),
              "an event is left out, it has more dates than can be stored");
}

TEST(IcsFile, ObservanceWithoutEndLendsItsStartToNoOther) {
    const std::string open = "BEGIN:VTIMEZONE\r\nTZID:Open\r\nBEGIN:STANDARD\r\n"
                             "DTSTART:19700101T000000\r\nTZOFFSETTO:+0100\r\nEND:VTIMEZONE\r\n";
    const std::string startless = "BEGIN:VTIMEZONE\r\nTZID:Startless\r\nBEGIN:STANDARD\r\n"
                                  "TZOFFSETTO:+0200\r\nEND:STANDARD\r\nEND:VTIMEZONE\r\n";
    EXPECT_TRUE(read(calendar(open + startless)).zones.empty());
}

TEST(IcsFile, OfHostileShapeIsReadInALine) {
    std::string nested = "BEGIN:VCALENDAR\r\n";
    for (int i = 0; i < 300000; ++i) {
        nested += "BEGIN:VALARM\r\n";
    }
    EXPECT_EQ(uidsOf(read(nested + event("a"))), "a");
    const std::string title(3U << 20U, 'x');
    const IcsFile file =
        read(calendar(event("a", "DTSTART:20240101\r\nSUMMARY:" + title + "\r\n")));
    ASSERT_EQ(uidsOf(file), "a");
    EXPECT_EQ(file.slice(*file.events[0].title).size(), title.size());
    std::string folded = "DTSTART:20240101\r\nSUMMARY:";
    for (int i = 0; i < 300000; ++i) {
        folded += "\r\n x";
    }
    EXPECT_EQ(uidsOf(read(calendar(event("a", folded + "\r\n")))), "a");
}

} // namespace
} // namespace quorvel::icalendar
