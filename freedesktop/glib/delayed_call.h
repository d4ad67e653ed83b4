// One call from the main loop after a delay.
#pragma once

#include <functional>
#include <memory>

namespace quorvel::freedesktop {

// Belongs to the thread that makes it, and calls on that thread's default main context. The call
// may destroy the object.
class DelayedCall {
public:
    explicit DelayedCall(std::function<void()> call);
    ~DelayedCall(); // nothing is called afterwards
    DelayedCall(const DelayedCall&) = delete;
    DelayedCall& operator=(const DelayedCall&) = delete;

    // Replaces a call that waits. In seconds of a clock that stands while the system sleeps.
    void start(double seconds);
    void stop();
    bool isStarted() const; // and not called yet

private:
    struct Source;
    std::function<void()> m_call;
    std::unique_ptr<Source> m_source; // never null
};

} // namespace quorvel::freedesktop
