#include <chrono>
#include <cmath>

#include <gtest/gtest.h>

#include "freedesktop/dates/clocks.h"
#include "freedesktop/glib/delayed_call.h"
#include "freedesktop/glib/wall_clock_timer.h"
#include "tests/freedesktop/session/session_testing.h"

namespace quorvel::freedesktop {
namespace {

using namespace testing_session;

double secondsOf(const std::function<void()>& action) {
    const auto begin = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

TEST(DelayedCall, CallsOnceAndNotEarly) {
    int calls = 0;
    DelayedCall call([&calls] { ++calls; });
    EXPECT_FALSE(call.isStarted());
    call.start(0.05);
    EXPECT_TRUE(call.isStarted());
    EXPECT_GE(secondsOf([&] { runUntil([&] { return calls > 0; }); }), 0.045);
    EXPECT_FALSE(call.isStarted());
    runFor(0.15);
    EXPECT_EQ(calls, 1);
}

TEST(DelayedCall, CallsSoonWithoutAPositiveDelay) {
    for (const double seconds : {0.0, -1.0, std::nan("")}) {
        int calls = 0;
        DelayedCall call([&calls] { ++calls; });
        call.start(seconds);
        EXPECT_TRUE(runUntil([&] { return calls == 1; }, 1)) << seconds;
    }
}

TEST(DelayedCall, ASecondStartReplacesTheFirst) {
    int calls = 0;
    DelayedCall call([&calls] { ++calls; });
    call.start(0.02);
    call.start(0.2);
    runFor(0.1);
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(runUntil([&] { return calls == 1; }));
}

TEST(DelayedCall, DoesNotCallOnceItIsStopped) {
    int calls = 0;
    DelayedCall call([&calls] { ++calls; });
    call.start(0.01);
    call.stop();
    runFor(0.05);
    EXPECT_EQ(calls, 0);
}

TEST(DelayedCall, DoesNotCallAfterItsEnd) {
    int calls = 0;
    {
        DelayedCall([&calls] { ++calls; }).start(0);
    }
    runFor(0.05);
    EXPECT_EQ(calls, 0);
}

TEST(DelayedCall, ItsCallMayStartAndDestroyIt) {
    int calls = 0;
    std::unique_ptr<DelayedCall> call;
    call = std::make_unique<DelayedCall>([&] {
        if (++calls == 1) {
            call->start(0);
        } else {
            call.reset();
        }
    });
    call->start(0);
    EXPECT_TRUE(runUntil([&] { return call == nullptr; }));
    EXPECT_EQ(calls, 2);
}

class WallClockTimerTest : public testing::Test {
protected:
    static platform::NSDate inSeconds(double seconds) {
        return SystemClock().now().dateByAddingTimeInterval(seconds);
    }

    RecordedLog log;
    int instants = 0;
    int settings = 0;
    std::unique_ptr<WallClockTimer> timer = std::make_unique<WallClockTimer>(
        log, [this] { ++instants; }, [this] { ++settings; });
};

TEST_F(WallClockTimerTest, CallsOnceWhenTheClockShowsTheInstantOrLater) {
    for (int i = 0; i < 20; ++i) {
        const platform::NSDate instant = inSeconds(0.01);
        instants = 0;
        timer->start(instant);
        ASSERT_TRUE(runUntil([this] { return instants > 0; }));
        EXPECT_GE(SystemClock().now(), instant);
    }
    runFor(0.05);
    EXPECT_EQ(instants, 1);
    EXPECT_EQ(settings, 0);
}

TEST_F(WallClockTimerTest, CallsAtOnceForAPastInstantAndFromTheMainLoop) {
    for (const platform::NSDate past : {inSeconds(-1), platform::NSDate{-1e10}}) {
        instants = 0;
        timer->start(past);
        EXPECT_EQ(instants, 0);
        EXPECT_LT(secondsOf([this] { runUntil([this] { return instants == 1; }); }), 1);
    }
}

TEST_F(WallClockTimerTest, ASecondInstantReplacesTheFirst) {
    timer->start(inSeconds(0.02));
    timer->start(inSeconds(1e9));
    runFor(0.1);
    EXPECT_EQ(instants, 0);
}

TEST_F(WallClockTimerTest, DoesNotCallOnceItIsStoppedOrDestroyed) {
    timer->start(inSeconds(0.01));
    timer->stop();
    runFor(0.05);
    timer->start(inSeconds(0));
    timer.reset();
    runFor(0.05);
    EXPECT_EQ(instants, 0);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(WallClockTimerTest, ReportsThatTheClockWasSet) {
    timer->start(inSeconds(0.01));
    Kernel::instance().saysClockWasSet = true;
    EXPECT_TRUE(runUntil([this] { return settings == 1; }));
    runFor(0.05);
    EXPECT_EQ(settings, 1);
    EXPECT_EQ(instants, 0);
    timer->start(inSeconds(0.01));
    EXPECT_TRUE(runUntil([this] { return instants == 1; })) << "and goes on";
}

TEST_F(WallClockTimerTest, DoesNotWakeUpBeforeTheInstant) {
    timer->start(inSeconds(3600));
    runFor(0.01);
    EXPECT_EQ(wakeUpsDuring(0.5), 0);
}

} // namespace
} // namespace quorvel::freedesktop
