// A system log that stores its lines.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/system_log.h"

namespace quorvel::platform::memory {

class ListLog : public SystemLog {
public:
    void log(std::string_view message) override { lines.emplace_back(message); }

    std::vector<std::string> lines;
};

} // namespace quorvel::platform::memory
