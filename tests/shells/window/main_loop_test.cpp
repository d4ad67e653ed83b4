#include "shells/window/main_loop.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace quorvel::window {
namespace {

void soon(GSourceFunc work, MainLoop& loop) {
    g_idle_add(work, &loop);
}

TEST(MainLoop, RunsUntilItIsToQuit) {
    MainLoop loop;
    soon(
        [](gpointer data) -> gboolean {
            static_cast<MainLoop*>(data)->quit();
            return G_SOURCE_REMOVE;
        },
        loop);
    loop.run();
}

TEST(MainLoop, DoesNotRunAfterItHasQuit) {
    MainLoop loop;
    loop.quit();
    loop.run();
}

TEST(MainLoop, EndsWithTheFirstFailure) {
    MainLoop loop;
    soon(
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
