#include "freedesktop/io/regular_file.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvel::freedesktop {
namespace {

using MaybeBytes = std::optional<std::vector<std::byte>>;

Error tooLarge() {
    return {"it is too large", {}, {}};
}

Error systemError(int number) {
    return {std::generic_category().message(number), {}, {}};
}

// Reads to the end of the file.
Result<MaybeBytes> readAll(const RegularFile& file, std::size_t most) {
    // One byte more distinguishes the end of the file from a file that grows meanwhile.
    std::vector<std::byte> bytes(file.size() + 1);
    std::size_t size = 0;
    while (true) {
        const ReadResult result =
            file.read(reinterpret_cast<char*>(bytes.data()) + size, bytes.size() - size);
        size += result.size;
        if (result.error != 0) {
            return systemError(result.error);
        }
        if (size > most) {
            return tooLarge();
        }
        if (size < bytes.size()) {
            bytes.resize(size);
            return MaybeBytes(std::move(bytes));
        }
        bytes.resize(size * 2);
    }
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

Result<MaybeBytes> readRegularFile(const std::string& path, std::size_t most) {
    if (path.find('\0') != std::string::npos) {
        return MaybeBytes();
    }
    const RegularFile file(path);
    if (file.isOtherKind()) {
        return Error{"it is not a regular file", {}, {}};
    }
    if (file.error() == ENOENT || file.error() == ENOTDIR) {
        return MaybeBytes();
    }
    if (!file.isOpen()) {
        return systemError(file.error());
    }
    return file.size() > most ? tooLarge() : readAll(file, most);
}

} // namespace quorvel::freedesktop
