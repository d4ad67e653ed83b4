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

std::string errorText(int error) {
    return std::generic_category().message(error);
}

// 0, or the error.
int writeAll(int descriptor, std::string_view contents) {
    while (!contents.empty()) {
        const ssize_t count = ::write(descriptor, contents.data(), contents.size());
        if (count >= 0)
            contents.remove_prefix(static_cast<std::size_t>(count));
        else if (errno != EINTR)
            return errno;
    }
    return 0;
}

int writeAndClose(FileDescriptor& file, std::string_view contents) {
    const int written = writeAll(file.get(), contents);
    const int closed = file.close();
    return written != 0 ? written : closed;
}

mode_t permissionsOfNewFiles() {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

int writeInPlace(const std::string& path, std::string_view contents) {
    FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
    return file.isOpen() ? writeAndClose(file, contents) : errno;
}

int writeBeside(const std::string& path, std::string_view contents, mode_t permissions) {
    std::string temporary = path + ".XXXXXX";
    FileDescriptor file(::mkostemp(temporary.data(), O_CLOEXEC));
    if (!file.isOpen())
        return errno;
    int error = ::fchmod(file.get(), permissions) == 0 ? 0 : errno;
    if (const int written = writeAndClose(file, contents); error == 0)
        error = written;
    if (error == 0 && ::rename(temporary.c_str(), path.c_str()) != 0)
        error = errno;
    if (error != 0)
        ::unlink(temporary.c_str());
    return error;
}

int replace(const std::string& path, std::string_view contents) {
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0)
        return errno == ENOENT ? writeBeside(path, contents, permissionsOfNewFiles()) : errno;
    if (S_ISDIR(status.st_mode))
        return EISDIR;
    if (!S_ISREG(status.st_mode))
        return writeInPlace(path, contents);
    std::error_code error;
    const std::filesystem::path target = std::filesystem::canonical(path, error);
    return error ? error.value() : writeBeside(target.string(), contents, status.st_mode & 0777);
}

} // namespace

std::optional<std::string> replaceFile(const std::string& path, std::string_view contents) {
    const int error = replace(path, contents);
    return error == 0 ? std::nullopt : std::optional(errorText(error));
}

} // namespace quorvel::freedesktop
