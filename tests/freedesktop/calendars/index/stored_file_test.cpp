// A stored file comes back equal, and damaged bytes do no harm.
#include "freedesktop/calendars/index/stored_file.h"

#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "icalendar/model/ics_file_parser.h"
#include "tests/freedesktop/calendars/store/store_fixture.h"

namespace quorvel::freedesktop::calendars {
namespace {

constexpr FileVersion version{1, 2, 3, -4, std::numeric_limits<std::int64_t>::max()};

icalendar::IcsFile everyKind() {
    const auto isKnown = [](std::string_view name) { return name == "Europe/Berlin"; };
    return icalendar::parseIcsFile(
        calendarText(
            "X-WR-CALNAME:Näme\r\nCOLOR:red\r\nX-WR-TIMEZONE:Europe/Berlin\r\n"
            "BEGIN:VTIMEZONE\r\nTZID:Mine\r\nBEGIN:STANDARD\r\nDTSTART:19700101T000000\r\n"
            "TZOFFSETFROM:-0130\r\nTZOFFSETTO:+0500\r\nRRULE:FREQ=YEARLY\r\n"
            "RDATE:19800101T000000\r\nEND:STANDARD\r\nEND:VTIMEZONE\r\n" +
            eventText("UID:1|SUMMARY:a|LOCATION:b|DTSTART;TZID=Mine:20260310T100000|"
                      "DTEND;TZID=Europe/Berlin:20260310T110000|RRULE:FREQ=DAILY|"
                      "EXDATE;TZID=Mine:20260311T100000|SEQUENCE:3|DTSTAMP:19600101T000000Z") +
            eventText("UID:2|DTSTART:20260310|DURATION:-P1DT2S|STATUS:CANCELLED") +
            eventText("UID:1|RECURRENCE-ID;RANGE=THISANDFUTURE:20260310T100000Z|"
                      "DTSTART:00010101T000000Z") +
            eventText("UID:3|DTSTART:nonsense")) +
            calendarText("X-WR-TIMEZONE:Asia/Tokyo\r\n"),
        isKnown);
}

TEST(StoredFile, FileComesBackEqual) {
    const icalendar::IcsFile file = everyKind();
    ASSERT_EQ(file.events.size(), 3U);
    ASSERT_EQ(file.problems.size(), 1U);
    const std::string bytes = bytesOfFile(version, file);
    const auto back = fileFromBytes(bytes, version);
    ASSERT_TRUE(back);
    EXPECT_TRUE(*back == file);
    EXPECT_EQ(back->slice(back->rules[1].parameters), "TZID=Mine");
}

// Each member has another value than in an empty file, so that a forgotten one is noticed.
TEST(StoredFile, TheExampleHasEveryKindOfMember) {
    const icalendar::IcsFile file = everyKind();
    EXPECT_EQ(file.floatingZones.size(), 2U);
    EXPECT_EQ(file.calendarName, "Näme");
    EXPECT_EQ(file.calendarColour, "red");
    EXPECT_TRUE(file.isCalendar);
    ASSERT_EQ(file.zones.size(), 1U);
    EXPECT_EQ(file.zones[0].observances[0].offsetFrom, -5400);
    EXPECT_EQ(file.zones[0].observances[0].rules, std::vector<std::string>{"FREQ=YEARLY"});
    EXPECT_EQ(file.zones[0].observances[0].dates.size(), 1U);
    ASSERT_EQ(file.rules.size(), 2U);
    EXPECT_EQ(file.rules[1].kind, icalendar::RuleKind::exdate);
    const icalendar::IcsEvent& repeated = file.events.at(0);
    EXPECT_TRUE(repeated.title && repeated.location && repeated.end && repeated.repeats);
    EXPECT_EQ(repeated.sequence, 3);
    EXPECT_LT(repeated.stamp, 0);
    EXPECT_TRUE(file.events.at(1).duration && file.events.at(1).cancelled);
    EXPECT_TRUE(file.events.at(2).recurrenceId && file.events.at(2).thisAndFuture);
}

TEST(StoredFile, FileOfAnotherVersionIsNone) {
    FileVersion other = version;
    --other.changed;
    EXPECT_FALSE(fileFromBytes(bytesOfFile(version, everyKind()), other));
}

TEST(StoredFile, OtherBytesDoNoHarm) {
    const std::string whole = bytesOfFile(version, everyKind());
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_FALSE(fileFromBytes(whole.substr(0, length), version)) << length;
    }
    EXPECT_FALSE(fileFromBytes(whole + "x", version));
    std::mt19937 random(1);
    for (int round = 0; round < 20000; ++round) {
        std::string other = whole;
        for (int i = 0; i < 3; ++i) {
            other[random() % other.size()] = static_cast<char>(random());
        }
        if (const auto file = fileFromBytes(other, version)) {
            for (const icalendar::IcsEvent& event : file->events) {
                EXPECT_LE(file->slice(event.uid).size(), file->text.size());
                EXPECT_LE(std::size_t{event.firstRule} + event.ruleCount, file->rules.size());
            }
        }
    }
}

} // namespace
} // namespace quorvel::freedesktop::calendars
