#include "freedesktop/glib/thread_signal.h"

#include <thread>

#include <gtest/gtest.h>

#include "tests/freedesktop/session/session_testing.h"

namespace quorvel::freedesktop {
namespace {

using namespace testing_session;

TEST(ThreadSignal, CallsOnTheThreadThatMadeItAndOnceForMany) {
    int calls = 0;
    std::thread::id caller;
    const ThreadSignal signal([&] {
        ++calls;
        caller = std::this_thread::get_id();
    });
    std::thread([send = signal.sender()] {
        send();
        send();
        send();
    }).join();
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(runUntil([&] { return calls > 0; }));
    EXPECT_EQ(caller, std::this_thread::get_id());
    runFor(0.05);
    EXPECT_EQ(calls, 1);
    signal.sender()();
    EXPECT_TRUE(runUntil([&] { return calls == 2; }));
}

TEST(ThreadSignal, DoesNotCallAfterItsEnd) {
    int calls = 0;
    std::function<void()> send;
    {
        const ThreadSignal signal([&] { ++calls; });
        send = signal.sender();
        send();
    }
    send();
    runFor(0.05);
    EXPECT_EQ(calls, 0);
}

} // namespace
} // namespace quorvel::freedesktop
