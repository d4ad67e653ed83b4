#include "freedesktop/io/regular_file.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvel::freedesktop {
namespace {

FileContents failure(std::string problem) {
    return {std::nullopt, std::move(problem), false};
}

FileContents systemFailure(int error) {
    FileContents contents = failure(std::generic_category().message(error));
    contents.missing = error == ENOENT || error == ENOTDIR;
    return contents;
}

} // namespace

RegularFile::RegularFile(const std::string& path)
    : m_descriptor(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC)) {
    struct stat status {};
    if (!m_descriptor.isOpen() || ::fstat(m_descriptor.get(), &status) != 0) {
        m_error = errno;
    } else if (!S_ISREG(status.st_mode)) {
        m_error = EINVAL;
        m_isOtherKind = true;
    } else {
        m_version = versionOf(status);
    }
}

bool RegularFile::isUnchanged() const {
    struct stat status {};
    return ::fstat(m_descriptor.get(), &status) == 0 && versionOf(status) == m_version;
}

ReadResult RegularFile::read(char* place, std::size_t size) const {
    ReadResult result;
    while (result.size < size) {
        const ssize_t count = ::read(m_descriptor.get(), place + result.size, size - result.size);
        if (count > 0) {
            result.size += static_cast<std::size_t>(count);
        } else if (count == 0) {
            break;
        } else if (errno != EINTR) {
            result.error = errno;
            break;
        }
    }
    return result;
}

void RegularFile::rewind() const {
    ::lseek(m_descriptor.get(), 0, SEEK_SET);
}

FileContents readRegularFile(const std::string& path, std::size_t most) {
    if (path.find('\0') != std::string::npos) {
        return systemFailure(ENOENT);
    }
    const RegularFile file(path);
    if (file.isOtherKind()) {
        return failure("it is not a regular file");
    }
    if (!file.isOpen()) {
        return systemFailure(file.error());
    }
    if (file.size() > most) {
        return failure("it is too large");
    }
    // One byte more distinguishes the end of the file from a file that grows meanwhile.
    std::vector<std::byte> bytes(file.size() + 1);
    std::size_t size = 0;
    while (true) {
        const ReadResult result =
            file.read(reinterpret_cast<char*>(bytes.data()) + size, bytes.size() - size);
        size += result.size;
        if (result.error != 0) {
            return systemFailure(result.error);
        }
        if (size > most) {
            return failure("it is too large");
        }
        if (size < bytes.size()) {
            break;
        }
        bytes.resize(size * 2);
    }
    bytes.resize(size);
    return {std::move(bytes), {}, false};
}

} // namespace quorvel::freedesktop
