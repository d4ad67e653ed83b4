// Converts the time stamps of input events to the frame clock: window systems use milliseconds of a
// clock of their own, which begins at any value and wraps around.
#pragma once

#include <cstdint>
#include <optional>

namespace quorvel::gtk {

class EventClock {
public:
    // The event's time in seconds of the clock of `now`: never after `now`, and never before an
    // earlier result. `milliseconds` 0 means that the event has no time stamp. The event that
    // arrived fastest so far defines the offset between the clocks, so that events which are
    // delivered together still have the right times between them.
    double secondsAt(std::uint32_t milliseconds, double now);
    // Call this at the start of a series of events: within a series the clocks are assumed to run
    // at the same rate.
    void restart();

private:
    double unwrapped(std::uint32_t milliseconds);

    std::optional<std::uint32_t> m_lastStamp;
    double m_stampTime = 0;         // seconds since the first stamp
    std::optional<double> m_offset; // seconds, added to m_stampTime gives the frame clock's time
    double m_latest = 0;
};

} // namespace quorvel::gtk
