// Instants read and written.
#include "freedesktop/dates/instant_text.h"

#include <gtest/gtest.h>

namespace quorvel::freedesktop {
namespace {

std::string rewritten(std::string_view text, const char* zoneName = "Europe/Berlin") {
    const auto zone = namedTimeZone(zoneName);
    const auto date = parseInstant(text, *zone);
    return date ? rfc3339(*date, *utcTimeZone()) : "absent";
}

TEST(InstantText, ReadsOffsets) {
    EXPECT_EQ(rewritten("2026-03-10T10:00:00Z"), "2026-03-10T10:00:00+00:00");
    EXPECT_EQ(rewritten("2026-03-10t10:00:00z"), "2026-03-10T10:00:00+00:00");
    EXPECT_EQ(rewritten("2026-03-10T10:00:00+01:00"), "2026-03-10T09:00:00+00:00");
    EXPECT_EQ(rewritten("2026-03-10T10:00:00-0530"), "2026-03-10T15:30:00+00:00");
    EXPECT_EQ(rewritten("2026-03-10T10:00:00+14"), "2026-03-09T20:00:00+00:00");
    EXPECT_EQ(rewritten("2026-03-10 10:00+00:00"), "2026-03-10T10:00:00+00:00");
    EXPECT_EQ(rewritten("2016-12-31T23:59:60Z"), "2017-01-01T00:00:00+00:00");
    EXPECT_EQ(rewritten("0001-01-01T00:00:00Z"), "0001-01-01T00:00:00+00:00");
    EXPECT_EQ(rewritten("9999-12-31T23:59:59Z"), "9999-12-31T23:59:59+00:00");
}

TEST(InstantText, ReadsWallTimeInTheZone) {
    EXPECT_EQ(rewritten("2026-03-10T10:00:00"), "2026-03-10T09:00:00+00:00");
    EXPECT_EQ(rewritten("2026-07-10T10:00"), "2026-07-10T08:00:00+00:00");
    EXPECT_EQ(rewritten("2026-03-10"), "2026-03-09T23:00:00+00:00");
    EXPECT_EQ(rewritten("2026-03-29T02:30:00"), "2026-03-29T01:30:00+00:00");
    EXPECT_EQ(rewritten("2018-11-04", "America/Sao_Paulo"), "2018-11-04T03:00:00+00:00");
}

TEST(InstantText, ReadsFractions) {
    const auto utc = utcTimeZone();
    const auto whole = parseInstant("2026-03-10T10:00:00Z", *utc);
    const auto fraction = parseInstant("2026-03-10T10:00:00.25Z", *utc);
    ASSERT_TRUE(whole && fraction);
    EXPECT_DOUBLE_EQ(fraction->timeIntervalSinceDate(*whole), 0.25);
    const auto local = parseInstant("2026-03-10T10:00:00,5", *utc);
    ASSERT_TRUE(local);
    EXPECT_DOUBLE_EQ(local->timeIntervalSinceDate(*whole), 0.5);
}

TEST(InstantText, RefusesEverythingElse) {
    for (const char* text : {"",
                             "now",
                             "2026",
                             "2026-03",
                             "2026-3-10",
                             "2026-13-01",
                             "2026-00-01",
                             "2026-02-29",
                             "2026-02-30",
                             "2026-04-31",
                             "0000-01-01",
                             "2026-03-10T",
                             "2026-03-10T10",
                             "2026-03-10T24:00:00Z",
                             "2026-03-10T10:60:00Z",
                             "2026-03-10T10:00:61Z",
                             "2026-03-10T10:00:00.Z",
                             "2026-03-10T10:00:00+",
                             "2026-03-10T10:00:00+1",
                             "2026-03-10T10:00:00+01:",
                             "2026-03-10T10:00:00+01:60",
                             "2026-03-10T10:00:00ZZ",
                             "2026-03-10T10:00:00 Z",
                             " 2026-03-10",
                             "2026-03-10 ",
                             "-2026-03-10",
                             "20260310",
                             "2026-03-10T10:00:00+24:00"}) {
        EXPECT_EQ(rewritten(text), "absent") << text;
    }
    EXPECT_EQ(rewritten("2026-03-10T10:00:00." + std::string(100000, '1')), "absent");
    EXPECT_EQ(rewritten("2024-02-29"), "2024-02-28T23:00:00+00:00");
}

TEST(InstantText, WritesTheZonesOffset) {
    const auto date = parseInstant("2026-03-10T09:00:00Z", *utcTimeZone());
    ASSERT_TRUE(date);
    EXPECT_EQ(rfc3339(*date, *namedTimeZone("Europe/Berlin")), "2026-03-10T10:00:00+01:00");
    EXPECT_EQ(rfc3339(*date, *namedTimeZone("America/New_York")), "2026-03-10T05:00:00-04:00");
    EXPECT_EQ(rfc3339(*date, *namedTimeZone("Asia/Kathmandu")), "2026-03-10T14:45:00+05:45");
    EXPECT_EQ(rfc3339(*date, *namedTimeZone("America/St_Johns")), "2026-03-10T06:30:00-02:30");
    EXPECT_EQ(rfc3339(date->dateByAddingTimeInterval(0.75), *utcTimeZone()),
              "2026-03-10T09:00:00+00:00");
}

TEST(InstantText, PreservesTheInstantIfTheOffsetHasSeconds) {
    const auto berlin = namedTimeZone("Europe/Berlin"); // 53 minutes and 28 seconds
    const platform::NSDate date = dateOf(*berlin, {1800, 1, 1, 0, 0, 0});
    const std::string text = rfc3339(date, *berlin);
    EXPECT_EQ(text, "1799-12-31T23:59:32+00:53");
    EXPECT_EQ(parseInstant(text, *berlin), date);
}

} // namespace
} // namespace quorvel::freedesktop
