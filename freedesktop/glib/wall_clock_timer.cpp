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

// Adds a millisecond, so that rounding never causes an early call.
timespec timeOf(platform::NSDate systemInstant) {
    constexpr double farthest = 1e11; // some 3,000 years
    constexpr double roundedUp = 0.001;
    const double seconds =
        std::clamp(platform::timeIntervalSince1970(systemInstant) + roundedUp, 1.0, farthest);
    const double whole = std::floor(seconds);
    return {static_cast<time_t>(whole), static_cast<long>((seconds - whole) * 1e9)};
}

} // namespace

WallClockTimer::WallClockTimer(platform::SystemLog& log, std::function<void()> onInstant,
                               std::function<void()> onClockSet)
    : m_onInstant(std::move(onInstant))
    , m_onClockSet(std::move(onClockSet))
    , m_timer(timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC))
    , m_events(m_timer, [this] { read(); }) {
    if (!m_timer.isOpen()) {
        log.log("the system provides no timer (" + std::generic_category().message(errno) +
                "): the agenda does not follow the time of day");
    }
    m_events.listen();
}

void WallClockTimer::start(platform::NSDate systemInstant) {
    const itimerspec due{{0, 0}, timeOf(systemInstant)};
    constexpr int flags = TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET;
    // The first call fails if the clock was set since the last one.
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
        m_onClockSet();
    } else if (count > 0) {
        m_onInstant();
    }
}

} // namespace quorvel::freedesktop
