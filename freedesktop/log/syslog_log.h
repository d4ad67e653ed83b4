// Logs to syslog, which may be the journal.
#pragma once

#include "platform/system_log.h"

namespace quorvel::freedesktop {

// Messages are notices of "quorvel". At most one object per process.
class Syslog final : public platform::SystemLog {
public:
    Syslog();
    ~Syslog() override;
    Syslog(const Syslog&) = delete;
    Syslog& operator=(const Syslog&) = delete;

    void log(std::string_view message) override;
};

} // namespace quorvel::freedesktop
