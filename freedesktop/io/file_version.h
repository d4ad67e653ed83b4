// By what an unchanged file is known without being read.
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

// The system's clock, nanoseconds since 1970.
std::int64_t fileClock();

// Whether every change after that moment shows in the version: the file's own times lie so far
// before it that the coarsest of file systems gives a later change another time.
bool isSettled(const FileVersion& version, std::int64_t readAt);

} // namespace quorvel::freedesktop
