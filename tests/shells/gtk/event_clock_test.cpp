#include "shells/gtk/event_clock.h"

#include <gtest/gtest.h>

namespace quorvel::gtk {
namespace {

constexpr double precision = 1e-9;

TEST(EventClock, TheFirstEventOccurredWhenItArrived) {
    EventClock clock;
    EXPECT_DOUBLE_EQ(clock.secondsAt(4000000000U, 12.5), 12.5);
}

TEST(EventClock, EventsThatArriveTogetherHaveTheirOwnTimes) {
    EventClock clock;
    clock.secondsAt(1000, 10);
    EXPECT_NEAR(clock.secondsAt(1008, 10.016), 10.008, precision);
    EXPECT_NEAR(clock.secondsAt(1016, 10.016), 10.016, precision);
}

TEST(EventClock, AFasterEventSetsTheOffsetButTimeNeverGoesBack) {
    EventClock clock;
    EXPECT_NEAR(clock.secondsAt(1000, 10.050), 10.050, precision) << "delayed by 50 ms";
    EXPECT_NEAR(clock.secondsAt(1020, 10.020), 10.050, precision) << "not delayed";
    EXPECT_NEAR(clock.secondsAt(1060, 10.090), 10.060, precision) << "delayed by 30 ms";
}

TEST(EventClock, AnEventWithoutATimeStampOccursNow) {
    EventClock clock;
    clock.secondsAt(1000, 10);
    EXPECT_NEAR(clock.secondsAt(0, 10.5), 10.5, precision);
    EXPECT_NEAR(clock.secondsAt(1600, 10.61), 10.6, precision);
}

TEST(EventClock, MillisecondsWrapAround) {
    EventClock clock;
    clock.secondsAt(0xFFFFFFF0U, 10);
    EXPECT_NEAR(clock.secondsAt(0x00000010U, 10.040), 10.032, precision);
}

TEST(EventClock, AnEventIsNeverLaterThanNow) {
    EventClock clock;
    clock.secondsAt(1000, 10);
    EXPECT_NEAR(clock.secondsAt(9000, 10.1), 10.1, precision);
    EXPECT_NEAR(clock.secondsAt(9010, 10.11), 10.11, precision);
}

TEST(EventClock, AClockThatStoppedIsIgnored) {
    EventClock clock;
    clock.secondsAt(1000, 10);
    EXPECT_NEAR(clock.secondsAt(1010, 15), 15, precision);
    EXPECT_NEAR(clock.secondsAt(1020, 15.010), 15.010, precision);
}

TEST(EventClock, ARestartDropsTheOffset) {
    EventClock clock;
    clock.secondsAt(1000, 10);
    clock.restart();
    EXPECT_NEAR(clock.secondsAt(1500, 11), 11, precision) << "not 10.5";
    clock.restart();
    EXPECT_NEAR(clock.secondsAt(1000, 10), 11, precision) << "time still never goes back";
}

} // namespace
} // namespace quorvel::gtk
