#include "freedesktop/log/file_log.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>

#include "freedesktop/log/log_line.h"
#include "freedesktop/log/write_line.h"

namespace quorvel::freedesktop {

// Not blocking, so that a pipe without a reader is an error rather than a halt.
std::unique_ptr<FileLog> FileLog::open(const std::string& path, std::string& reason) {
    constexpr mode_t ownersAndReadable = 0644;
    const int descriptor = ::open(
        path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NONBLOCK, ownersAndReadable);
    if (descriptor < 0) {
        reason = std::generic_category().message(errno);
        return nullptr;
    }
    return std::unique_ptr<FileLog>(new FileLog(descriptor));
}

void FileLog::log(std::string_view message) {
    writeLine(m_descriptor.get(), logLine(message));
}

} // namespace quorvel::freedesktop
