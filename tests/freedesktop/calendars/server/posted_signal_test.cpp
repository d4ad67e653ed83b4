#include "freedesktop/calendars/server/library/posted_signal.h"

#include <chrono>
#include <future>
#include <memory>
#include <thread>

#include <gio/gio.h>
#include <gtest/gtest.h>

#include "freedesktop/glib/handles.h"

namespace quorvel::freedesktop::eds {
namespace {

using namespace std::chrono_literals;

class PostedSignal : public testing::Test {
protected:
    ~PostedSignal() override { worker.quit(); }

    // Runs everything that was posted before.
    void runPosted() {
        std::promise<void> ran;
        worker.mailbox().post([&ran] { ran.set_value(); });
        ASSERT_EQ(ran.get_future().wait_for(10s), std::future_status::ready);
    }
    gulong connect(gpointer object, const char* signal) {
        return connectPosted(object, signal, worker.mailbox(), [this] {
            ++calls;
            caller = std::this_thread::get_id();
        });
    }

    WorkerLoop worker;
    int calls = 0; // on the worker's thread, and so is the next; read once runPosted() returned
    std::thread::id caller;
};

TEST_F(PostedSignal, CallsOnTheWorkersThreadForASignalWithoutArguments) {
    const ObjectHandle<GCancellable> object(g_cancellable_new());
    connect(object.get(), "cancelled");
    g_cancellable_cancel(object.get());
    runPosted();
    EXPECT_EQ(calls, 1);
    EXPECT_NE(caller, std::this_thread::get_id());
}

TEST_F(PostedSignal, CallsForASignalWithAnArgument) {
    const ObjectHandle<GSimpleAction> object(g_simple_action_new("action", nullptr));
    connect(object.get(), "notify::enabled");
    g_simple_action_set_enabled(object.get(), FALSE);
    runPosted();
    EXPECT_EQ(calls, 1);
    EXPECT_NE(caller, std::this_thread::get_id());
}

TEST_F(PostedSignal, CallsForASignalWithSeveralArguments) {
    const ObjectHandle<GListStore> object(g_list_store_new(G_TYPE_CANCELLABLE));
    const ObjectHandle<GCancellable> item(g_cancellable_new());
    connect(object.get(), "items-changed"); // with a place and two counts
    g_list_store_append(object.get(), item.get());
    runPosted();
    EXPECT_EQ(calls, 1);
    EXPECT_NE(caller, std::this_thread::get_id());
}

TEST_F(PostedSignal, DoesNotCallOnceItIsDisconnected) {
    const ObjectHandle<GSimpleAction> object(g_simple_action_new("action", nullptr));
    const gulong handler = connect(object.get(), "notify::enabled");
    g_signal_handler_disconnect(object.get(), handler);
    g_simple_action_set_enabled(object.get(), FALSE);
    runPosted();
    EXPECT_EQ(calls, 0);
}

TEST_F(PostedSignal, ReleasesItsCallWithTheObject) {
    auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> weak = held;
    ObjectHandle<GCancellable> object(g_cancellable_new());
    connectPosted(object.get(), "cancelled", worker.mailbox(), [held = std::move(held)] {});
    EXPECT_FALSE(weak.expired());
    object.reset();
    EXPECT_TRUE(weak.expired());
}

} // namespace
} // namespace quorvel::freedesktop::eds
