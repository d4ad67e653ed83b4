#include "freedesktop/dates/clocks.h"

#include <ctime>

#include <gtest/gtest.h>

namespace quorvel::freedesktop {
namespace {

double secondsFromSystem(const platform::Clock& clock) {
    return platform::timeIntervalSince1970(clock.now()) - static_cast<double>(std::time(nullptr));
}

TEST(Clocks, SystemClockTellsTheTime) {
    EXPECT_NEAR(secondsFromSystem(SystemClock()), 0, 2);
}

TEST(Clocks, AdjustableClockFollowsTheSystemUntilItIsSet) {
    AdjustableClock clock;
    EXPECT_NEAR(secondsFromSystem(clock), 0, 2);
    clock.setNow({-1e9});
    EXPECT_EQ(clock.now(), platform::NSDate{-1e9});
    clock.setNow({794826000});
    EXPECT_EQ(clock.now(), platform::NSDate{794826000});
}

} // namespace
} // namespace quorvel::freedesktop
