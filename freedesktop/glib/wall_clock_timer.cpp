#include "freedesktop/glib/wall_clock_timer.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <string>
#include <system_error>
#include <utility>

#include <sys/timerfd.h>
#include <unistd.h>

namespace quorvel::freedesktop {

namespace {

// A millisecond more outweighs the rounding of an instant, so that no call comes early.
timespec timeOf(platform::NSDate systemInstant) {
    constexpr double farthest = 1e11; // some 3,000 years
    constexpr double roundedUp = 0.001;
    const double seconds =
        std::clamp(platform::timeIntervalSince1970(systemInstant) + roundedUp, 1.0, farthest);
    const double whole = std::floor(seconds);
    return {static_cast<time_t>(whole), static_cast<long>((seconds - whole) * 1e9)};
}

} // namespace

WallClockTimer::WallClockTimer(platform::SystemLog& log, std::function<void()> instantCame,
                               std::function<void()> clockWasSet)
    : m_instantCame(std::move(instantCame))
    , m_clockWasSet(std::move(clockWasSet))
    , m_timer(timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC))
    , m_events(m_timer, [this] { read(); }) {
    if (!m_timer.isOpen()) {
        log.log("the system gives no timer (" + std::generic_category().message(errno) +
                "): the time of day is not followed");
    }
    m_events.listen();
}

void WallClockTimer::await(platform::NSDate systemInstant) {
    const itimerspec due{{0, 0}, timeOf(systemInstant)};
    constexpr int flags = TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET;
    // The kernel refuses once if the clock was set since the last call.
    if (m_timer.isOpen() && timerfd_settime(m_timer.get(), flags, &due, nullptr) != 0) {
        timerfd_settime(m_timer.get(), flags, &due, nullptr);
    }
}

void WallClockTimer::stop() {
    constexpr itimerspec never{{0, 0}, {0, 0}};
    if (m_timer.isOpen()) {
        timerfd_settime(m_timer.get(), 0, &never, nullptr);
    }
}

void WallClockTimer::read() {
    std::uint64_t expirations = 0;
    const ssize_t count = ::read(m_timer.get(), &expirations, sizeof expirations);
    if (count < 0 && errno == ECANCELED) {
        stop();
        m_clockWasSet();
    } else if (count > 0) {
        m_instantCame();
    }
}

} // namespace quorvel::freedesktop
