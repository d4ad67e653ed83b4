#include "freedesktop/dates/clocks.h"

#include <chrono>

namespace quorvel::freedesktop {

platform::NSDate SystemClock::now() const {
    const std::chrono::duration<double> since1970 =
        std::chrono::system_clock::now().time_since_epoch();
    return platform::dateWithTimeIntervalSince1970(since1970.count());
}

platform::NSDate AdjustableClock::now() const {
    return m_instant ? *m_instant : SystemClock().now();
}

} // namespace quorvel::freedesktop
