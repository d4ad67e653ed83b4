#include "freedesktop/io/file_version.h"

#include <algorithm>
#include <ctime>

#include <sys/stat.h>

namespace quorvel::freedesktop {
namespace {

// Some file systems store times in steps of two seconds.
constexpr std::int64_t coarsestTime = 2'000'000'000;

std::int64_t nanoseconds(const timespec& time) {
    constexpr std::int64_t perSecond = 1'000'000'000;
    return static_cast<std::int64_t>(time.tv_sec) * perSecond + time.tv_nsec;
}

} // namespace

FileVersion versionOf(const struct stat& status) {
    return {status.st_dev, status.st_ino, status.st_size, nanoseconds(status.st_mtim),
            nanoseconds(status.st_ctim)};
}

std::int64_t fileClock() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return nanoseconds(now);
}

bool isSettled(const FileVersion& version, std::int64_t readAt) {
    return std::max(version.modified, version.changed) < readAt - coarsestTime;
}

} // namespace quorvel::freedesktop
