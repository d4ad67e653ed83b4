#include "shells/gtk/event_clock.h"

#include <algorithm>

namespace quorvel::gtk {

namespace {

// A longer apparent delay means that the event's clock was set or stopped.
constexpr double longestDelay = 1; // seconds

} // namespace

double EventClock::secondsAt(std::uint32_t milliseconds, double now) {
    double time = now;
    if (milliseconds != 0) {
        const double stamp = unwrapped(milliseconds);
        m_offset = std::min(m_offset.value_or(now - stamp), now - stamp);
        time = stamp + *m_offset;
        if (now - time > longestDelay) {
            m_offset = now - stamp;
            time = now;
        }
    }
    m_latest = std::max(m_latest, std::min(time, now));
    return m_latest;
}

void EventClock::restart() {
    m_lastStamp.reset();
    m_offset.reset();
}

// The difference to the previous stamp is signed, so that an event that arrives late goes back a
// little.
double EventClock::unwrapped(std::uint32_t milliseconds) {
    const std::uint32_t forward = milliseconds - m_lastStamp.value_or(milliseconds);
    m_lastStamp = milliseconds;
    m_stampTime += static_cast<double>(static_cast<std::int32_t>(forward)) / 1000;
    return m_stampTime;
}

} // namespace quorvel::gtk
