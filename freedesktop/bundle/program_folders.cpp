#include "freedesktop/bundle/program_folders.h"

#include <filesystem>
#include <system_error>

namespace quorvel::freedesktop {

namespace fs = std::filesystem;

namespace {

std::string besideOrInstalled(const fs::path& beside, const fs::path& installed) {
    std::error_code error;
    return (fs::is_directory(beside, error) ? beside : installed.lexically_normal()).string();
}

} // namespace

ProgramFolders programFolders(const std::string& executableFolder) {
    const fs::path folder(executableFolder);
    return {besideOrInstalled(folder / "Quorvel.bundle",
                              folder / QUORVEL_RELATIVE_LIBRARY_FOLDER / "Quorvel.bundle"),
            besideOrInstalled(folder / "share/quorvel", folder / QUORVEL_RELATIVE_DATA_FOLDER)};
}

ProgramFolders programFolders() {
    std::error_code error;
    const fs::path executable = fs::read_symlink("/proc/self/exe", error);
    return programFolders(error ? std::string(".") : executable.parent_path().string());
}

} // namespace quorvel::freedesktop
