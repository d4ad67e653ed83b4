#include "freedesktop/bundle/program_folders.h"

#include <filesystem>
#include <system_error>

#include <dlfcn.h>

namespace quorvel::freedesktop {

namespace fs = std::filesystem;

namespace {

std::string besideOrInstalled(const fs::path& beside, const fs::path& installed) {
    std::error_code error;
    return (fs::exists(beside, error) ? beside : installed.lexically_normal()).string();
}

// The installation's folder of commands; `folder` is either of its folders of executables.
fs::path commandFolder(const fs::path& folder) {
    const fs::path commands = (folder / QUORVEL_RELATIVE_COMMAND_FOLDER).lexically_normal();
    const fs::path helpers = (commands / QUORVEL_RELATIVE_HELPER_FOLDER).lexically_normal();
    return helpers == folder ? commands : folder;
}

fs::path folderOfLibrary(const void* code) {
    Dl_info library{};
    std::error_code error;
    const fs::path file = dladdr(code, &library) != 0
                              ? fs::canonical(library.dli_fname, error) // empty after an error
                              : fs::path();
    return file.parent_path();
}

} // namespace

ProgramFolders programFolders(const std::string& executableFolder) {
    const fs::path folder(executableFolder);
    const fs::path commands = commandFolder(folder);
    return {
        besideOrInstalled(folder / "Quorvel.bundle",
                          commands / QUORVEL_RELATIVE_LIBRARY_FOLDER / "Quorvel.bundle"),
        besideOrInstalled(folder / "share/quorvel", commands / QUORVEL_RELATIVE_DATA_FOLDER),
        besideOrInstalled(folder / "quorvel-window",
                          commands / QUORVEL_RELATIVE_HELPER_FOLDER / "quorvel-window"),
        besideOrInstalled(folder / "quorvel", commands / "quorvel"),
        besideOrInstalled(folder / "quorvel-refresh",
                          commands / QUORVEL_RELATIVE_HELPER_FOLDER / "quorvel-refresh"),
        besideOrInstalled(folder / "quorvel-settings", commands / "quorvel-settings"),
        besideOrInstalled(folder / "quorvel-eds.so",
                          commands / QUORVEL_RELATIVE_LIBRARY_FOLDER / "quorvel-eds.so"),
        besideOrInstalled(folder / "quorvel-layer-shell.so",
                          commands / QUORVEL_RELATIVE_LIBRARY_FOLDER / "quorvel-layer-shell.so"),
        besideOrInstalled(folder / "quorvel-rendering.so",
                          commands / QUORVEL_RELATIVE_LIBRARY_FOLDER / "quorvel-rendering.so"),
        besideOrInstalled(folder / "share/locale", commands / QUORVEL_RELATIVE_CATALOG_FOLDER)};
}

ProgramFolders programFolders() {
    std::error_code error;
    const fs::path executable = fs::read_symlink("/proc/self/exe", error);
    return programFolders(error ? std::string(".") : executable.parent_path().string());
}

ProgramFolders programFoldersOfLibrary(const void* code, const std::string& builtCommands,
                                       const std::string& installedCommands) {
    const fs::path folder = folderOfLibrary(code);
    const fs::path built = (folder / builtCommands).lexically_normal();
    std::error_code error;
    const bool isBuilt = fs::exists(built / "Quorvel.bundle", error);
    return programFolders(
        (isBuilt ? built : (folder / installedCommands).lexically_normal()).string());
}

} // namespace quorvel::freedesktop
