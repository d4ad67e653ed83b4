// What is stored of a text, and which problems are reported.
#include "icalendar/model/ics_file_parser.h"

#include <cstdint>
#include <functional>
#include <limits>
#include <string>

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

// The answer may come from a directory that all threads share.
TEST(IcsFile, AsksOnceForEachZone) {
    std::string events;
    for (int i = 0; i < 12; ++i) {
        const std::string zone = std::to_string(i % 6);
        events +=
            event(std::to_string(i), "DTSTART;TZID=Z" + zone + ":20240101T100000\r\nDTEND;TZID=Z" +
                                         zone + ":20240101T110000\r\nRRULE:FREQ=DAILY;COUNT=3\r\n");
    }
    std::string asked;
    const IcsFile file = parseIcsFile(calendar(events), [&asked](std::string_view name) {
        asked += std::string(name) + " ";
        return name != "Z1";
    });
    EXPECT_EQ(asked, "Z0 Z1 Z2 Z3 Z4 Z5 ");
    ASSERT_EQ(file.zoneNames.size(), 6U);
    ASSERT_EQ(file.events.size(), 12U);
    for (std::size_t i = 0; i < 12; ++i) {
        const IcsEvent& one = file.events[i];
        EXPECT_EQ(file.zoneNames[one.start.zone].name, "Z" + std::to_string(i % 6));
        EXPECT_EQ(file.zoneNames[one.end->zone].name, "Z" + std::to_string(i % 6));
        // Of an unknown zone COUNT is not followed.
        EXPECT_EQ(one.lastDay == std::numeric_limits<std::int32_t>::max(), i % 6 == 1) << i;
    }
}

