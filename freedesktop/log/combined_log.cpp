#include "freedesktop/log/combined_log.h"

namespace quorvel::freedesktop {

void CombinedLog::log(std::string_view message) {
    for (const auto& log : m_logs) {
        log->log(message);
    }
}

} // namespace quorvel::freedesktop
