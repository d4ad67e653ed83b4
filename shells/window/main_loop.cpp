#include "shells/window/main_loop.h"

#include <utility>

namespace quorvel::window {

MainLoop::MainLoop()
    : m_loop(g_main_loop_new(nullptr, FALSE)) {}

MainLoop::~MainLoop() {
    g_main_loop_unref(m_loop);
}

void MainLoop::run() {
    if (!m_hasQuit) {
        g_main_loop_run(m_loop);
    }
    if (m_failure) {
        std::rethrow_exception(m_failure);
    }
}

void MainLoop::quit() {
    m_hasQuit = true;
    g_main_loop_quit(m_loop);
}

void MainLoop::fail(std::exception_ptr failure) {
    if (!m_failure) {
        m_failure = std::move(failure);
    }
    quit();
}

} // namespace quorvel::window
