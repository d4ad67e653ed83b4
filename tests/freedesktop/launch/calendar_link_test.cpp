#include "freedesktop/launch/calendar_link.h"

#include <gtest/gtest.h>

namespace quorvel::freedesktop {
namespace {

TEST(CalendarLinkTest, TakesAnEventsLinkApart) {
    const auto link =
        parseCalendarLink("x-apple-calevent://work-1a2b3c4d/day/lunch?x?o=415911600.0");
    ASSERT_TRUE(link);
    const auto& event = std::get<EventLink>(*link);
    EXPECT_EQ(event.calendar, "work-1a2b3c4d");
    EXPECT_EQ(event.uid, "day/lunch?x");
    EXPECT_DOUBLE_EQ(event.start.timeIntervalSinceReferenceDate, 415911600);
}

TEST(CalendarLinkTest, TakesEventsOfTheYears1To9999) {
    for (const char* start : {"-63113904000.0", "252423993599.9"}) {
        EXPECT_TRUE(parseCalendarLink(std::string("x-apple-calevent://a/b?o=") + start)) << start;
    }
    for (const char* start : {"-63113904000.1", "252423993600.0"}) {
        EXPECT_FALSE(parseCalendarLink(std::string("x-apple-calevent://a/b?o=") + start)) << start;
    }
}

TEST(CalendarLinkTest, TakesADaysLinkApart) {
    const auto link = parseCalendarLink("fantastical2://show?date=2014-3-7");
    ASSERT_TRUE(link);
    const auto& day = std::get<DayLink>(*link);
    EXPECT_EQ(day.year, 2014);
    EXPECT_EQ(day.month, 3);
    EXPECT_EQ(day.day, 7);
}

TEST(CalendarLinkTest, TakesNothingElse) {
    for (const char* text : {"",
                             "http://example.org",
                             "x-apple-calevent://",
                             "x-apple-calevent://a?o=1.0",
                             "x-apple-calevent://a/?o=1.0",
                             "x-apple-calevent:///b?o=1.0",
                             "x-apple-calevent://a/b",
                             "x-apple-calevent://a/b?o=",
                             "x-apple-calevent://a/b?o=1x",
                             "x-apple-calevent://a/b?o=nan",
                             "x-apple-calevent://a/b?o=1e300",
                             "fantastical2://show",
                             "fantastical2://show?date=",
                             "fantastical2://show?date=2014-2-29",
                             "fantastical2://show?date=2014-13-1",
                             "fantastical2://show?date=0-1-1",
                             "fantastical2://show?date=10000-1-1",
                             "fantastical2://show?date=2014-3",
                             "fantastical2://show?date=2014-3-7x",
                             "fantastical2://show?date=-3-7"}) {
        EXPECT_FALSE(parseCalendarLink(text)) << text;
    }
}

} // namespace
} // namespace quorvel::freedesktop
