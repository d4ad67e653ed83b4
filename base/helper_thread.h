// A second thread for work that two can do together.
#pragma once

#include <functional>
#include <future>
#include <utility>

namespace quorvel {

// Belongs to the thread that made it. The work shares with that thread only what a mutex guards or
// what is atomic.
class HelperThread {
public:
    HelperThread() = default;
    // Waits as join() does, but drops what the work throws: the owner may be unwinding already.
    ~HelperThread() {
        if (m_end.valid()) {
            m_end.wait();
        }
    }
    HelperThread(const HelperThread&) = delete;
    HelperThread& operator=(const HelperThread&) = delete;

    // Once. Where the system has no thread to give, the work runs at join(), when the caller has
    // done its own part and little is left.
    void start(std::function<void()> work) {
        m_end = std::async(std::launch::async | std::launch::deferred, std::move(work));
    }
    bool isStarted() const { return m_end.valid(); }
    // Waits for the end of the work, and throws what it threw.
    void join() {
        if (m_end.valid()) {
            m_end.get();
        }
    }

private:
    std::future<void> m_end;
};

} // namespace quorvel
