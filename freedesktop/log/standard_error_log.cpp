#include "freedesktop/log/standard_error_log.h"

#include <unistd.h>

#include "freedesktop/log/log_line.h"
#include "freedesktop/log/write_line.h"

namespace quorvel::freedesktop {

void StandardErrorLog::log(std::string_view message) {
    writeLine(STDERR_FILENO, logLine(message));
}

} // namespace quorvel::freedesktop
