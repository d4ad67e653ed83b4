#include "freedesktop/calendars/server/library/worker_loop.h"

#include <chrono>
#include <future>
#include <memory>
#include <optional>
#include <utility>

#include <gtest/gtest.h>

namespace quorvel::freedesktop::eds {
namespace {

using namespace std::chrono_literals;

TEST(WorkerLoop, ALaterCallRunsAfterItsTime) {
    WorkerLoop loop;
    std::promise<void> ran;
    const auto start = std::chrono::steady_clock::now();
    loop.mailbox().postLater(0.05, [&ran] { ran.set_value(); });
    ASSERT_EQ(ran.get_future().wait_for(10s), std::future_status::ready);
    EXPECT_GE(std::chrono::steady_clock::now() - start, 50ms);
    loop.quit();
}

// The library holds the context on threads of its own.
TEST(WorkerLoop, AnEndedLoopHasDestroyedItsPendingCallsThoughOthersHoldItsContext) {
    std::optional<WorkerLoop> loop(std::in_place);
    GMainContext* const context = g_main_context_ref(loop->mailbox().context());
    auto owned = std::make_shared<int>();
    const std::weak_ptr<int> observed = owned;
    loop->mailbox().postLater(1000, [held = std::exchange(owned, nullptr)] {});
    loop->quit();
    loop.reset();
    EXPECT_TRUE(observed.expired());
    g_main_context_unref(context);
}

} // namespace
} // namespace quorvel::freedesktop::eds
