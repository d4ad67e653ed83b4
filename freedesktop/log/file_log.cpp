#include "freedesktop/log/file_log.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>

#include "freedesktop/log/log_line.h"
#include "freedesktop/log/write_line.h"

namespace quorvel::freedesktop {

// O_NONBLOCK makes a pipe without a reader an error instead of waiting for one.
Result<std::unique_ptr<FileLog>> FileLog::open(const std::string& path) {
    constexpr mode_t permissions = 0644;
    const int descriptor =
        ::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NONBLOCK, permissions);
    if (descriptor < 0) {
        return Error{std::generic_category().message(errno), {}, {}};
    }
    return std::unique_ptr<FileLog>(new FileLog(descriptor));
}

void FileLog::log(std::string_view message) {
    writeLine(m_descriptor.get(), logLine(message));
}

} // namespace quorvel::freedesktop
