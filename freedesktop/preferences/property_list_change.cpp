#include "freedesktop/preferences/property_list_change.h"

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <system_error>
#include <utility>

#include <unistd.h>

#include "base/translatable_text.h"
#include "freedesktop/io/file_replacement.h"
#include "freedesktop/io/folder_lock.h"
#include "freedesktop/language/messages.h"
#include "freedesktop/preferences/reported_property_list.h"

namespace quorvel::freedesktop {
namespace {

namespace fs = std::filesystem;

constexpr std::chrono::seconds longestWait(30);

Error cannotWrite(const std::string& path, const std::string& reason) {
    return {filled(translated("it cannot be written ({1})"), {reason}), path,
            translated("nothing was changed; check the permissions and the space of its folder")};
}

Result<void> makeFolder(const std::string& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    if (!error && !fs::is_directory(folder, error) && !error) {
        error = std::make_error_code(std::errc::not_a_directory);
    }
    if (error) {
        return Error{filled(translated("the folder cannot be made ({1})"), {error.message()}),
                     folder, translated("name another with --preferences")};
    }
    return {};
}

// The folder whose file is replaced: where the path is a link, that of its target.
std::string folderOfTarget(const std::string& path) {
    std::error_code error;
    const fs::path target = fs::canonical(path, error);
    return (error ? fs::path(path) : target).parent_path().string();
}

// A rename would replace a read-only file, too.
Result<void> checkWritable(const std::string& path) {
    if (::access(path.c_str(), W_OK) != 0 && errno != ENOENT) {
        return cannotWrite(path, std::generic_category().message(errno));
    }
    return {};
}

Result<void> editFile(const std::string& path, const PropertyListEdit& edit) {
    const auto bytes = readListBytes(path);
    if (!bytes) {
        return bytes.error();
    }
    auto edited = edit(*bytes);
    if (!edited) {
        Error error = edited.error();
        error.where = error.where.empty() ? path : error.where;
        return error;
    }
    if (!*edited) {
        return {};
    }
    if (const Result<void> writable = checkWritable(path); !writable) {
        return writable;
    }
    const auto replaced = replaceFile(path, **edited, Durability::survivesPowerLoss);
    return replaced ? Result<void>() : cannotWrite(path, replaced.error().what);
}

} // namespace

Result<void> changePropertyListFile(const std::string& path, const PropertyListEdit& edit) {
    if (const auto made = makeFolder(fs::path(path).parent_path().string()); !made) {
        return made;
    }
    const std::string folder = folderOfTarget(path);
    const auto lock = FolderLock::take(folder, longestWait);
    if (!lock) {
        return Error{translated("another program is changing it"), path,
                     translated("try again later")};
    }
    removeAbandonedFiles(folder);
    return editFile(path, edit);
}

} // namespace quorvel::freedesktop
