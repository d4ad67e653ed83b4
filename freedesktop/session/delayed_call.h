// One call, a little later, from the main loop.
#pragma once

#include <functional>
#include <memory>

namespace quorvel::freedesktop {

// On the default main context of the thread that starts it. The call may end the object.
class DelayedCall {
public:
    explicit DelayedCall(std::function<void()> call);
    ~DelayedCall(); // nothing is called afterwards
    DelayedCall(const DelayedCall&) = delete;
    DelayedCall& operator=(const DelayedCall&) = delete;

    // Instead of what was started before. Seconds of a clock that stands while the system sleeps.
    void start(double seconds);
    void stop();
    bool isStarted() const; // and not called yet

private:
    struct Source;
    std::function<void()> m_call;
    std::unique_ptr<Source> m_source; // never null
};

} // namespace quorvel::freedesktop
