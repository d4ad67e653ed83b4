#include "freedesktop/dates/clocks.h"

#include <chrono>

namespace quorvel::freedesktop {

using platform::NSDate;

NSDate SystemClock::now() const {
    const std::chrono::duration<double> since1970 =
        std::chrono::system_clock::now().time_since_epoch();
    return platform::dateWithTimeIntervalSince1970(since1970.count());
}

void AdjustableClock::setNow(NSDate instant) {
    m_stoppedAt = instant;
}

void AdjustableClock::runFrom(NSDate instant) {
    m_stoppedAt.reset();
    m_offset = instant.timeIntervalSinceDate(SystemClock().now());
}

NSDate AdjustableClock::now() const {
    return m_stoppedAt ? *m_stoppedAt : SystemClock().now().dateByAddingTimeInterval(m_offset);
}

std::optional<NSDate> AdjustableClock::systemInstant(NSDate instant) const {
    return m_stoppedAt ? std::nullopt : std::optional(instant.dateByAddingTimeInterval(-m_offset));
}

} // namespace quorvel::freedesktop
