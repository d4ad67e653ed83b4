#include "tests/freedesktop/session/session_testing.h"

#include <chrono>
#include <thread>

#include <glib.h>

namespace quorvel::testing_session {

namespace {

using SteadyClock = std::chrono::steady_clock;

int wakeUps = 0;

gint countedPoll(GPollFD* descriptors, guint count, gint timeout) {
    const gint result = g_poll(descriptors, count, timeout);
    wakeUps += timeout != 0 ? 1 : 0;
    return result;
}

} // namespace

void runFor(double seconds) {
    runUntil([] { return false; }, seconds);
}

bool runUntil(const std::function<bool()>& happened, double seconds) {
    const auto end = SteadyClock::now() + std::chrono::duration<double>(seconds);
    while (true) {
        while (!happened() && g_main_context_iteration(nullptr, FALSE) != 0) {
        }
        if (happened()) {
            return true;
        }
        if (SteadyClock::now() >= end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

int wakeUpsDuring(double seconds) {
    GMainLoop* const loop = g_main_loop_new(nullptr, FALSE);
    const GSourceFunc quit = [](gpointer data) -> gboolean {
        g_main_loop_quit(static_cast<GMainLoop*>(data));
        return G_SOURCE_REMOVE;
    };
    g_main_context_set_poll_func(nullptr, countedPoll);
    wakeUps = 0;
    g_timeout_add(static_cast<guint>(seconds * 1000), quit, loop);
    g_main_loop_run(loop);
    g_main_context_set_poll_func(nullptr, nullptr);
    g_main_loop_unref(loop);
    return wakeUps - 1; // the end of the time
}

} // namespace quorvel::testing_session
