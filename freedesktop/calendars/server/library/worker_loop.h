// A thread with a main loop of its own, for all objects of the library that have callbacks.
#pragma once

#include <functional>
#include <memory>
#include <thread>

#include <glib.h>

namespace quorvel::freedesktop::eds {

// Runs calls on the loop's thread, one after the other. For several threads: a mutex guards the
// queue of calls. A mailbox may outlive its loop; calls that are posted then never run.
class Mailbox {
public:
    Mailbox();

    void post(std::function<void()> call) const;
    // Runs the call after this many seconds or a little later.
    void postLater(double seconds, std::function<void()> call) const;
    GMainContext* context() const;

private:
    friend class WorkerLoop;
    struct Queue;

    void destroyTimeouts() const; // on the loop's thread; their calls never run

    std::shared_ptr<Queue> m_queue; // never null
};

// Belongs to the thread that makes it; its mailbox and quit() are for any thread.
class WorkerLoop {
public:
    WorkerLoop();
    ~WorkerLoop(); // waits until the thread has ended; quit() must have been called
    WorkerLoop(const WorkerLoop&) = delete;
    WorkerLoop& operator=(const WorkerLoop&) = delete;

    const Mailbox& mailbox() const { return m_mailbox; }
    void quit();

private:
    Mailbox m_mailbox;
    std::unique_ptr<GMainLoop, decltype(&g_main_loop_unref)> m_loop;
    std::thread m_thread;
};

} // namespace quorvel::freedesktop::eds
