#include "freedesktop/log/syslog_log.h"

#include <syslog.h>

#include "freedesktop/log/log_line.h"

namespace quorvel::freedesktop {

Syslog::Syslog() {
    openlog("quorvel", LOG_PID, LOG_USER);
}

Syslog::~Syslog() {
    closelog();
}

void Syslog::log(std::string_view message) {
    syslog(LOG_NOTICE, "%s", printableMessage(message).c_str());
}

} // namespace quorvel::freedesktop
