// A thread with a main loop of its own, on which everything of the library that calls back lives.
#pragma once

#include <functional>
#include <memory>
#include <thread>

#include <glib.h>

namespace quorvel::freedesktop::eds {

// Runs calls on the loop's thread, one after the other. May outlive the loop: what is posted then
// is never run.
class Mailbox {
public:
    Mailbox()
        : m_context(g_main_context_new(), g_main_context_unref) {}

    void post(std::function<void()> call) const;
    // Not before these seconds are over.
    void postLater(double seconds, std::function<void()> call) const;
    GMainContext* context() const { return m_context.get(); }

private:
    std::shared_ptr<GMainContext> m_context;
};

class WorkerLoop {
public:
    WorkerLoop();
    ~WorkerLoop(); // waits for the thread, which somebody must have told to quit
    WorkerLoop(const WorkerLoop&) = delete;
    WorkerLoop& operator=(const WorkerLoop&) = delete;

    const Mailbox& mailbox() const { return m_mailbox; }
    void quit(); // from any thread

private:
    Mailbox m_mailbox;
    std::unique_ptr<GMainLoop, decltype(&g_main_loop_unref)> m_loop;
    std::thread m_thread;
};

} // namespace quorvel::freedesktop::eds
