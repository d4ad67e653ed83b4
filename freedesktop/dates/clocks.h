// The host's clocks: the system's own, and one that can be made to stand at an instant.
#pragma once

#include <optional>

#include "platform/clock.h"

namespace quorvel::freedesktop {

class SystemClock final : public platform::Clock {
public:
    platform::NSDate now() const override;
};

// Follows the system until it is set, and stands still from then on.
class AdjustableClock final : public platform::Clock {
public:
    void setNow(platform::NSDate instant) { m_instant = instant; }
    platform::NSDate now() const override;

private:
    std::optional<platform::NSDate> m_instant;
};

} // namespace quorvel::freedesktop
