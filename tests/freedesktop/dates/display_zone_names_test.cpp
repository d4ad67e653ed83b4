// Zones by the lists of places that Windows shows, as they are written in calendars.
#include "freedesktop/dates/display_zone_names.h"

#include <algorithm>
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include "freedesktop/dates/time_zone.h"

namespace quorvel::freedesktop {
namespace {

std::string zoneOf(std::string_view name) {
    return std::string(zoneOfDisplayName(name).value_or("unknown"));
}

TEST(DisplayZoneNames, AreKnown) {
    EXPECT_EQ(zoneOf("(UTC+01:00) Amsterdam, Berlin, Bern, Rome, Stockholm, Vienna"),
              "Europe/Berlin");
    EXPECT_EQ(zoneOf("(GMT-05:00) Eastern Time (US & Canada)"), "America/New_York");
    EXPECT_EQ(zoneOf("(UTC+07:00) Bangkok, Hanoi, Jakarta"), "Asia/Bangkok");
    EXPECT_EQ(zoneOf("(UTC) Coordinated Universal Time"), "UTC");
    EXPECT_EQ(zoneOf("(UTC+00:00) Dublin, Edinburgh, Lisbon, London"), "Europe/London");
    EXPECT_EQ(zoneOf("(UTC-11:00) Coordinated Universal Time-11"), "Etc/GMT+11");
    EXPECT_EQ(zoneOf("(UTC+05:45) Kathmandu"), "Asia/Kathmandu");
    EXPECT_EQ(zoneOf("(UTC+13:00) Nuku'alofa"), "Pacific/Tongatapu");
}

TEST(DisplayZoneNames, OfSeveralEditionsAreKnown) {
    EXPECT_EQ(zoneOf("(UTC-05:00) Eastern Time (US and Canada)"), "America/New_York");
    EXPECT_EQ(zoneOf("(GMT-08:00) Pacific Time (US & Canada); Tijuana"), "America/Los_Angeles");
    EXPECT_EQ(zoneOf("(GMT) Greenwich Mean Time : Dublin, Edinburgh, Lisbon, London"),
              "Europe/London");
    EXPECT_EQ(zoneOf("(GMT+01:00) Berlin, Stockholm, Rome, Bern, Brussels, Vienna"),
              "Europe/Berlin");
    EXPECT_EQ(zoneOf("(GMT-06:00) Guadalajara, Mexico City, Monterrey - Old"),
              "America/Mexico_City");
    EXPECT_EQ(zoneOf("(UTC+03:00) Moscow, St. Petersburg (RTZ 2)"), "Europe/Moscow");
    EXPECT_EQ(zoneOf("(UTC+04:00) Moscow, St. Petersburg, Volgograd"), "Europe/Moscow");
    EXPECT_EQ(zoneOf("(UTC-04:30) Caracas"), "America/Caracas");
    EXPECT_EQ(zoneOf("(GMT-04:00) Caracas, La Paz"), "America/La_Paz");
    EXPECT_EQ(zoneOf("(GMT+11:00) Magadan, Solomon Is., New Caledonia"), "Pacific/Guadalcanal");
    EXPECT_EQ(zoneOf("(GMT-05:00) Indiana (East)"), "America/Indiana/Indianapolis");
}

// Places of the same name differ in their offset.
TEST(DisplayZoneNames, AreDistinguishedByTheirOffset) {
    EXPECT_EQ(zoneOf("(UTC-07:00) Chihuahua, La Paz, Mazatlan"), "America/Mazatlan");
    EXPECT_EQ(zoneOf("(UTC-04:00) Georgetown, La Paz, Manaus, San Juan"), "America/La_Paz");
    EXPECT_EQ(zoneOf("(GMT-11:00) Midway Island, Samoa"), "Pacific/Pago_Pago");
    EXPECT_EQ(zoneOf("(UTC+13:00) Samoa"), "Pacific/Apia");
    EXPECT_EQ(zoneOf("(GMT+02:00) Athens, Istanbul, Minsk"), "Europe/Athens");
    EXPECT_EQ(zoneOf("(UTC+08:00) Berlin"), "unknown");
}

TEST(DisplayZoneNames, OfOtherLanguagesAreKnownByOneOfTheirPlaces) {
    EXPECT_EQ(zoneOf("(UTC+01:00) Amsterdam, Berlin, Bern, Rom, Stockholm, Wien"), "Europe/Berlin");
    EXPECT_EQ(zoneOf("(UTC+01:00) Br\xC3\xBCssel, Kopenhagen, Madrid, Paris"), "Europe/Paris");
    EXPECT_EQ(zoneOf("(UTC+08:00) Peking, Chongqing, Hongkong, \xC3\x9Cr\xC3\xBCmqi"),
              "Asia/Shanghai");
    EXPECT_EQ(zoneOf("(UTC+01:00) Brunswick, Madrid"), "Europe/Paris");
}

TEST(DisplayZoneNames, AreKnownHoweverTheyAreSpaced) {
    for (const char* name : {" (UTC+01:00)Amsterdam,Berlin ", "(utc+1:00) BERLIN", "(UTC+1) Berlin",
                             "( GMT +01:00 )  Berlin ;  Bern", "(GMT+01.00) Amsterdam / Berlin",
                             "(GMT+0100) Berlin", "(UTC+01:00) Nowhere\\, Berlin\\"}) {
        EXPECT_EQ(zoneOf(name), "Europe/Berlin") << name;
    }
    EXPECT_EQ(zoneOf("(UTC\xE2\x88\x92"
                     "05:00) Eastern Time"),
              "America/New_York");
}

TEST(DisplayZoneNames, ThatAreNoneAreUnknown) {
    for (const char* name :
         {"", "(", "()", "(UTC", "(UTC+01:00)", "(UTC+01:00) ", "(UTC+01:00) Nowhere", "Berlin",
          "(CET+01:00) Berlin", "(UTC+15:00) Berlin", "(UTC+01:60) Berlin", "(UTC+01:00 Berlin",
          "(UTC 01:00) Berlin", "(UTC+) Berlin", "(UTC+01:00) ,;/:,"}) {
        EXPECT_EQ(zoneOf(name), "unknown") << name;
    }
    EXPECT_EQ(zoneOf("(UTC+01:00) Berlin" + std::string(300, ' ')), "unknown");
}

TEST(DisplayZoneNames, StateAnOffset) {
    EXPECT_EQ(statedOffset("(UTC+01:00) Nowhere"), 60);
    EXPECT_EQ(statedOffset("(GMT-03:30)"), -210);
    EXPECT_EQ(statedOffset("(UTC) Nowhere"), 0);
    EXPECT_EQ(statedOffset("(UTC+01:00) " + std::string(100000, 'x')), 60);
    EXPECT_EQ(statedOffset("Nowhere (UTC+01:00)"), std::nullopt);
}

int winterOffset(const TimeZone& zone) {
    const auto offsetIn = [&zone](int month) {
        return offsetAt(zone, dateOf(zone, {2026, month, 15, 12, 0, 0})) / 60;
    };
    return std::min(offsetIn(1), offsetIn(7));
}

// Some countries have moved by an hour since, or count the winter as the exception.
TEST(DisplayZoneNames, StandForZonesOfTheirOffset) {
    for (const DisplayedZone& one : displayedZones()) {
        const auto zone = namedTimeZone(one.zone);
        ASSERT_NE(zone, nullptr) << one.zone;
        EXPECT_LE(std::abs(winterOffset(*zone) - one.minutes), 60) << one.zone;
    }
}

} // namespace
} // namespace quorvel::freedesktop
