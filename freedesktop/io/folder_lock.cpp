#include "freedesktop/io/folder_lock.h"

#include <cerrno>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>

namespace quorvel::freedesktop {

namespace {

bool isHeldByAnother(int descriptor) {
    return ::flock(descriptor, LOCK_EX | LOCK_NB) != 0 && (errno == EWOULDBLOCK || errno == EINTR);
}

} // namespace

std::optional<FolderLock> FolderLock::take(const std::string& folder,
                                           std::chrono::milliseconds longestWait) {
    constexpr std::chrono::milliseconds pause(1);
    const auto deadline = std::chrono::steady_clock::now() + longestWait;
    FileDescriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    while (isHeldByAnother(descriptor.get())) {
        if (std::chrono::steady_clock::now() >= deadline) {
            return std::nullopt;
        }
        std::this_thread::sleep_for(pause);
    }
    return FolderLock(std::move(descriptor));
}

} // namespace quorvel::freedesktop
