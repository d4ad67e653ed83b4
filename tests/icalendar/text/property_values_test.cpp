// Times, durations and text, right and wrong ones.
#include "icalendar/text/property_values.h"

#include <gtest/gtest.h>

namespace quorvel::icalendar {
namespace {

TEST(IcsTime, IsReadFieldByField) {
    const auto time = parseTime("20240229T235959Z");
    ASSERT_TRUE(time);
    EXPECT_EQ(time->civil, (CivilTime{2024, 2, 29, 23, 59, 59}));
    EXPECT_TRUE(time->isUtc);
    EXPECT_FALSE(time->isDate);
    const auto date = parseTime(" 20240101 ");
    ASSERT_TRUE(date);
    EXPECT_TRUE(date->isDate);
    EXPECT_EQ(parseTime("20161231T235960Z")->civil.second, 59);
}

TEST(IcsTime, OfHour24IsTheNextMidnight) {
    EXPECT_EQ(parseTime("20240229T240000")->civil, (CivilTime{2024, 3, 1, 0, 0, 0}));
    EXPECT_EQ(parseTime("20241231T240000")->civil, (CivilTime{2025, 1, 1, 0, 0, 0}));
    EXPECT_TRUE(parseTime("20240229T240000Z")->isUtc);
    EXPECT_EQ(untilOf("UNTIL=20240305T240000Z")->civil, (CivilTime{2024, 3, 6, 0, 0, 0}));
    for (const char* text : {"20240101T240001", "20240101T240100", "99991231T240000"}) {
        EXPECT_FALSE(parseTime(text)) << text;
    }
}

TEST(IcsTime, ThatIsNoneIsRefused) {
    for (const char* text : {"", "2024", "20240231", "20241301", "20240001", "20240100", "20230229",
                             "20240101T250000", "20240101T106000", "20240101T1000", "00000101",
                             "20240101X100000", "20240101T100000+0200", "2024-01-01", "2024010a"}) {
        EXPECT_FALSE(parseTime(text)) << text;
    }
}

TEST(IcsDuration, KeepsDaysApartFromSeconds) {
    EXPECT_EQ(parseDuration("P1D"), (Duration{1, 0}));
    EXPECT_EQ(parseDuration("P2W"), (Duration{14, 0}));
    EXPECT_EQ(parseDuration("PT1H30M5S"), (Duration{0, 5405}));
    EXPECT_EQ(parseDuration("-P1DT12H"), (Duration{-1, -43200}));
    EXPECT_EQ(parseDuration("+PT15M"), (Duration{0, 900}));
    for (const char* text : {"", "P", "PT", "1D", "P1", "P1X", "PT1HT1M", "P99999999999D"}) {
        EXPECT_FALSE(parseDuration(text)) << text;
    }
}

TEST(IcsText, IsUnescaped) {
    EXPECT_EQ(parseText("a\\, b\\; c\\\\ d\\ne\\Nf"), "a, b; c\\ d\ne\nf");
    EXPECT_EQ(parseText("C:\\temp \\"), "C:\\temp \\");
    EXPECT_EQ(parseText("  kept  "), "  kept  ");
}

TEST(IcsText, IsAlwaysUtf8) {
    EXPECT_EQ(parseText("Gr\xC3\xBC\xC3\x9F"
                        "e"),
              "Grüße");
    EXPECT_EQ(parseText("Gr\xC3\xBC\xC3\x9F"
                        "e \xE9"),
              "Grüße \xEF\xBF\xBD");
    EXPECT_EQ(parseText(std::string_view("a\0b", 3)), "a\xEF\xBF\xBD"
                                                      "b");
    EXPECT_EQ(parseText("\xED\xA0\x80"), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"); // a surrogate
    EXPECT_EQ(parseText("\xF0\x9F\x8E\x82"), "🎂");
}

TEST(IcsText, OfLatin1IsRecognised) {
    EXPECT_EQ(parseText("Caf\xE9, Gr\xFC\xDF"
                        "e"),
              "Café, Grüße");
    EXPECT_EQ(parseText("\x93quoted\x94"), "\xEF\xBF\xBDquoted\xEF\xBF\xBD") << "no letters there";
}

TEST(IcsRule, NamesItsEnd) {
    EXPECT_EQ(untilOf("FREQ=DAILY;UNTIL=20240105T100000Z")->civil,
              (CivilTime{2024, 1, 5, 10, 0, 0}));
    EXPECT_TRUE(untilOf("until=20240105;FREQ=DAILY")->isDate);
    EXPECT_FALSE(untilOf("FREQ=DAILY;COUNT=2"));
    EXPECT_FALSE(untilOf("FREQ=DAILY;UNTIL=never"));
}

TEST(UtcOffset, IsInSecondsEastOfUtc) {
    EXPECT_EQ(parseUtcOffset("+0200"), 7200);
    EXPECT_EQ(parseUtcOffset(" -023015 "), -9015);
    EXPECT_EQ(parseUtcOffset("+2400"), 86400);
    EXPECT_EQ(parseUtcOffset("-0000"), 0);
    for (const char* text :
         {"", "0200", "02000", "+02:00", "+02", "+020", "+2401", "+02000", "+02x0"}) {
        EXPECT_EQ(parseUtcOffset(text), std::nullopt) << text;
    }
}

} // namespace
} // namespace quorvel::icalendar
