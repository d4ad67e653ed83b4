// A log file that the user named.
#pragma once

#include <memory>
#include <string>

#include "freedesktop/io/file_descriptor.h"
#include "platform/system_log.h"

namespace quorvel::freedesktop {

// Lines are appended, each with its time, process and thread; a line is written at once and whole.
class FileLog final : public platform::SystemLog {
public:
    // The file is made where it is missing. Null where it cannot be written; `reason` then says why
    // ("Permission denied").
    static std::unique_ptr<FileLog> open(const std::string& path, std::string& reason);

    void log(std::string_view message) override;

private:
    explicit FileLog(int descriptor)
        : m_descriptor(descriptor) {}

    FileDescriptor m_descriptor;
};

} // namespace quorvel::freedesktop
