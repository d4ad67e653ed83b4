#include "shells/window/event_clock.h"

#include <algorithm>

namespace quorvel::window {

namespace {

// An event that seems to be older than that comes from a clock that was set, or stood still.
constexpr double longestWay = 1; // seconds

} // namespace

double EventClock::secondsAt(std::uint32_t milliseconds, double now) {
    double time = now;
    if (milliseconds != 0) {
        const double stamp = unwrapped(milliseconds);
        m_shift = std::min(m_shift.value_or(now - stamp), now - stamp);
        time = stamp + *m_shift;
        if (now - time > longestWay) {
            m_shift = now - stamp;
            time = now;
        }
    }
    m_latest = std::max(m_latest, std::min(time, now));
    return m_latest;
}

void EventClock::restart() {
    m_lastStamp.reset();
    m_shift.reset();
}

// The difference to the stamp before is taken as signed, so that a late event goes back a little.
double EventClock::unwrapped(std::uint32_t milliseconds) {
    const std::uint32_t forward = milliseconds - m_lastStamp.value_or(milliseconds);
    m_lastStamp = milliseconds;
    m_stampTime += static_cast<double>(static_cast<std::int32_t>(forward)) / 1000;
    return m_stampTime;
}

} // namespace quorvel::window
