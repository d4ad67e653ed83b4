#include "base/helper_thread.h"

#include <atomic>
#include <stdexcept>

#include <gtest/gtest.h>

namespace quorvel {
namespace {

TEST(HelperThread, HasWorkedOnceItIsJoined) {
    std::atomic<int> calls = 0;
    HelperThread helper;
    EXPECT_FALSE(helper.isStarted());
    helper.start([&calls] { ++calls; });
    EXPECT_TRUE(helper.isStarted());
    helper.join();
    EXPECT_EQ(calls, 1);
    helper.join();
    EXPECT_EQ(calls, 1);
}

TEST(HelperThread, JoinThrowsWhatTheWorkThrew) {
    HelperThread helper;
    helper.start([] { throw std::runtime_error("the work"); });
    EXPECT_THROW(helper.join(), std::runtime_error);
}

// Both threads may run out of memory at once.
TEST(HelperThread, EndOfItsOwnerThrowsNothing) {
    std::atomic<int> calls = 0;
    const auto failOnBoth = [&calls] {
        HelperThread helper;
        helper.start([&calls] {
            ++calls;
            throw std::runtime_error("the helper's");
        });
        throw std::logic_error("the owner's");
    };
    EXPECT_THROW(failOnBoth(), std::logic_error);
    EXPECT_EQ(calls, 1);
}

} // namespace
} // namespace quorvel
