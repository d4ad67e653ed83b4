// Zones from a file's own definition, good and hostile.
#include "icalendar/expansion/defined_time_zone.h"

#include <chrono>

#include <gtest/gtest.h>

#include "freedesktop/dates/time_zone.h"

namespace quorvel::icalendar {
namespace {

ZoneDefinition centralEurope() {
    ZoneDefinition zone;
    zone.name.name = "Somewhere";
    zone.observances.push_back(
        {{1981, 3, 29, 2, 0, 0}, 3600, 7200, {"FREQ=YEARLY;BYMONTH=3;BYDAY=-1SU"}, {}});
    zone.observances.push_back(
        {{1996, 10, 27, 3, 0, 0}, 7200, 3600, {"FREQ=YEARLY;BYMONTH=10;BYDAY=-1SU"}, {}});
    return zone;
}

TEST(DefinedTimeZone, ReadsAsTheKnownZoneDoes) {
    const auto defined = makeDefinedTimeZone(centralEurope());
    const auto known = freedesktop::namedTimeZone("Europe/Berlin");
    ASSERT_TRUE(defined);
    ASSERT_TRUE(known);
    EXPECT_EQ(defined->identifier(), "Somewhere");
    for (const CivilTime& time :
         {CivilTime{2026, 1, 15, 12, 0, 0}, CivilTime{2026, 7, 15, 12, 0, 0},
          CivilTime{2026, 3, 29, 1, 59, 59}, CivilTime{2026, 3, 29, 2, 30, 0},
          CivilTime{2026, 3, 29, 3, 0, 0}, CivilTime{2026, 10, 25, 1, 59, 59},
          CivilTime{2026, 10, 25, 2, 30, 0}, CivilTime{2026, 10, 25, 3, 0, 0}}) {
        EXPECT_EQ(freedesktop::dateOf(*defined, time), freedesktop::dateOf(*known, time))
            << time.month << "/" << time.day << " " << time.hour << ":" << time.minute;
        EXPECT_EQ(freedesktop::localTime(*defined, freedesktop::dateOf(*known, time)),
                  freedesktop::localTime(*known, freedesktop::dateOf(*known, time)));
    }
}

TEST(DefinedTimeZone, IsNoneWithoutObservances) {
    EXPECT_EQ(makeDefinedTimeZone({{"Nowhere", 0}, {}}), nullptr);
}

TEST(DefinedTimeZone, OfHostileRulesIsBounded) {
    ZoneDefinition zone = centralEurope();
    for (int i = 0; i < 400; ++i) {
        zone.observances.push_back({{1601, 1, 1, 0, 0, 0},
                                    0,
                                    3600,
                                    {"FREQ=SECONDLY", "FREQ=HOURLY;BYMONTH=2;BYMONTHDAY=30"},
                                    {}});
    }
    const auto before = std::chrono::steady_clock::now();
    EXPECT_NE(makeDefinedTimeZone(zone), nullptr);
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - before;
    EXPECT_LT(taken.count(), 2.0);
}

} // namespace
} // namespace quorvel::icalendar
