#include "freedesktop/dates/clocks.h"

#include <chrono>
#include <ctime>
#include <thread>

#include <gtest/gtest.h>

namespace quorvel::freedesktop {
namespace {

double secondsFromSystem(const platform::Clock& clock) {
    return platform::timeIntervalSince1970(clock.now()) - static_cast<double>(std::time(nullptr));
}

TEST(Clocks, SystemClockShowsTheTime) {
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

TEST(Clocks, AMovedClockRunsOnAtItsDistance) {
    AdjustableClock clock;
    clock.setNow({5});
    clock.runFrom({794826000});
    const platform::NSDate first = clock.now();
    EXPECT_NEAR(first.timeIntervalSinceReferenceDate, 794826000, 1);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_GE(clock.now().timeIntervalSinceDate(first), 0.02);
    clock.setNow({7});
    EXPECT_EQ(clock.now(), platform::NSDate{7});
}

TEST(Clocks, AnInstantHasItsPlaceOnTheSystemsClock) {
    AdjustableClock clock;
    EXPECT_EQ(clock.systemInstant({1000}), platform::NSDate{1000});
    clock.runFrom(SystemClock().now().dateByAddingTimeInterval(-3600));
    EXPECT_NEAR(clock.systemInstant({1000})->timeIntervalSinceReferenceDate, 4600, 1);
    clock.setNow({7});
    EXPECT_EQ(clock.systemInstant({1000}), std::nullopt) << "it never comes";
}

} // namespace
} // namespace quorvel::freedesktop
