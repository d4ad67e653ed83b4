// The two calls of the kernel whose refusals are tested take this way in the test program.
#include <cerrno>
#include <climits>
#include <cstdint>
#include <string>

#include <sys/inotify.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "tests/freedesktop/session/session_testing.h"

using quorvel::testing_session::Kernel;

// Here, so that a test which uses it is linked with the calls below, before a sanitizer's own.
Kernel& Kernel::instance() {
    static Kernel kernel;
    return kernel;
}

namespace {

bool isTimer(int descriptor) {
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    char target[PATH_MAX]{};
    return ::readlink(link.c_str(), target, sizeof target - 1) > 0 &&
           std::string(target) == "anon_inode:[timerfd]";
}

} // namespace

extern "C" ssize_t read(int descriptor, void* buffer, size_t size) {
    Kernel& kernel = Kernel::instance();
    if (kernel.saysClockWasSet && isTimer(descriptor)) {
        kernel.saysClockWasSet = false;
        errno = ECANCELED;
        return -1;
    }
    return syscall(SYS_read, descriptor, buffer, size);
}

extern "C" int inotify_add_watch(int descriptor, const char* path, uint32_t mask) noexcept {
    Kernel& kernel = Kernel::instance();
    if (kernel.watchesLeft == 0 || path == kernel.unwatchable) {
        errno = kernel.watchesLeft == 0 ? ENOSPC : EACCES;
        return -1;
    }
    if (kernel.watchesLeft > 0) {
        --kernel.watchesLeft;
    }
    return static_cast<int>(syscall(SYS_inotify_add_watch, descriptor, path, mask));
}
