// A log that passes every line on and stores a copy of it.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/system_log.h"

namespace quorvel::headless {

class RecordingLog : public platform::SystemLog {
public:
    // `log` outlives this object.
    explicit RecordingLog(platform::SystemLog& log)
        : m_log(log) {}

    void log(std::string_view message) override {
        m_lines.emplace_back(message);
        m_log.log(message);
    }

    // The lines since the last call.
    std::vector<std::string> takeLines() { return std::exchange(m_lines, {}); }

private:
    platform::SystemLog& m_log;
    std::vector<std::string> m_lines;
};

} // namespace quorvel::headless
