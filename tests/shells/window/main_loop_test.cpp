#include "shells/window/main_loop.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace quorvel::window {
namespace {

void callFromLoop(GSourceFunc work, MainLoop& loop) {
    g_idle_add(work, &loop);
}

TEST(MainLoop, RunsUntilQuit) {
    MainLoop loop;
    callFromLoop(
        [](gpointer data) -> gboolean {
            static_cast<MainLoop*>(data)->quit();
            return G_SOURCE_REMOVE;
        },
        loop);
    loop.run();
}

TEST(MainLoop, DoesNotRunAfterQuit) {
    MainLoop loop;
    loop.quit();
    loop.run();
}

TEST(MainLoop, ThrowsTheFirstFailure) {
    MainLoop loop;
    callFromLoop(
        [](gpointer data) -> gboolean {
            auto* failing = static_cast<MainLoop*>(data);
            failing->fail(std::make_exception_ptr(std::runtime_error("first")));
            failing->fail(std::make_exception_ptr(std::runtime_error("second")));
            return G_SOURCE_REMOVE;
        },
        loop);
    try {
        loop.run();
        FAIL() << "nothing thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "first");
    }
}

} // namespace
} // namespace quorvel::window
