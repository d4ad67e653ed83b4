#include "freedesktop/io/file_replacement.h"

#include <cerrno>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "freedesktop/io/file_descriptor.h"

namespace quorvel::freedesktop {

namespace {

using Outcome = Result<void, std::error_code>;

std::error_code lastError() {
    return {errno, std::generic_category()};
}

Outcome writeAll(int descriptor, std::string_view contents) {
    while (!contents.empty()) {
        const ssize_t count = ::write(descriptor, contents.data(), contents.size());
        if (count >= 0) {
            contents.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            return lastError();
        }
    }
    return {};
}

Outcome writeAndClose(FileDescriptor& file, std::string_view contents) {
    Outcome written = writeAll(file.get(), contents);
    Outcome closed = file.close();
    return written ? closed : written;
}

mode_t permissionsOfNewFiles() {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

Outcome writeInPlace(const std::string& path, std::string_view contents) {
    FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
    return file.isOpen() ? writeAndClose(file, contents) : lastError();
}

Outcome writeWithPermissions(FileDescriptor& file, std::string_view contents, mode_t permissions) {
    if (::fchmod(file.get(), permissions) != 0) {
        return lastError();
    }
    return writeAndClose(file, contents);
}

Outcome renameOver(const std::string& from, const std::string& to) {
    return ::rename(from.c_str(), to.c_str()) == 0 ? Outcome() : lastError();
}

Outcome writeBeside(const std::string& path, std::string_view contents, mode_t permissions) {
    std::string temporary = path + ".XXXXXX";
    FileDescriptor file(::mkostemp(temporary.data(), O_CLOEXEC));
    if (!file.isOpen()) {
        return lastError();
    }
    Outcome outcome = writeWithPermissions(file, contents, permissions);
    if (outcome) {
        outcome = renameOver(temporary, path);
    }
    if (!outcome) {
        ::unlink(temporary.c_str());
    }
    return outcome;
}

Outcome replace(const std::string& path, std::string_view contents) {
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0) {
        return errno == ENOENT ? writeBeside(path, contents, permissionsOfNewFiles()) : lastError();
    }
    if (S_ISDIR(status.st_mode)) {
        return std::make_error_code(std::errc::is_a_directory);
    }
    if (!S_ISREG(status.st_mode)) {
        return writeInPlace(path, contents);
    }
    std::error_code error;
    const std::filesystem::path target = std::filesystem::canonical(path, error);
    if (error) {
        return error;
    }
    return writeBeside(target.string(), contents, status.st_mode & 0777);
}

} // namespace

Result<void> replaceFile(const std::string& path, std::string_view contents) {
    const Outcome outcome = replace(path, contents);
    return outcome ? Result<void>() : Error{outcome.error().message(), {}, {}};
}

} // namespace quorvel::freedesktop
