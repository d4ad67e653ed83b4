#include "freedesktop/glib/call_after.h"

#include <cmath>

#include <gtest/gtest.h>

#include "tests/freedesktop/session/session_testing.h"

namespace quorvel::freedesktop {
namespace {

using namespace testing_session;

TEST(CallAfter, CallsOnce) {
    int calls = 0;
    const SourceHandle source = callAfter(0.01, [&calls] { ++calls; });
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(runUntil([&] { return calls > 0; }));
    runFor(0.05);
    EXPECT_EQ(calls, 1);
}

TEST(CallAfter, DoesNotCallAfterTheEndOfTheHandle) {
    int calls = 0;
    callAfter(0.01, [&calls] { ++calls; }).reset();
    runFor(0.05);
    EXPECT_EQ(calls, 0);
}

TEST(CallAfter, CallsSoonWhereThereIsNoTime) {
    for (const double seconds : {0.0, -1.0, std::nan("")}) {
        int calls = 0;
        const SourceHandle source = callAfter(seconds, [&calls] { ++calls; });
        EXPECT_TRUE(runUntil([&] { return calls == 1; }, 1)) << seconds;
    }
}

} // namespace
} // namespace quorvel::freedesktop
