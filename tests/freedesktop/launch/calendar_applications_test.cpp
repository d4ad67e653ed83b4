#include "freedesktop/launch/calendar_applications.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

namespace quorvel::freedesktop {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class CalendarApplicationsTest : public testing::Test {
protected:
    CalendarApplicationsTest() {
        setenv("TZ", "Europe/Berlin", 1);
        tzset();
    }
    ~CalendarApplicationsTest() override {
        setenv("TZ", "UTC", 1);
        tzset();
    }

    // 2014-03-07 18:45 in Berlin.
    const CalendarLink event = EventLink{"source 1", "uid/2@x", {415907100}};
    const CalendarLink day = DayLink{2014, 3, 7};
    // Of an application that knows the calendar.
    static constexpr CalendarApplicationState running{true, true};
    static constexpr CalendarApplicationState stopped{true, false};
};

TEST_F(CalendarApplicationsTest, KnowsTheApplicationsByTheirEntries) {
    EXPECT_EQ(calendarApplicationOfEntry("org.gnome.Evolution.desktop"),
              CalendarApplication::evolution);
    EXPECT_EQ(calendarApplicationOfEntry("org.gnome.Calendar.desktop"),
              CalendarApplication::gnomeCalendar);
    EXPECT_EQ(calendarApplicationOfEntry("org.kde.korganizer.desktop"), CalendarApplication::other);
}

TEST_F(CalendarApplicationsTest, ARunningEvolutionOpensAnEventThatItKnows) {
    EXPECT_THAT(argumentsToOpen(event, CalendarApplication::evolution, running).links,
                ElementsAre("calendar:///?source-uid=source%201&comp-uid=uid%2F2%40x"));
}

TEST_F(CalendarApplicationsTest, EvolutionThatIsNotRunningOpensTheDayFirst) {
    EXPECT_THAT(argumentsToOpen(event, CalendarApplication::evolution, stopped).links,
                ElementsAre("calendar:///?startdate=20140307T174500Z",
                            "calendar:///?source-uid=source%201&comp-uid=uid%2F2%40x"));
}

TEST_F(CalendarApplicationsTest, EvolutionOpensTheDayOtherwise) {
    EXPECT_THAT(argumentsToOpen(event, CalendarApplication::evolution, {}).links,
                ElementsAre("calendar:///?startdate=20140307T174500Z"));
    EXPECT_THAT(argumentsToOpen(day, CalendarApplication::evolution, running).links,
                ElementsAre("calendar:///?startdate=20140307T110000Z")); // noon in Berlin
}

TEST_F(CalendarApplicationsTest, AnEarlyYearHasFourDigitsToo) {
    const CalendarLink early = EventLink{"a", "b", {-63113904000}};
    EXPECT_THAT(argumentsToOpen(early, CalendarApplication::evolution, {}).links,
                ElementsAre("calendar:///?startdate=00010101T000000Z"));
}

TEST_F(CalendarApplicationsTest, GnomeCalendarTakesArguments) {
    EXPECT_THAT(argumentsToOpen(event, CalendarApplication::gnomeCalendar, stopped).arguments,
                ElementsAre("--uuid", "source 1:uid/2@x"));
    EXPECT_THAT(argumentsToOpen(event, CalendarApplication::gnomeCalendar, {}).arguments,
                ElementsAre("--date", "03/07/14")); // as the C locale writes a date
    EXPECT_THAT(argumentsToOpen(day, CalendarApplication::gnomeCalendar, stopped).arguments,
                ElementsAre("--date", "03/07/14"));
}

TEST_F(CalendarApplicationsTest, AnotherApplicationJustComesToTheFront) {
    const LaunchArguments opening = argumentsToOpen(event, CalendarApplication::other, {});
    EXPECT_THAT(opening.links, IsEmpty());
    EXPECT_THAT(opening.arguments, IsEmpty());
}

} // namespace
} // namespace quorvel::freedesktop
