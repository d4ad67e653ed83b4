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
    EXPECT_EQ(bytesOfFile(version, *back), bytes);
    EXPECT_EQ(back->text, file.text);
    EXPECT_EQ(back->zoneNames, file.zoneNames);
    EXPECT_EQ(back->floatingZones, (std::vector<icalendar::FloatingZone>{{{"Europe/Berlin", 0}, 5},
                                                                         {{"Asia/Tokyo", 1}, 45}}));
    EXPECT_EQ(back->events.back().calendar, file.events.back().calendar);
    EXPECT_EQ(back->calendarName, "Näme");
    EXPECT_EQ(back->calendarColour, "red");
    EXPECT_TRUE(back->isCalendar);
    ASSERT_EQ(back->zones.size(), 1U);
    EXPECT_EQ(back->zones[0].observances[0].offsetFrom, -5400);
    EXPECT_EQ(back->zones[0].observances[0].rules, std::vector<std::string>{"FREQ=YEARLY"});
    EXPECT_EQ(back->zones[0].observances[0].dates, file.zones[0].observances[0].dates);
    EXPECT_EQ(back->problems[0].what, file.problems[0].what);
    EXPECT_EQ(back->problems[0].line, file.problems[0].line);
    ASSERT_EQ(back->rules.size(), 2U);
    EXPECT_EQ(back->rules[1].kind, icalendar::RuleKind::exdate);
    EXPECT_EQ(back->slice(back->rules[1].parameters), "TZID=Mine");
    for (std::size_t i = 0; i < file.events.size(); ++i) {
        const icalendar::IcsEvent& before = file.events[i];
        const icalendar::IcsEvent& after = back->events[i];
        EXPECT_EQ(back->slice(after.uid), file.slice(before.uid));
        EXPECT_EQ(after.title, before.title);
        EXPECT_EQ(after.end, before.end);
        EXPECT_EQ(after.start, before.start);
        EXPECT_EQ(after.duration, before.duration);
        EXPECT_EQ(after.recurrenceId, before.recurrenceId);
        EXPECT_EQ(after.thisAndFuture, before.thisAndFuture);
        EXPECT_EQ(after.cancelled, before.cancelled);
        EXPECT_EQ(after.repeats, before.repeats);
        EXPECT_EQ(after.sequence, before.sequence);
        EXPECT_EQ(after.stamp, before.stamp);
        EXPECT_EQ(after.firstDay, before.firstDay);
        EXPECT_EQ(after.lastDay, before.lastDay);
        EXPECT_EQ(after.line, before.line);
    }
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
