#include "freedesktop/io/user_folder.h"

#include <cstdlib>

namespace quorvel::freedesktop {

namespace {

std::filesystem::path environmentPath(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

} // namespace

std::filesystem::path userFolder(const char* variable, const char* nameAtHome) {
    std::filesystem::path folder = environmentPath(variable);
    if (!folder.is_absolute()) {
        folder = environmentPath("HOME") / nameAtHome;
    }
    return folder / "quorvel";
}

} // namespace quorvel::freedesktop
