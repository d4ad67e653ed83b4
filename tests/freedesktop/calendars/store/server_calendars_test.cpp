#include "freedesktop/calendars/store/server_calendars.h"

#include <limits>

#include <gmock/gmock.h>

namespace quorvel::freedesktop::eds {
namespace {

using platform::UIColor;

TEST(ServerCalendars, IdentifiersHaveNoSeparators) {
    EXPECT_EQ(calendarIdentifier("system-calendar"), "system-calendar");
    EXPECT_EQ(calendarIdentifier("a:b/c%d e\n"), "a%3Ab%2Fc%25d%20e%0A");
    EXPECT_NE(calendarIdentifier("a:b"), calendarIdentifier("a%3Ab"));
    EXPECT_EQ(calendarIdentifier("Käse"), "Käse");
}

TEST(ServerCalendars, ColoursAreReadInBothLengths) {
    const UIColor blue{0x33 / 255.0, 0x66 / 255.0, 0x99 / 255.0, 1};
    EXPECT_EQ(serverColour("#336699"), blue);
    EXPECT_EQ(serverColour("#333366669999"), blue);
    EXPECT_EQ(serverColour("#33336666999x"), std::nullopt);
    EXPECT_EQ(serverColour(""), std::nullopt);
}

TEST(ServerCalendars, ACalendarWithoutNameOrColourHasOnesOfItsOwn) {
    const auto one = makeCalendar({"one", "", "", true});
    EXPECT_EQ(one->title, "one");
    ASSERT_TRUE(one->CGColor);
    EXPECT_EQ(one->CGColor, makeCalendar({"one", "Title", "no colour", true})->CGColor);
    EXPECT_EQ(makeCalendar({"two", "Broken \xFF text", "", true})->title,
              "Broken \xEF\xBF\xBD text");
}

platform::EKEventPredicate between(double from, double to) {
    return {platform::dateWithTimeIntervalSince1970(from),
            platform::dateWithTimeIntervalSince1970(to),
            {}};
}

TEST(ServerCalendars, ARangeIsWholeSecondsAndBounded) {
    auto range = searchedRange(between(1000.5, 2000.25));
    ASSERT_TRUE(range);
    EXPECT_EQ(range->from, 1000);
    EXPECT_EQ(range->to, 2001);
    EXPECT_FALSE(searchedRange(between(2000, 1000)));
    EXPECT_FALSE(searchedRange(between(std::numeric_limits<double>::quiet_NaN(), 1000)));
    range = searchedRange(between(0, std::numeric_limits<double>::infinity()));
    ASSERT_TRUE(range);
    EXPECT_EQ(range->to, 1465 * 86'400);
    range = searchedRange(between(-std::numeric_limits<double>::infinity(), 0));
    ASSERT_TRUE(range);
    EXPECT_EQ(range->from, -250'000'000'000);
}

} // namespace
} // namespace quorvel::freedesktop::eds
