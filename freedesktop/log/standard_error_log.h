// Logs to standard error.
#pragma once

#include "platform/system_log.h"

namespace quorvel::freedesktop {

class StandardErrorLog final : public platform::SystemLog {
public:
    void log(std::string_view message) override;
};

} // namespace quorvel::freedesktop
