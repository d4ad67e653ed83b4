#include "freedesktop/dates/time_patterns.h"

#include <string>

#include <gtest/gtest.h>

namespace quorvel::freedesktop {
namespace {

std::string pattern(const char* text, ClockFormat clockFormat) {
    std::string result;
    return patternWithClock(icu::UnicodeString::fromUTF8(text), clockFormat).toUTF8String(result);
}
std::string pattern12(const char* text) {
    return pattern(text, ClockFormat::twelveHours);
}
std::string pattern24(const char* text) {
    return pattern(text, ClockFormat::twentyFourHours);
}

std::string skeleton(const char* text, ClockFormat clockFormat) {
    std::string result;
    return skeletonWithClock(icu::UnicodeString::fromUTF8(text), clockFormat).toUTF8String(result);
}

TEST(TimePatterns, TwentyFourHoursNeedNoMarker) {
    EXPECT_EQ(pattern24("EEE, h:mm a"), "EEE, H:mm");
    EXPECT_EQ(pattern24("hh:mm:ss\u202Fa zzzz"), "HH:mm:ss zzzz");
    EXPECT_EQ(pattern24("a h:mm"), "H:mm");
    EXPECT_EQ(pattern24("ah:mm"), "H:mm");
    EXPECT_EQ(pattern24("B h:mm, d MMM"), "H:mm, d MMM");
    EXPECT_EQ(pattern24("K:mm aa"), "k:mm");
    EXPECT_EQ(pattern24("HH:mm"), "HH:mm");
}

TEST(TimePatterns, TwelveHoursGetTheMarkerThatTheyLack) {
    EXPECT_EQ(pattern12("EEE, HH:mm"), "EEE, hh:mm a");
    EXPECT_EQ(pattern12("HH:mm:ss zzzz"), "hh:mm:ss a zzzz");
    EXPECT_EQ(pattern12("HH:mm, d MMM"), "hh:mm a, d MMM");
    EXPECT_EQ(pattern12("H"), "h a");
    EXPECT_EQ(pattern12("k:mm"), "K:mm a");
    EXPECT_EQ(pattern12("h:mm a"), "h:mm a");
    EXPECT_EQ(pattern12("a h:mm"), "a h:mm");
    EXPECT_EQ(pattern12("B h:mm"), "B h:mm");
}

TEST(TimePatterns, WithoutHoursNothingIsAdded) {
    EXPECT_EQ(pattern12("EEEE"), "EEEE");
    EXPECT_EQ(pattern12("mm:ss"), "mm:ss");
    EXPECT_EQ(pattern24("EEEE"), "EEEE");
    EXPECT_EQ(pattern12(""), "");
    EXPECT_EQ(pattern24(""), "");
}

TEST(TimePatterns, QuotedTextStays) {
    EXPECT_EQ(pattern12("HH 'Uhr, alle Haken'"), "hh a 'Uhr, alle Haken'");
    EXPECT_EQ(pattern24("h 'o''clock has a'"), "H 'o''clock has a'");
    EXPECT_EQ(pattern24("'a' h a"), "'a' H");
    EXPECT_EQ(pattern12("'H"), "'H");
}

TEST(TimePatterns, DoesNotChangeTheLocalesFormat) {
    EXPECT_EQ(pattern("h:mm a HH", ClockFormat::ofLocale), "h:mm a HH");
    EXPECT_EQ(skeleton("jhHKka", ClockFormat::ofLocale), "jhHKka");
}

TEST(TimePatterns, SkeletonsAskForTheUsersHours) {
    EXPECT_EQ(skeleton("j", ClockFormat::twelveHours), "h");
    EXPECT_EQ(skeleton("j", ClockFormat::twentyFourHours), "H");
    EXPECT_EQ(skeleton("yMdhmma", ClockFormat::twentyFourHours), "yMdHmm");
    EXPECT_EQ(skeleton("Kmm", ClockFormat::twentyFourHours), "kmm");
    EXPECT_EQ(skeleton("EHmm", ClockFormat::twelveHours), "Ehmm");
    EXPECT_EQ(skeleton("kmm", ClockFormat::twelveHours), "Kmm");
}

} // namespace
} // namespace quorvel::freedesktop
