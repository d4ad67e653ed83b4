// Colours as files write them, and the palette's.
#include "freedesktop/calendars/files/calendar_colours.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace quorvel::freedesktop::calendars {
namespace {

using platform::UIColor;

TEST(CalendarColour, IsReadFromDigits) {
    EXPECT_EQ(calendarColour("#FF0000"), UIColor::redColor());
    EXPECT_EQ(calendarColour("#f00"), UIColor::redColor());
    EXPECT_EQ(calendarColour(" #0000FF00 "), (UIColor{0, 0, 1, 0}));
}

TEST(CalendarColour, IsReadFromNames) {
    EXPECT_EQ(calendarColour("red"), UIColor::redColor());
    EXPECT_EQ(calendarColour("YellowGreen"),
              (UIColor{0x9a / 255.0, 0xcd / 255.0, 0x32 / 255.0, 1}));
    EXPECT_EQ(calendarColour("aliceblue"), (UIColor{0xf0 / 255.0, 0xf8 / 255.0, 1, 1}));
}

TEST(CalendarColour, IsNoneOtherwise) {
    for (const char* text :
         {"", "#", "#12", "#12345", "#GGGGGG", "#1234567890", "zzz", "nocolour"}) {
        EXPECT_FALSE(calendarColour(text)) << text;
    }
}

TEST(StableColour, IsTheSameAgainAndLight) {
    EXPECT_EQ(stableColour("work-1"), stableColour("work-1"));
    bool differs = false;
    for (char c = 'a'; c <= 'z'; ++c) {
        const UIColor colour = stableColour(std::string_view(&c, 1));
        EXPECT_GT(std::max({colour.red, colour.green, colour.blue}), 0.8);
        differs = differs || !(colour == stableColour("a"));
    }
    EXPECT_TRUE(differs);
}

} // namespace
} // namespace quorvel::freedesktop::calendars
