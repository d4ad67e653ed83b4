// The system log: one line a call, UTF-8, without the newline.
#pragma once

#include <string_view>

namespace quorvel::platform {

class SystemLog {
public:
    virtual ~SystemLog() = default;
    virtual void log(std::string_view message) = 0;
};

} // namespace quorvel::platform
