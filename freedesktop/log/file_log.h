// The log file that the user has chosen.
#pragma once

#include <memory>
#include <string>

#include "base/result.h"
#include "freedesktop/io/file_descriptor.h"
#include "platform/system_log.h"

namespace quorvel::freedesktop {

// Appends lines with time, process and thread. Each line is one write, so threads and processes may
// share a file.
class FileLog final : public platform::SystemLog {
public:
    // Creates a missing file. The `what` of the error is the system's message, such as "Permission
    // denied". The log is not null.
    static Result<std::unique_ptr<FileLog>> open(const std::string& path);

    void log(std::string_view message) override;

private:
    explicit FileLog(int descriptor)
        : m_descriptor(descriptor) {}

    FileDescriptor m_descriptor;
};

} // namespace quorvel::freedesktop
