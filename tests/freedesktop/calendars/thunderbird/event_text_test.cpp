// Stored events beside their texts.
#include "freedesktop/calendars/thunderbird/event_text.h"

#include <gtest/gtest.h>

namespace quorvel::freedesktop::thunderbird {
namespace {

constexpr std::int64_t march10 = 1'773'133'200; // 2026-03-10 09:00 UTC

// A zone with a fixed offset, as the calendars of other programs define it.
std::string definition(const std::string& name, const std::string& offset = "+0530") {
    return "BEGIN:VTIMEZONE\r\nTZID:" + name +
           "\r\nBEGIN:STANDARD\r\nDTSTART:19700101T000000\r\nTZOFFSETFROM:" + offset +
           "\r\nTZOFFSETTO:" + offset + "\r\nEND:STANDARD\r\nEND:VTIMEZONE";
}

EventRow meeting(const std::string& zone) {
    EventRow row;
    row.id = "1";
    row.title = "Meeting";
    row.start = {march10, zone};
    row.end = {march10 + 3600, zone};
    return row;
}

// The lines of the event between its first and last, with "|" behind each.
std::string linesOf(const EventRow& row) {
    EventZones zones;
    std::string text = eventText(row, zones);
    const std::string begin = "BEGIN:VEVENT\r\n";
    const std::string end = "END:VEVENT\r\n";
    if (!text.starts_with(begin) || !text.ends_with(end)) {
        return text;
    }
    text = text.substr(begin.size(), text.size() - begin.size() - end.size());
    for (std::size_t at = text.find("\r\n"); at != std::string::npos; at = text.find("\r\n", at)) {
        text.replace(at, 2, "|");
    }
    return text;
}

TEST(EventText, TimesAreInTheirZone) {
    EXPECT_EQ(linesOf(meeting("UTC")),
              "UID:1|DTSTART:20260310T090000Z|DTEND:20260310T100000Z|SUMMARY:Meeting|");
    EXPECT_EQ(linesOf(meeting("floating")),
              "UID:1|DTSTART:20260310T090000|DTEND:20260310T100000|SUMMARY:Meeting|");
    EXPECT_EQ(linesOf(meeting("")), linesOf(meeting("floating")));
    EXPECT_EQ(linesOf(meeting("America/New_York")),
              "UID:1|DTSTART;TZID=\"America/New_York\":20260310T050000|"
              "DTEND;TZID=\"America/New_York\":20260310T060000|SUMMARY:Meeting|");
}

TEST(EventText, AnUnknownZoneLeavesTheInstantRight) {
    for (const char* zone : {"Mars/Olympus", "../../etc/passwd", "a\"b", "BEGIN:VTIMEZONE",
                             "BEGIN:VTIMEZONE\r\nEND:VTIMEZONE", "x\r\nSUMMARY:y"}) {
        EXPECT_EQ(linesOf(meeting(zone)), linesOf(meeting("UTC"))) << zone;
    }
}

TEST(EventText, ADefinedZoneComesWithItsDefinition) {
    EventZones zones;
    EXPECT_NE(eventText(meeting(definition("Office, 2")), zones)
                  .find("DTSTART;TZID=\"Office, 2\":20260310T143000\r\n"),
              std::string::npos);
    EXPECT_EQ(zones.takeDefinitions(), definition("Office, 2") + "\r\n");
    EXPECT_EQ(zones.takeDefinitions(), "");
    eventText(meeting(definition("Office, 2")), zones);
    EXPECT_EQ(zones.takeDefinitions(), "");
    // Another definition of the same name cannot be told apart from the first.
    EXPECT_NE(eventText(meeting(definition("Office, 2", "+0100")), zones)
                  .find("DTSTART:20260310T090000Z\r\n"),
              std::string::npos);
    // A name that is known needs none.
    EXPECT_NE(eventText(meeting(definition("Asia/Tokyo")), zones)
                  .find("DTSTART;TZID=\"Asia/Tokyo\":20260310T180000\r\n"),
              std::string::npos);
    EXPECT_EQ(zones.takeDefinitions(), "");
}

TEST(EventText, NothingBehindADefinitionIsTaken) {
    EventZones zones;
    eventText(meeting(definition("Office") + "\r\nBEGIN:VEVENT\r\nUID:2\r\nEND:VEVENT"), zones);
    EXPECT_EQ(zones.takeDefinitions(), definition("Office") + "\r\n");
}

TEST(EventText, AllDayEventsAreDates) {
    EventRow row = meeting("floating");
    row.isAllDay = true;
    row.start->instant = 1'773'100'800; // midnight
    row.end->instant = row.start->instant + 2 * 86400;
    EXPECT_EQ(linesOf(row),
              "UID:1|DTSTART;VALUE=DATE:20260310|DTEND;VALUE=DATE:20260312|SUMMARY:Meeting|");
    row.start = {1'773'097'200, "Europe/Berlin"}; // 2026-03-10 00:00 there
    row.end = std::nullopt;
    EXPECT_EQ(linesOf(row), "UID:1|DTSTART;VALUE=DATE:20260310|SUMMARY:Meeting|");
}

TEST(EventText, AChangedOccurrenceNamesTheOneThatItReplaces) {
    EventRow row = meeting("Europe/Berlin");
    row.recurrenceId = {march10 + 86400, "Europe/Berlin"};
    row.rules = "RRULE:FREQ=DAILY";
    EXPECT_EQ(linesOf(row),
              "UID:1|DTSTART;TZID=\"Europe/Berlin\":20260310T100000|"
              "DTEND;TZID=\"Europe/Berlin\":20260310T110000|"
              "RECURRENCE-ID;TZID=\"Europe/Berlin\":20260311T100000|SUMMARY:Meeting|");
    row.isRecurrenceIdDate = true;
    EXPECT_NE(linesOf(row).find("|RECURRENCE-ID;VALUE=DATE:20260311|"), std::string::npos);
}

TEST(EventText, RulesAreTakenLineByLine) {
    EventRow row = meeting("UTC");
    row.end = std::nullopt;
    row.title.clear();
    row.rules = "RRULE:FREQ=WEEKLY;BYDAY=MO,\r\n TU\r\nexdate;TZID=Europe/Berlin:20260311T100000\n"
                "END:VEVENT\r\nBEGIN:VEVENT\r\n ALARM\r\nRDATE;VALUE=DATE:20260312\r\n"
                "RRULEX:1\r\nEXRULE:FREQ=DAILY\r\n";
    EXPECT_EQ(linesOf(row), "UID:1|DTSTART:20260310T090000Z|RRULE:FREQ=WEEKLY;BYDAY=MO,| TU|"
                            "exdate;TZID=Europe/Berlin:20260311T100000|RDATE;VALUE=DATE:20260312|"
                            "EXRULE:FREQ=DAILY|");
}

TEST(EventText, TextsStayInTheirLines) {
    EventRow row = meeting("UTC");
    row.end = std::nullopt;
    row.id = "a\r\nEND:VEVENT";
    row.title = "a, b; c\\d\r\nEND:VCALENDAR\x01";
    row.location = "Room\n1";
    row.status = "CANCELLED";
    EXPECT_EQ(linesOf(row), "UID:a  END:VEVENT|DTSTART:20260310T090000Z|"
                            "SUMMARY:a\\, b\\; c\\\\d\\nEND:VCALENDAR |LOCATION:Room\\n1|"
                            "STATUS:CANCELLED|");
    row.title = std::string(std::size_t{1} << 20U, 'x');
    EXPECT_LT(linesOf(row).size(), std::size_t{20} << 10U);
}

TEST(EventText, OnlyYearsWithFourDigitsCanBeWritten) {
    EventRow row = meeting("UTC");
    row.end = std::nullopt;
    for (const std::int64_t instant :
         {std::int64_t{-62'135'596'801}, std::int64_t{253'402'300'800},
          std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min()}) {
        row.start->instant = instant;
        EXPECT_EQ(linesOf(row), "") << instant;
    }
    row.start = {-62'135'596'800, "America/New_York"};
    EXPECT_NE(linesOf(row).find("00010101T000000"), std::string::npos) << linesOf(row);
    row.start = std::nullopt;
    EXPECT_EQ(linesOf(row), "");
}

} // namespace
} // namespace quorvel::freedesktop::thunderbird
