// Passes each message to several logs, in their order.
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "platform/system_log.h"

namespace quorvel::freedesktop {

class CombinedLog final : public platform::SystemLog {
public:
    explicit CombinedLog(std::vector<std::shared_ptr<platform::SystemLog>> logs)
        : m_logs(std::move(logs)) {}

    void log(std::string_view message) override;

private:
    std::vector<std::shared_ptr<platform::SystemLog>> m_logs;
};

} // namespace quorvel::freedesktop
