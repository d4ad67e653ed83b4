// What the store answers: occurrences, their times, their order, their identifiers.
#include "tests/freedesktop/calendars/store/store_fixture.h"

namespace quorvel::freedesktop {
namespace {

using IcalStore = StoreFixture;

TEST_F(IcalStore, ReadsTimesOfEveryKind) {
    useText(
        eventText("UID:1|SUMMARY:utc|DTSTART:20260310T100000Z|DTEND:20260310T113000Z") +
        eventText("UID:2|SUMMARY:floating|DTSTART:20260310T100000|DURATION:PT30M") +
        eventText("UID:3|SUMMARY:tokyo|DTSTART;TZID=Asia/Tokyo:20260310T200000|"
                  "DTEND;TZID=Asia/Tokyo:20260310T210000") +
        eventText("UID:4|SUMMARY:windows|DTSTART;TZID=\"Eastern Standard Time\":20260310T100000") +
        eventText("UID:5|SUMMARY:day|DTSTART;VALUE=DATE:20260310") +
        eventText("UID:6|SUMMARY:days|DTSTART;VALUE=DATE:20260309|DTEND;VALUE=DATE:20260312"));
    EXPECT_EQ(found("20260310", "20260310T235959"), "days D 20260309T000000-20260311T235959\n"
                                                    "day D 20260310T000000-20260310T235959\n"
                                                    "floating 20260310T100000-20260310T103000\n"
                                                    "utc 20260310T110000-20260310T123000\n"
                                                    "tokyo 20260310T120000-20260310T130000\n"
                                                    "windows 20260310T150000-20260310T150000\n");
    EXPECT_EQ(problems, "");
}

TEST_F(IcalStore, FloatingTimesFollowTheUser) {
    useText(eventText("UID:1|SUMMARY:f|DTSTART:20260310T100000") +
            eventText("UID:2|SUMMARY:d|DTSTART:20260310"));
    zone = namedTimeZone("America/New_York");
    stores.setTimeZone(zone);
    EXPECT_EQ(found("20260310", "20260311"), "d D 20260310T000000-20260310T235959\n"
                                             "f 20260310T100000-20260310T100000\n");
}

TEST_F(IcalStore, SortsByStartKindTitleIdentifier) {
    useText(eventText("UID:1|SUMMARY:b|DTSTART:20260310T000000") +
            eventText("UID:3|SUMMARY:a|DTSTART:20260310T000000") +
            eventText("UID:2|SUMMARY:a|DTSTART:20260310T000000") +
            eventText("UID:4|SUMMARY:z|DTSTART:20260310") + eventText("UID:5|DTSTART:20260310"));
    std::string order;
    for (const auto& event : events("20260310", "20260311")) {
        order += event->persistentEvent.eventIdentifier.back();
    }
    EXPECT_EQ(order, "54231");
}

TEST_F(IcalStore, TextMayBeAbsentOrEmpty) {
    useText(
        eventText("UID:1|DTSTART:20260310") +
        eventText("UID:2|DTSTART:20260310|SUMMARY:|LOCATION:") +
        eventText("UID:3|DTSTART:20260310|SUMMARY;LANGUAGE=en:A\\, b|LOCATION;X=\"a:b\":R\\;1"));
    const auto all = events("20260310", "20260311");
    ASSERT_EQ(all.size(), 3U);
    EXPECT_EQ(all[0]->title, std::nullopt);
    EXPECT_EQ(all[0]->location, std::nullopt);
    EXPECT_EQ(all[1]->title, "");
    EXPECT_EQ(all[1]->location, "");
    EXPECT_EQ(all[2]->title, "A, b");
    EXPECT_EQ(all[2]->location, "R;1");
}

TEST_F(IcalStore, KeepsWallTimeOverAClockChange) {
    useText(eventText("UID:1|SUMMARY:r|DTSTART;TZID=Europe/Berlin:20260327T090000|"
                      "DTEND;TZID=Europe/Berlin:20260327T100000|RRULE:FREQ=DAILY;COUNT=4"));
    EXPECT_EQ(found("20260301", "20260501"), "r 20260327T090000-20260327T100000\n"
                                             "r 20260328T090000-20260328T100000\n"
                                             "r 20260329T090000-20260329T100000\n"
                                             "r 20260330T090000-20260330T100000\n");
    const auto all = events("20260301", "20260501");
    const std::string calendar = all[0]->calendar->calendarIdentifier;
    // 2026-03-29 07:00 UTC
    EXPECT_EQ(all[2]->persistentEvent.eventIdentifier, calendar + ":1:RID=796460400");
}

// 02:30 of 29 March lies in the gap and is 03:30; of the two of 25 October the first is meant.
TEST_F(IcalStore, ReadsClockChangesAsCalendarsMeanThem) {
    useText(eventText("UID:1|SUMMARY:g|DTSTART;TZID=Europe/Berlin:20260328T023000|"
                      "RRULE:FREQ=DAILY;COUNT=2"));
    EXPECT_EQ(found("20260301", "20260501"), "g 20260328T023000-20260328T023000\n"
                                             "g 20260329T033000-20260329T033000\n");
    useText(eventText("UID:1|DTSTART;TZID=Europe/Berlin:20261025T023000"));
    EXPECT_EQ(events("20261025", "20261026").at(0)->startDate, date("20261025T003000Z"));
    useText(eventText("UID:1|SUMMARY:s|DTSTART;TZID=Europe/Berlin:20260329T023000"));
    EXPECT_EQ(found("20260329", "20260330"), "s 20260329T033000-20260329T033000\n");
}

TEST_F(IcalStore, DurationHasNominalDaysAndExactHours) {
    useText(
        eventText("UID:1|SUMMARY:day|DTSTART;TZID=Europe/Berlin:20260328T120000|DURATION:P1D") +
        eventText("UID:2|SUMMARY:hours|DTSTART;TZID=Europe/Berlin:20260328T120000|DURATION:PT24H") +
        eventText("UID:3|SUMMARY:back|DTSTART:20260328T130000Z|DTEND:20260328T120000Z") +
        eventText("UID:4|SUMMARY:week|DTSTART;VALUE=DATE:20260328|DURATION:P1W"));
    EXPECT_EQ(found("20260328", "20260329"), "week D 20260328T000000-20260403T235959\n"
                                             "day 20260328T120000-20260329T120000\n"
                                             "hours 20260328T120000-20260329T130000\n"
                                             "back 20260328T140000-20260328T140000\n");
    EXPECT_EQ(problems,
              "test:15: DTEND lies before DTSTART; the event is shown without a length\n");
}

TEST_F(IcalStore, AddsAndExcludesDates) {
    useText(
        eventText("UID:1|SUMMARY:r|DTSTART;TZID=Europe/Berlin:20260302T090000|DURATION:PT1H|"
                  "RRULE:FREQ=DAILY;UNTIL=20260306T080000Z|"
                  "EXDATE;TZID=Europe/Berlin:20260303T090000|EXDATE:20260304T080000Z|"
                  "EXDATE;VALUE=DATE:20260305|"
                  "RDATE;TZID=America/New_York:20260310T090000|"
                  "RDATE;VALUE=PERIOD:20260312T090000Z/PT15M,20260313T090000Z/20260313T110000Z"));
    EXPECT_EQ(found("20260301", "20260401"), "r 20260302T090000-20260302T100000\n"
                                             "r 20260306T090000-20260306T100000\n"
                                             "r 20260310T140000-20260310T150000\n"
                                             "r 20260312T100000-20260312T101500\n"
                                             "r 20260313T100000-20260313T120000\n");
}

TEST_F(IcalStore, AllDayRepeats) {
    useText(eventText("UID:1|SUMMARY:y|DTSTART;VALUE=DATE:20200310|DTEND;VALUE=DATE:20200312|"
                      "RRULE:FREQ=YEARLY|EXDATE;VALUE=DATE:20250310"));
    EXPECT_EQ(found("20250101", "20260401"), "y D 20260310T000000-20260311T235959\n");
    EXPECT_EQ(found("20260311T120000", "20260311T130000"), "y D 20260310T000000-20260311T235959\n");
    EXPECT_EQ(found("20260312", "20260313"), "");
}

TEST_F(IcalStore, OverridesReplaceTheirOccurrence) {
    useText(eventText("UID:1|SUMMARY:r|DTSTART;TZID=Europe/Berlin:20260302T090000|"
                      "RRULE:FREQ=DAILY;COUNT=4") +
            eventText("UID:1|SUMMARY:moved|RECURRENCE-ID:20260303T080000Z|"
                      "DTSTART;TZID=Europe/Berlin:20260320T150000") +
            eventText("UID:1|SUMMARY:old|RECURRENCE-ID;TZID=Europe/Berlin:20260304T090000|"
                      "SEQUENCE:1|DTSTART;TZID=Europe/Berlin:20260304T100000") +
            eventText("UID:1|SUMMARY:new|RECURRENCE-ID;TZID=Europe/Berlin:20260304T090000|"
                      "SEQUENCE:2|DTSTART;TZID=Europe/Berlin:20260304T110000") +
            eventText("UID:1|STATUS:CANCELLED|RECURRENCE-ID;TZID=Europe/Berlin:20260305T090000|"
                      "DTSTART;TZID=Europe/Berlin:20260305T090000"));
    EXPECT_EQ(found("20260301", "20260401"), "r 20260302T090000-20260302T090000\n"
                                             "new 20260304T110000-20260304T110000\n"
                                             "moved 20260320T150000-20260320T150000\n");
    EXPECT_EQ(found("20260303", "20260304"), "");
    EXPECT_EQ(found("20260320", "20260321"), "moved 20260320T150000-20260320T150000\n");
    const auto moved = events("20260320", "20260321").at(0);
    // 2026-03-03 08:00 UTC
    EXPECT_EQ(moved->persistentEvent.eventIdentifier,
              moved->calendar->calendarIdentifier + ":1:RID=794217600");
}

TEST_F(IcalStore, OverridesAreOfOneInstantWhateverTheZone) {
    useText(eventText("UID:1|SUMMARY:r|DTSTART;TZID=Europe/Berlin:20260302T090000|"
                      "RRULE:FREQ=DAILY;COUNT=2") +
            eventText("UID:1|SUMMARY:new|SEQUENCE:2|RECURRENCE-ID:20260303T080000Z|"
                      "DTSTART:20260303T110000Z") +
            eventText("UID:1|SUMMARY:old|SEQUENCE:1|RECURRENCE-ID;TZID=America/New_York:"
                      "20260303T030000|DTSTART:20260303T120000Z") +
            eventText("UID:1|SUMMARY:older|RECURRENCE-ID;TZID=Europe/Berlin:20260303T090000|"
                      "DTSTART:20260303T130000Z"));
    EXPECT_EQ(found("20260301", "20260401"), "r 20260302T090000-20260302T090000\n"
                                             "new 20260303T120000-20260303T120000\n");
}

TEST_F(IcalStore, NewestOfSeveralVersionsHolds) {
    useText(eventText("UID:1|SUMMARY:old|SEQUENCE:1|DTSTAMP:20260109T000000Z|DTSTART:20260310") +
            eventText("UID:1|SUMMARY:new|SEQUENCE:2|DTSTAMP:20260102T000000Z|DTSTART:20260311") +
            eventText("UID:1|SUMMARY:stale|SEQUENCE:2|DTSTAMP:20260101T000000Z|DTSTART:20260312") +
            eventText("UID:2|SUMMARY:first|DTSTART:20260313") +
            eventText("UID:2|SUMMARY:second|DTSTART:20260313") +
            eventText("UID:2|SUMMARY:other|DTSTART:20260314"));
    EXPECT_EQ(found("20260301", "20260401"), "new D 20260311T000000-20260311T235959\n"
                                             "second D 20260313T000000-20260313T235959\n"
                                             "other D 20260314T000000-20260314T235959\n");
}

TEST_F(IcalStore, VersionsMayStandInSeveralFilesOfACalendar) {
    write("calendar/displayname", "Mine");
    write("calendar/a.ics",
          calendarText(eventText("UID:1|SUMMARY:new|SEQUENCE:2|DTSTART:20260310")));
    write("calendar/b.ics",
          calendarText(eventText("UID:1|SUMMARY:old|SEQUENCE:1|DTSTART:20260311")));
    write("other.ics", calendarText(eventText("UID:1|SUMMARY:elsewhere|DTSTART:20260312")));
    stores.setSources(
        {CalendarSource::at(folder / "calendar"), CalendarSource::at(folder / "other.ics")});
    EXPECT_EQ(found("20260301", "20260401"), "new D 20260310T000000-20260310T235959\n"
                                             "elsewhere D 20260312T000000-20260312T235959\n");
}

TEST_F(IcalStore, OverrideStandsWithoutItsMainEvent) {
    useText(
        eventText("UID:1|SUMMARY:alone|RECURRENCE-ID:20260303T080000Z|DTSTART:20260303T090000Z"));
    EXPECT_EQ(found("20260301", "20260401"), "alone 20260303T100000-20260303T100000\n");
}

TEST_F(IcalStore, OverrideMayHoldForWhatFollows) {
    useText(eventText(
                "UID:1|SUMMARY:r|DTSTART:20260302T090000Z|DURATION:PT1H|RRULE:FREQ=DAILY;COUNT=4") +
            eventText("UID:1|SUMMARY:later|RECURRENCE-ID;RANGE=THISANDFUTURE:20260304T090000Z|"
                      "DTSTART:20260304T100000Z|DURATION:PT2H"));
    EXPECT_EQ(found("20260301", "20260401"), "r 20260302T100000-20260302T110000\n"
                                             "r 20260303T100000-20260303T110000\n"
                                             "later 20260304T110000-20260304T130000\n"
                                             "later 20260305T110000-20260305T130000\n");
}

TEST_F(IcalStore, LeavesCancelledEventsOut) {
    useText(eventText("UID:1|STATUS:CANCELLED|DTSTART:20260310") +
            eventText("UID:2|STATUS:TENTATIVE|SUMMARY:t|DTSTART:20260310"));
    EXPECT_EQ(found("20260310", "20260311"), "t D 20260310T000000-20260310T235959\n");
}

TEST_F(IcalStore, CancelledSeriesTakesItsOverridesAlong) {
    useText(
        eventText("UID:1|SEQUENCE:1|SUMMARY:r|DTSTART:20260310T090000Z|RRULE:FREQ=DAILY;COUNT=3") +
        eventText("UID:1|SEQUENCE:1|SUMMARY:moved|RECURRENCE-ID:20260311T090000Z|"
                  "DTSTART:20260311T150000Z") +
        eventText("UID:1|SEQUENCE:2|STATUS:CANCELLED|DTSTART:20260310T090000Z"));
    EXPECT_EQ(found("20260301", "20260401"), "");
}

TEST_F(IcalStore, CalendarMayCancelWhatItHolds) {
    useText(eventText("UID:1|SUMMARY:r|DTSTART:20260310|RRULE:FREQ=DAILY;COUNT=2") +
            "END:VCALENDAR\r\nBEGIN:VCALENDAR\r\nMETHOD:CANCEL\r\n" +
            eventText("UID:1|SEQUENCE:1|STATUS:CONFIRMED|RECURRENCE-ID;VALUE=DATE:20260311|"
                      "DTSTART;VALUE=DATE:20260311") +
            "END:VCALENDAR\r\nBEGIN:VCALENDAR\r\nMETHOD:PUBLISH\r\n" +
            eventText("UID:2|SUMMARY:s|DTSTART:20260312"));
    EXPECT_EQ(found("20260301", "20260401"), "r D 20260310T000000-20260310T235959\n"
                                             "s D 20260312T000000-20260312T235959\n");
}

TEST_F(IcalStore, CalendarMayNameTheZoneOfItsFloatingTimes) {
    useText("X-WR-TIMEZONE:America/New_York\r\n" +
            eventText("UID:1|SUMMARY:floats|DTSTART:20260310T090000|RRULE:FREQ=DAILY;COUNT=2") +
            eventText("UID:1|SUMMARY:moved|RECURRENCE-ID:20260311T090000|DTSTART:20260311T100000") +
            eventText("UID:2|SUMMARY:has|DTSTART;TZID=Europe/Berlin:20260310T090000") +
            eventText("UID:3|SUMMARY:day|DTSTART:20260310"));
    EXPECT_EQ(found("20260301", "20260401"), "day D 20260310T000000-20260310T235959\n"
                                             "has 20260310T090000-20260310T090000\n"
                                             "floats 20260310T140000-20260310T140000\n"
                                             "moved 20260311T150000-20260311T150000\n");
}

TEST_F(IcalStore, UsesTheFilesOwnZoneForAnUnknownName) {
    const std::string definition =
        "BEGIN:VTIMEZONE\r\nTZID:Mine\r\nBEGIN:STANDARD\r\nDTSTART:19700101T000000\r\n"
        "TZOFFSETFROM:+0500\r\nTZOFFSETTO:+0500\r\nEND:STANDARD\r\nEND:VTIMEZONE\r\n";
    useText(definition + eventText("UID:1|SUMMARY:own|DTSTART;TZID=Mine:20260310T150000") +
            eventText("UID:2|SUMMARY:lost|DTSTART;TZID=Nowhere/At All:20260310T150000"));
    EXPECT_EQ(found("20260310", "20260311"), "own 20260310T110000-20260310T110000\n"
                                             "lost 20260310T150000-20260310T150000\n");
    EXPECT_EQ(problems, "test:0: the time zone \"Nowhere/At All\" is unknown; its times are taken "
                        "for local ones\n");
}

} // namespace
} // namespace quorvel::freedesktop
