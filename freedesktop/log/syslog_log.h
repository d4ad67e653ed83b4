// The system's own log: the journal, or whatever takes syslog messages.
#pragma once

#include "platform/system_log.h"

namespace quorvel::freedesktop {

// Messages are notices of "quorvel". One object a process.
class Syslog final : public platform::SystemLog {
public:
    Syslog();
    ~Syslog() override;
    Syslog(const Syslog&) = delete;
    Syslog& operator=(const Syslog&) = delete;

    void log(std::string_view message) override;
};

} // namespace quorvel::freedesktop
