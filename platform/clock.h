// The current instant, as the host gives it.
#pragma once

#include "platform/ns_date.h"

namespace quorvel::platform {

class Clock {
public:
    virtual ~Clock() = default;
    virtual NSDate now() const = 0;
};

} // namespace quorvel::platform
