// Clocks for the platform: the system's, and one that can be set.
#pragma once

#include <optional>

#include "platform/clock.h"

namespace quorvel::freedesktop {

class SystemClock final : public platform::Clock {
public:
    platform::NSDate now() const override;
};

// Follows the system's clock until it is set.
class AdjustableClock final : public platform::Clock {
public:
    // Stops at that time.
    void setNow(platform::NSDate instant);
    // Runs from that time on.
    void runFrom(platform::NSDate instant);

    platform::NSDate now() const override;
    // The system's time when this clock shows `instant`. Absent if this clock is stopped.
    std::optional<platform::NSDate> systemInstant(platform::NSDate instant) const;

private:
    std::optional<platform::NSDate> m_stoppedAt;
    platform::NSTimeInterval m_offset = 0; // from the system's clock, in seconds
};

} // namespace quorvel::freedesktop
