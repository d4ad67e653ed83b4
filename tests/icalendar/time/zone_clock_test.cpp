// Local times that the clock skips, and those that it shows.
#include "icalendar/time/zone_clock.h"

#include <string>

#include <gtest/gtest.h>

#include "freedesktop/dates/time_zone.h"

#include "icalendar/text/property_values.h"

namespace quorvel::icalendar {
namespace {

std::string textOf(const char* zone, std::string_view localTime) {
    ZoneClock clock(freedesktop::namedTimeZone(zone));
    const CivilTime time =
        civilFromSeconds(clock.existingLocalTime(civilSeconds(parseTime(localTime)->civil)));
    char text[40];
    std::snprintf(text, sizeof text, "%04d%02d%02dT%02d%02d%02d", time.year, time.month, time.day,
                  time.hour, time.minute, time.second);
    return text;
}

// RFC 5545 3.3.5: "If the local time described does not occur (when changing from standard to
// daylight time), the DATE-TIME value is interpreted using the UTC offset before the gap in local
// times."
TEST(ZoneClock, MovesWhatItSkipsByTheGap) {
    EXPECT_EQ(textOf("Europe/Berlin", "20260329T015959"), "20260329T015959");
    EXPECT_EQ(textOf("Europe/Berlin", "20260329T020000"), "20260329T030000");
    EXPECT_EQ(textOf("Europe/Berlin", "20260329T025959"), "20260329T035959");
    EXPECT_EQ(textOf("Europe/Berlin", "20260329T030000"), "20260329T030000");
    EXPECT_EQ(textOf("America/New_York", "20070311T023000"), "20070311T033000");
    EXPECT_EQ(textOf("America/Sao_Paulo", "20181104T000000"), "20181104T010000");
    EXPECT_EQ(textOf("America/Sao_Paulo", "20181104T005959"), "20181104T015959");
    EXPECT_EQ(textOf("America/Sao_Paulo", "20181104T010000"), "20181104T010000");
    EXPECT_EQ(textOf("Australia/Lord_Howe", "20261004T015959"), "20261004T015959");
    EXPECT_EQ(textOf("Australia/Lord_Howe", "20261004T020000"), "20261004T023000");
    EXPECT_EQ(textOf("Australia/Lord_Howe", "20261004T023000"), "20261004T023000");
}

TEST(ZoneClock, MovesADayThatNeverCame) {
    EXPECT_EQ(textOf("Pacific/Apia", "20111229T235959"), "20111229T235959");
    EXPECT_EQ(textOf("Pacific/Apia", "20111230T000000"), "20111231T000000");
    EXPECT_EQ(textOf("Pacific/Apia", "20111230T235959"), "20111231T235959");
    EXPECT_EQ(textOf("Pacific/Apia", "20111231T000000"), "20111231T000000");
}

TEST(ZoneClock, ShowsWhatComesTwice) {
    for (const char* time : {"20261025T015959", "20261025T023000", "20261025T030000"}) {
        EXPECT_EQ(textOf("Europe/Berlin", time), time);
    }
    EXPECT_EQ(textOf("Etc/UTC", "20260329T023000"), "20260329T023000");
}

// The clock shows it at the instant that it is taken for.
TEST(ZoneClock, AgreesWithItsInstants) {
    for (const char* zone : {"Europe/Berlin", "America/New_York", "Africa/Cairo", "Asia/Beirut",
                             "Australia/Lord_Howe", "Pacific/Apia", "America/Sao_Paulo"}) {
        ZoneClock clock(freedesktop::namedTimeZone(zone));
        const std::int64_t begin = civilSeconds(parseTime("20101201")->civil);
        for (std::int64_t time = begin; time < begin + 800 * 86400; time += 613) {
            ASSERT_EQ(clock.existingLocalTime(time), clock.localTime(clock.earliestInstant(time)))
                << zone << " " << time;
        }
    }
}

} // namespace
} // namespace quorvel::icalendar
