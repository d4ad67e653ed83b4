// The main loop of the window's program, which passes on an exception that ended it.
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

    // Returns after quit(), also where that was called before. Throws the exception of fail().
    void run();
    void quit();
    void fail(std::exception_ptr failure); // quits; only the first exception is stored

private:
    GMainLoop* m_loop;
    bool m_hasQuit = false;
    std::exception_ptr m_failure;
};

} // namespace quorvel::window
