// Calls a function once from the main loop, after a delay.
#pragma once

#include <functional>
#include <memory>

namespace quorvel::freedesktop {

// Belongs to the thread that constructs it and calls on that thread's default main context. The
// call may destroy the object.
class DelayedCall {
public:
    explicit DelayedCall(std::function<void()> call);
    ~DelayedCall(); // the function is not called afterwards
    DelayedCall(const DelayedCall&) = delete;
    DelayedCall& operator=(const DelayedCall&) = delete;

    // Replaces a pending call. Time while the system sleeps does not count. A negative number or
    // NaN is no delay; the longest delay is a million seconds.
    void start(double seconds);
    void stop();
    bool isStarted() const; // started and not called yet

private:
    struct Source;
    std::function<void()> m_call;
    std::unique_ptr<Source> m_source; // never null
};

} // namespace quorvel::freedesktop