TEST(IcsFile, ReadsNamesInAnyCase) {
    const IcsFile file =
        read("Begin:VCALENDAR\nx-wr-calname:Own\nBEGIN:vevent\nuid:1\nDtStart:20240102\n"
             "RECURRENCE-id:20240101\nSUMMARY:a\nsummaryx:b\nSummaries:c\nend:VEVENT\n"
             "END:vcalendar\n");
    ASSERT_EQ(uidsOf(file), "1");
    EXPECT_EQ(problemsOf(file), "");
    EXPECT_EQ(file.calendarName, "Own");
    EXPECT_EQ(file.slice(*file.events[0].title), "a");
    EXPECT_EQ(file.events[0].start.localTime, 1704153600);
    ASSERT_TRUE(file.events[0].recurrenceId);
    EXPECT_EQ(file.events[0].recurrenceId->localTime, 1704067200);
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

std::int32_t lastDayOf(const std::string& more) {
    const IcsFile file = read(calendar(event("a", more)));
    return file.events.size() == 1 && file.events[0].firstDay == 19721 ? file.events[0].lastDay
                                                                       : -1;
}

// 2024-01-01 is day 19723.
TEST(IcsFile, KnowsWhenAPlainRuleHasCountedToItsEnd) {
    const std::string start = "DTSTART;TZID=Europe/Berlin:20240101T100000\r\n";
    const std::int32_t daily = lastDayOf(start + "RRULE:FREQ=DAILY;COUNT=5\r\n");
    EXPECT_GE(daily, 19727);
    EXPECT_LE(daily, 19750);
    const std::int32_t weekly = lastDayOf(start + "RRULE:FREQ=WEEKLY;INTERVAL=2;COUNT=10;WKST=SU;"
                                                  "BYDAY=MO,FR\r\nEXDATE:20240101T090000Z\r\n");
    EXPECT_GE(weekly, 19723 + 18 * 7);
    EXPECT_LE(weekly, 19723 + 25 * 7);
    EXPECT_GE(lastDayOf("DTSTART:20240101\r\nRRULE:FREQ=DAILY;COUNT=10000\r\n"), 19723 + 9999);
}

// What expanding such an event has to report would not be seen otherwise.
TEST(IcsFile, ExpectsAnyOtherRuleToGoOn) {
    const std::string start = "DTSTART;TZID=Europe/Berlin:20240101T100000\r\n";
    const std::string rule = "RRULE:FREQ=DAILY;COUNT=5\r\n";
    constexpr std::int32_t forever = std::numeric_limits<std::int32_t>::max();
    for (const std::string& other :
         {"DTSTART;TZID=Nowhere:20240101T100000\r\n" + rule, "DTSTART:20240101T100000\r\n" + rule,
          start + "DTEND;TZID=Nowhere:20240101T110000\r\n" + rule,
          start + rule + "EXDATE;TZID=Nowhere:20240102T100000\r\n",
          start + rule + "EXDATE:tomorrow\r\n", start + rule + rule,
          start + rule + "RRULE:FREQ=YEARLY\r\n", start + rule + "EXRULE:FREQ=DAILY;INTERVAL=2\r\n",
          start + rule + "RECURRENCE-ID:20240101T090000Z\r\n",
          start + "RRULE:FREQ=DAILY;COUNT=5;UNTIL=never\r\n",
          start + "RRULE:FREQ=DAILY;COUNT=5;BYDAY=MO\r\n",
          start + "RRULE:FREQ=WEEKLY;COUNT=5;BYDAY=1MO\r\n",
          start + "RRULE:FREQ=MONTHLY;COUNT=5\r\n", start + "RRULE:FREQ=DAILY;COUNT=0\r\n",
          start + "RRULE:FREQ=DAILY;COUNT=10001\r\n", start + "RRULE:FREQ=DAILY;COUNT=5;\r\n",
          start + "RRULE:FREQ=DAILY;COUNT=5;NEW\r\n", start + "RRULE:COUNT=5\r\n"}) {
        const bool isPlain = other == start + "RRULE:FREQ=DAILY;COUNT=5;\r\n";
        EXPECT_EQ(lastDayOf(other) == forever, !isPlain) << other;
    }
}

struct Parts {
    IcsFile file;
    bool isJoined = false;
};

const std::function<bool(std::string_view)> knowsNothing = [](std::string_view) { return false; };

Parts readInParts(const std::string& text, std::size_t cut,
                  std::size_t most = IcsFileParser::mostBytesOfAFile) {
    IcsFileParser first(knowsNothing, most);
    IcsFileParser second(knowsNothing, most);
    const std::size_t read = first.read(std::string_view(text).substr(0, cut));
    first.readLines(std::string_view(text).substr(read, cut - read));
    second.beginWithinCalendar();
    second.readLines(std::string_view(text).substr(cut));
    Parts parts;
    parts.isJoined = first.append(second);
    parts.file =
        first.finish(parts.isJoined ? std::string_view() : std::string_view(text).substr(cut));
    return parts;
}

// How many of the cuts before an event are joined; all of them have the same result.
int joinedCuts(const std::string& text, std::size_t most = IcsFileParser::mostBytesOfAFile) {
    const IcsFile whole = IcsFileParser(knowsNothing, most).finish(text);
    int joined = 0;
    for (std::size_t at = text.find("BEGIN:VEVENT"); at != std::string::npos;
         at = text.find("BEGIN:VEVENT", at + 1)) {
        const Parts parts = readInParts(text, at, most);
        EXPECT_TRUE(parts.file == whole) << text << at;
        joined += parts.isJoined ? 1 : 0;
    }
    return joined;
}

std::string someEvents() {
    return event("a", "DTSTART;TZID=X:20240101T100000\r\nRRULE:FREQ=DAILY\r\nSUMMARY:a\r\n b\r\n") +
           event("b", "DTSTART:20240101T100000\r\nDTEND:never\r\nLOCATION:here\r\n") +
           event("c", "DTSTART;TZID=Y:20240101T100000\r\nDTEND;TZID=X:20240101T100000\r\n"
                      "EXDATE;TZID=Y:20240102T100000\r\nRECURRENCE-ID;TZID=Y:20240101T100000\r\n") +
           event("d", "SUMMARY:no start\r\n");
}

TEST(IcsFile, InTwoPartsIsTheSame) {
    EXPECT_EQ(joinedCuts(calendar(someEvents())), 4);
    EXPECT_EQ(joinedCuts(calendar("VERSION:2.0\r\nX-WR-CALNAME:n\r\nX-WR-TIMEZONE:Z\r\n" +
                                  someEvents() + someEvents())),
              8);
    EXPECT_EQ(joinedCuts("BEGIN:VCALENDAR\n" + someEvents()), 4);
    EXPECT_EQ(joinedCuts(calendar(someEvents()) + calendar(someEvents())), 4 + 0);
    std::string problems;
    for (int i = 0; i < 70; ++i) {
        problems += event("p", "DTSTART:never\r\n");
    }
    EXPECT_EQ(joinedCuts(calendar(problems)), 70);
}

TEST(IcsFile, InTwoPartsThatDependOnEachOtherIsReadInOne) {
    EXPECT_EQ(joinedCuts(someEvents()), 0);
    EXPECT_EQ(joinedCuts(calendar("METHOD:CANCEL\r\n" + someEvents())), 0);
    EXPECT_EQ(joinedCuts(calendar("VERSION:1.0\r\n" + someEvents())), 0);
    EXPECT_EQ(joinedCuts(calendar(event("a") + "X-WR-TIMEZONE:Z\r\n")), 0);
    EXPECT_EQ(joinedCuts(calendar(event("a") + "COLOR:red\r\n")), 0);
    EXPECT_EQ(joinedCuts(calendar("BEGIN:VEVENT\r\nUID:a\r\n" + event("b"))), 1); // the first
    EXPECT_EQ(joinedCuts(calendar(event("a") + "BEGIN:VTIMEZONE\r\nTZID:Q\r\nBEGIN:STANDARD\r\n"
                                               "DTSTART:20240101\r\nTZOFFSETTO:+0100\r\n"
                                               "END:STANDARD\r\nEND:VTIMEZONE\r\n")),
              0);
    EXPECT_EQ(joinedCuts(calendar("SUMMARY;ENCODING=QUOTED-PRINTABLE:a=\r\n" + event("a"))), 0);
    EXPECT_EQ(joinedCuts(utf16(calendar(event("a")), false)), 0);
    std::string zones;
    for (int i = 0; i < 20; ++i) {
        zones += event("z", "DTSTART;TZID=Z" + std::to_string(i % 17) + ":20240101T100000\r\n");
    }
    EXPECT_EQ(joinedCuts(calendar(zones)), 0);
    EXPECT_EQ(joinedCuts(calendar(someEvents() + someEvents()), 1000), 0);
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
