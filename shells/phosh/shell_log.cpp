#include "shells/phosh/shell_log.h"

#include <string>

#include <glib.h>

#include "freedesktop/log/log_line.h"

namespace quorvel::phosh {

void ShellLog::log(std::string_view message) {
    g_log("quorvel", G_LOG_LEVEL_MESSAGE, "%s", freedesktop::printableMessage(message).c_str());
}

} // namespace quorvel::phosh
