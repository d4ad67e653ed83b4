// A clock whose time changes only by a call.
#pragma once

#include "platform/clock.h"

namespace quorvel::platform::memory {

class FixedClock : public Clock {
public:
    NSDate now() const override { return m_now; }
    void setNow(NSDate now) { m_now = now; }

private:
    NSDate m_now; // the reference date until set
};

} // namespace quorvel::platform::memory
