// The loop that the window's program runs in, which ends with what failed in it.
#pragma once

#include <exception>

#include <gtk/gtk.h>

namespace quorvel::window {

// On the thread's default main context.
class MainLoop {
public:
    MainLoop();
    ~MainLoop();
    MainLoop(const MainLoop&) = delete;
    MainLoop& operator=(const MainLoop&) = delete;

    // Until quit(), also where that came before. Throws what fail() was given.
    void run();
    void quit();
    void fail(std::exception_ptr failure); // the first one counts

private:
    GMainLoop* m_loop;
    bool m_hasQuit = false;
    std::exception_ptr m_failure;
};

} // namespace quorvel::window
