// Offsets that are remembered, against those that a zone finds when it is asked for the first time.
#include "freedesktop/dates/recent_offsets.h"

#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "base/time_units.h"
#include "freedesktop/dates/system_time_zone.h"

namespace quorvel::freedesktop {
namespace {

constexpr std::int64_t newYear = 1767225600;        // of 2026
constexpr std::int64_t summerInBerlin = 1774746000; // begins on 2026-03-29

TEST(RecentOffsets, BlocksMeet) {
    EXPECT_EQ(RecentOffsets::blockOf(0), 0);
    EXPECT_EQ(RecentOffsets::blockOf(-1), -1);
    EXPECT_EQ(RecentOffsets::firstInstantOf(-1), -1048576);
    EXPECT_EQ(RecentOffsets::lastInstantOf(-1), -1);
    EXPECT_EQ(RecentOffsets::lastInstantOf(0), 1048575);
}

TEST(RecentOffsets, NothingIsRememberedAtFirst) {
    const RecentOffsets offsets;
    for (const std::int64_t block : {-257, -256, -1, 0, 1, 256, 1690}) {
        EXPECT_FALSE(offsets.find(block));
    }
}

TEST(RecentOffsets, KeepAnOffsetUntilAnotherTakesItsPlace) {
    RecentOffsets offsets;
    offsets.remember(-3, -43200);
    offsets.remember(253 + 256, 50400);
    EXPECT_FALSE(offsets.find(-3));
    EXPECT_FALSE(offsets.find(253));
    EXPECT_EQ(offsets.find(253 + 256), 50400);
    offsets.remember(-3, -43200);
    EXPECT_EQ(offsets.find(-3), -43200);
    EXPECT_FALSE(offsets.find(253 + 256));
}

TEST(RecentOffsets, FarTimesAreDistinguished) {
    RecentOffsets offsets;
    const std::int64_t farthest = RecentOffsets::blockOf(icalendar::farthestInstant);
    for (const std::int64_t block : {farthest, -farthest}) {
        offsets.remember(block, 0);
        EXPECT_EQ(offsets.find(block), 0);
        EXPECT_FALSE(offsets.find(block % 256));
    }
}

// A new zone remembers nothing yet.
TEST(RecentOffsets, AreThoseOfTheZone) {
    for (const char* const name : {"Europe/Berlin", "Africa/Casablanca", "Australia/Lord_Howe",
                                   "Antarctica/Troll", "Asia/Kolkata"}) {
        const auto zone = makeSystemTimeZone(name);
        std::vector<int> offsets;
        for (int day = 0; day < 400; day += 3) {
            const std::int64_t instant = newYear + day * secondsPerDay;
            offsets.push_back(makeSystemTimeZone(name)->offsetAt(instant));
            EXPECT_EQ(zone->offsetAt(instant), offsets.back()) << name << " at " << instant;
        }
        for (std::size_t i = offsets.size(); i-- > 0;) {
            const std::int64_t instant = newYear + static_cast<int>(3 * i) * secondsPerDay;
            EXPECT_EQ(zone->offsetAt(instant), offsets[i]) << name << " at " << instant;
        }
    }
}

TEST(RecentOffsets, EndWhereTheZoneChanges) {
    const auto berlin = makeSystemTimeZone("Europe/Berlin");
    for (int i = 0; i < 2; ++i) {
        for (std::int64_t day = 1; day < 30; ++day) {
            EXPECT_EQ(berlin->offsetAt(summerInBerlin - day * secondsPerDay), 3600);
            EXPECT_EQ(berlin->offsetAt(summerInBerlin + day * secondsPerDay), 7200);
        }
        EXPECT_EQ(berlin->offsetAt(summerInBerlin - 1), 3600);
        EXPECT_EQ(berlin->offsetAt(summerInBerlin), 7200);
    }
}

std::vector<int> offsetsOfTwentyYears(const TimeZone& zone) {
    std::vector<int> offsets;
    for (std::int64_t day = 0; day < 20 * 365; day += 5) {
        offsets.push_back(zone.offsetAt(newYear + day * secondsPerDay));
    }
    return offsets;
}

TEST(RecentOffsets, AreSharedByThreads) {
    const auto expected = offsetsOfTwentyYears(*makeSystemTimeZone("Europe/Berlin"));
    const auto berlin = makeSystemTimeZone("Europe/Berlin");
    std::vector<int> others;
    std::thread other([&] { others = offsetsOfTwentyYears(*berlin); });
    EXPECT_EQ(offsetsOfTwentyYears(*berlin), expected);
    other.join();
    EXPECT_EQ(others, expected);
}

} // namespace
} // namespace quorvel::freedesktop
