// Recognises an unchanged file without reading it.
#pragma once

#include <cstdint>

struct stat;

namespace quorvel::freedesktop {

struct FileVersion {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t size = -1;
    std::int64_t modified = 0; // nanoseconds since 1970
    std::int64_t changed = 0;  // the inode, nanoseconds since 1970
    bool operator==(const FileVersion&) const = default;
};

FileVersion versionOf(const struct stat& status);

// The system's clock in nanoseconds since 1970.
std::int64_t fileClock();

// Whether every change after `readAt` gives the file another version: its times are so much earlier
// that even a file system with coarse time stamps gives a later change a later time.
bool isSettled(const FileVersion& version, std::int64_t readAt);

} // namespace quorvel::freedesktop
