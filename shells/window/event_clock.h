// When input happened, on the clock of the frames: a window system stamps its events with
// milliseconds of a clock of its own, which start anywhere and run over.
#pragma once

#include <cstdint>
#include <optional>

namespace quorvel::window {

class EventClock {
public:
    // Seconds on the clock that `now` is of, never later than `now` and never earlier than an
    // answer given before. `milliseconds` 0 means that the event has no time. An event counts as
    // having been under way as long as it took compared with the fastest one so far, so that events
    // that arrive in one go keep the times between them.
    double secondsAt(std::uint32_t milliseconds, double now);
    // Another series of events begins. Two clocks that run apart are not noticed within one.
    void restart();

private:
    double unwrapped(std::uint32_t milliseconds);

    std::optional<std::uint32_t> m_lastStamp;
    double m_stampTime = 0;        // seconds since the first stamp
    std::optional<double> m_shift; // from that time to ours, by the fastest event
    double m_latest = 0;
};

} // namespace quorvel::window
