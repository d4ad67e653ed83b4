#include "freedesktop/io/regular_file.h"
#include "base/translatable_text.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/translatable_text.h"

namespace quorvel::freedesktop {
namespace {

using MaybeBytes = std::optional<std::vector<std::byte>>;

Error tooLarge() {
    return {translatable("it is too large"), {}, {}};
}

Error systemError(const std::error_code& error) {
    return {error.message(), {}, {}};
}

std::error_code lastError() {
    return {errno, std::generic_category()};
}

// Reads to the end of a file that had at most `most` bytes when it was opened.
Result<MaybeBytes> readAll(const RegularFile& file, std::size_t most) {
    // One byte more distinguishes the end of the file from a file that grows meanwhile.
    std::vector<std::byte> bytes(static_cast<std::size_t>(file.size()) + 1);
    std::size_t size = 0;
    while (true) {
        const auto count =
            file.read(reinterpret_cast<char*>(bytes.data()) + size, bytes.size() - size);
        if (!count) {
            return systemError(count.error());
        }
        size += *count;
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

Result<RegularFile, std::error_code> RegularFile::open(const std::string& path) {
    FileDescriptor descriptor(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status {};
    if (!descriptor.isOpen() || ::fstat(descriptor.get(), &status) != 0) {
        return lastError();
    }
    if (!S_ISREG(status.st_mode)) {
        return std::make_error_code(std::errc::invalid_argument);
    }
    return RegularFile(std::move(descriptor), versionOf(status));
}

bool RegularFile::isUnchanged() const {
    struct stat status {};
    return ::fstat(m_descriptor.get(), &status) == 0 && versionOf(status) == m_version;
}

Result<std::size_t, std::error_code> RegularFile::read(char* place, std::size_t size) const {
    std::size_t total = 0;
    while (total < size) {
        const ssize_t count = ::read(m_descriptor.get(), place + total, size - total);
        if (count > 0) {
            total += static_cast<std::size_t>(count);
        } else if (count == 0) {
            break;
        } else if (errno != EINTR) {
            return lastError();
        }
    }
    return total;
}

void RegularFile::skipTo(std::size_t place) const {
    ::lseek(m_descriptor.get(), static_cast<off_t>(place), SEEK_SET);
}

Result<MaybeBytes> readRegularFile(const std::string& path, std::size_t most) {
    if (path.find('\0') != std::string::npos) {
        return MaybeBytes();
    }
    const auto file = RegularFile::open(path);
    if (file) {
        return file->size() > most ? Result<MaybeBytes>(tooLarge()) : readAll(*file, most);
    }
    const std::error_code error = file.error();
    if (error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory) {
        return MaybeBytes();
    }
    if (error == std::errc::invalid_argument) {
        return Error{translatable("it is not a regular file"), {}, {}};
    }
    return systemError(error);
}

} // namespace quorvel::freedesktop
