// The host's clocks: the system's own, and one that can be moved away from it.
#pragma once

#include <optional>

#include "platform/clock.h"

namespace quorvel::freedesktop {

class SystemClock final : public platform::Clock {
public:
    platform::NSDate now() const override;
};

// Follows the system until it is set.
class AdjustableClock final : public platform::Clock {
public:
    // Stands there from now on.
    void setNow(platform::NSDate instant);
    // Is there now, and keeps that distance from the system's clock.
    void runFrom(platform::NSDate instant);

    platform::NSDate now() const override;
    // What the system's clock reads when this one reads `instant`; absent where this one stands.
    std::optional<platform::NSDate> systemInstant(platform::NSDate instant) const;

private:
    std::optional<platform::NSDate> m_standsAt;
    platform::NSTimeInterval m_ahead = 0; // of the system's clock, in seconds
};

} // namespace quorvel::freedesktop
