// Lets one program at a time change the files of a folder.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <utility>

#include "freedesktop/io/file_descriptor.h"

namespace quorvel::freedesktop {

// Programs that do not ask for the lock are not held up. Nothing is left in the folder, and the
// lock ends with this object or its process.
class FolderLock {
public:
    // Waits while another program or thread has the lock. Absent: it had it for all that time. On a
    // file system without locks, such as some in networks, the lock holds nobody up.
    static std::optional<FolderLock> take(const std::string& folder,
                                          std::chrono::milliseconds longestWait);

private:
    explicit FolderLock(FileDescriptor folder)
        : m_folder(std::move(folder)) {}

    FileDescriptor m_folder;
};

} // namespace quorvel::freedesktop
