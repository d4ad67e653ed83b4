// Readings that the clock leaps over, and those that come.
#include "freedesktop/calendar/zone_clock.h"

#include <gtest/gtest.h>

#include "freedesktop/calendar/ics_values.h"

namespace quorvel::freedesktop::ics {
namespace {

bool exists(const char* zone, std::string_view reading) {
    ZoneClock clock(TimeZone::named(zone));
    return clock.exists(civilSeconds(readTime(reading)->civil));
}

TEST(ZoneClock, KnowsWhatItLeapsOver) {
    EXPECT_TRUE(exists("Europe/Berlin", "20260329T015959"));
    EXPECT_FALSE(exists("Europe/Berlin", "20260329T020000"));
    EXPECT_FALSE(exists("Europe/Berlin", "20260329T025959"));
    EXPECT_TRUE(exists("Europe/Berlin", "20260329T030000"));
    EXPECT_FALSE(exists("America/Sao_Paulo", "20181104T000000"));
    EXPECT_FALSE(exists("America/Sao_Paulo", "20181104T005959"));
    EXPECT_TRUE(exists("America/Sao_Paulo", "20181104T010000"));
    EXPECT_TRUE(exists("Australia/Lord_Howe", "20261004T015959"));
    EXPECT_FALSE(exists("Australia/Lord_Howe", "20261004T020000"));
    EXPECT_TRUE(exists("Australia/Lord_Howe", "20261004T023000"));
}

TEST(ZoneClock, KnowsADayThatNeverCame) {
    EXPECT_TRUE(exists("Pacific/Apia", "20111229T235959"));
    EXPECT_FALSE(exists("Pacific/Apia", "20111230T000000"));
    EXPECT_FALSE(exists("Pacific/Apia", "20111230T235959"));
    EXPECT_TRUE(exists("Pacific/Apia", "20111231T000000"));
}

TEST(ZoneClock, WhatComesTwiceComes) {
    EXPECT_TRUE(exists("Europe/Berlin", "20261025T015959"));
    EXPECT_TRUE(exists("Europe/Berlin", "20261025T023000"));
    EXPECT_TRUE(exists("Europe/Berlin", "20261025T030000"));
    EXPECT_TRUE(exists("Etc/UTC", "20260329T023000"));
}

// Agrees with the instant that the reading is taken for.
TEST(ZoneClock, AgreesWithItsInstants) {
    for (const char* zone : {"Europe/Berlin", "America/New_York", "Africa/Cairo", "Asia/Beirut",
                             "Australia/Lord_Howe", "Pacific/Apia", "America/Sao_Paulo"}) {
        ZoneClock clock(TimeZone::named(zone));
        const std::int64_t begin = civilSeconds(readTime("20101201")->civil);
        for (std::int64_t reading = begin; reading < begin + 800 * 86400; reading += 613) {
            ASSERT_EQ(clock.exists(reading), clock.instant(reading).exists)
                << zone << " " << reading;
        }
    }
}

} // namespace
} // namespace quorvel::freedesktop::ics
