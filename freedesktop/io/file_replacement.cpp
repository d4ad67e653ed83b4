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

namespace fs = std::filesystem;
using Outcome = Result<void, std::error_code>;

// The names of new files until they are renamed.
constexpr std::string_view newFilePrefix = ".quorvel-new-";
constexpr std::size_t randomCharacters = 6;

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

Outcome synchronized(int descriptor) {
    return ::fsync(descriptor) == 0 ? Outcome() : lastError();
}

Outcome writeAndClose(FileDescriptor& file, std::string_view contents, Durability durability) {
    Outcome outcome = writeAll(file.get(), contents);
    if (outcome && durability == Durability::survivesPowerLoss) {
        outcome = synchronized(file.get());
    }
    Outcome closed = file.close();
    return outcome ? closed : outcome;
}

// Makes a rename in the folder last. Some file systems cannot do that.
void synchronizeFolder(const std::string& folder) {
    const FileDescriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    static_cast<void>(synchronized(descriptor.get()));
}

mode_t permissionsOfNewFiles() {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

Outcome writeInPlace(const std::string& path, std::string_view contents) {
    FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
    return file.isOpen() ? writeAndClose(file, contents, Durability::none) : lastError();
}

Outcome renameOver(const std::string& from, const std::string& to) {
    return ::rename(from.c_str(), to.c_str()) == 0 ? Outcome() : lastError();
}

// Only root may give a file to another user; for all others this changes nothing.
Outcome takeOver(int descriptor, const struct stat& old) {
    if (::fchown(descriptor, old.st_uid, old.st_gid) != 0 && errno != EPERM) {
        return lastError();
    }
    return ::fchmod(descriptor, old.st_mode & 0777) == 0 ? Outcome() : lastError();
}

// `old` is null where there is no file yet.
Outcome setOwnership(int descriptor, const struct stat* old) {
    if (old != nullptr) {
        return takeOver(descriptor, *old);
    }
    return ::fchmod(descriptor, permissionsOfNewFiles()) == 0 ? Outcome() : lastError();
}

std::string folderOf(const std::string& path) {
    const std::string folder = fs::path(path).parent_path().string();
    return folder.empty() ? "." : folder;
}

Outcome writeBeside(const std::string& path, std::string_view contents, const struct stat* old,
                    Durability durability) {
    const std::string folder = folderOf(path);
    std::string temporary = folder + '/' + std::string(newFilePrefix) + "XXXXXX";
    FileDescriptor file(::mkostemp(temporary.data(), O_CLOEXEC));
    if (!file.isOpen()) {
        return lastError();
    }
    Outcome outcome = setOwnership(file.get(), old);
    if (outcome) {
        outcome = writeAndClose(file, contents, durability);
    }
    if (outcome) {
        outcome = renameOver(temporary, path);
    }
    if (!outcome) {
        ::unlink(temporary.c_str());
    } else if (durability == Durability::survivesPowerLoss) {
        synchronizeFolder(folder);
    }
    return outcome;
}

// Where the links lead, also if there is no file.
Result<std::string, std::error_code> lastTarget(const std::string& path) {
    constexpr int mostLinks = 40; // as many as the system follows
    fs::path target = path;
    std::error_code error;
    for (int i = 0; i < mostLinks; ++i) {
        if (!fs::is_symlink(fs::symlink_status(target, error))) {
            return target.string();
        }
        const fs::path next = fs::read_symlink(target, error);
        if (error) {
            return error;
        }
        target = target.parent_path() / next;
    }
    return std::make_error_code(std::errc::too_many_symbolic_link_levels);
}

Outcome replaceMissing(const std::string& path, std::string_view contents, Durability durability) {
    const auto target = lastTarget(path);
    return target ? writeBeside(*target, contents, nullptr, durability) : target.error();
}

Outcome replace(const std::string& path, std::string_view contents, Durability durability) {
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0) {
        return errno == ENOENT ? replaceMissing(path, contents, durability) : lastError();
    }
    if (S_ISDIR(status.st_mode)) {
        return std::make_error_code(std::errc::is_a_directory);
    }
    if (!S_ISREG(status.st_mode)) {
        return writeInPlace(path, contents);
    }
    std::error_code error;
    const fs::path target = fs::canonical(path, error);
    return error ? error : writeBeside(target.string(), contents, &status, durability);
}

} // namespace

Result<void> replaceFile(const std::string& path, std::string_view contents,
                         Durability durability) {
    const Outcome outcome = replace(path, contents, durability);
    return outcome ? Result<void>() : Error{outcome.error().message(), {}, {}};
}

void removeAbandonedFiles(const std::string& folder) {
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
        const std::string name = entry.path().filename().string();
        if (name.starts_with(newFilePrefix) &&
            name.size() == newFilePrefix.size() + randomCharacters) {
            ::unlink(entry.path().c_str());
        }
    }
}

} // namespace quorvel::freedesktop
