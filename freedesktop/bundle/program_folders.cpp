#include "freedesktop/bundle/program_folders.h"

#include <filesystem>
#include <system_error>

#include <dlfcn.h>
#include <sys/auxv.h>

namespace quorvel::freedesktop {

namespace fs = std::filesystem;

namespace {

// The installation's folder of commands; `folder` is either of its folders of executables.
fs::path commandFolder(const fs::path& folder) {
    const fs::path commands = (folder / QUORVEL_RELATIVE_COMMAND_FOLDER).lexically_normal();
    const fs::path helpers = (commands / QUORVEL_RELATIVE_HELPER_FOLDER).lexically_normal();
    return helpers == folder ? commands : folder;
}

// As the process was started; relative to the folder that it was started in.
const char* nameOfExecution() {
    const auto address = ::getauxval(AT_EXECFN);
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the kernel passes it as a number
    return address != 0 ? reinterpret_cast<const char*>(address) : "";
}

fs::path folderOfLibrary(const void* code) {
    Dl_info library{};
    std::error_code error;
    const fs::path file = dladdr(code, &library) != 0
                              ? fs::canonical(library.dli_fname, error) // empty after an error
                              : fs::path();
    return file.parent_path();
}

std::string executableFolder() {
    std::error_code error;
    fs::path executable = fs::read_symlink("/proc/self/exe", error);
    if (error) { // there is no /proc, as in some containers
        executable = fs::canonical(nameOfExecution(), error);
    }
    return error ? std::string(".") : executable.parent_path().string();
}

constexpr const char* platformLibraryName =
    "libquorvel_platform.so." QUORVEL_PLATFORM_LIBRARY_VERSION;

ProgramFolders foldersOf(const fs::path& commands, const fs::path& helpers, const fs::path& modules,
                         const fs::path& platform, const fs::path& data, const fs::path& catalogs) {
    const auto file = [](const fs::path& folder, const char* name) {
        return (folder / name).lexically_normal().string();
    };
    return {file(modules, "Quorvel.bundle"),       data.lexically_normal().string(),
            file(helpers, "quorvel-window"),       file(commands, "quorvel"),
            file(helpers, "quorvel-refresh"),      file(commands, "quorvel-settings"),
            file(modules, "quorvel-eds.so"),       file(modules, "quorvel-layer-shell.so"),
            file(modules, "quorvel-rendering.so"), file(modules, "quorvel-desktop.so"),
            file(modules, "quorvel-command.so"),   file(platform, platformLibraryName),
            catalogs.lexically_normal().string()};
}

ProgramFolders builtFolders(const fs::path& folder) {
    return foldersOf(folder, folder, folder, folder / "platform", folder / "share/quorvel",
                     folder / "share/locale");
}

ProgramFolders installedFolders(const fs::path& commands) {
    return foldersOf(
        commands, commands / QUORVEL_RELATIVE_HELPER_FOLDER,
        commands / QUORVEL_RELATIVE_MODULE_FOLDER, commands / QUORVEL_RELATIVE_LIBRARY_FOLDER,
        commands / QUORVEL_RELATIVE_DATA_FOLDER, commands / QUORVEL_RELATIVE_CATALOG_FOLDER);
}

} // namespace

ProgramFolders programFolders(const std::string& executableFolder) {
    const fs::path folder(executableFolder);
    std::error_code error;
    return fs::exists(folder / "Quorvel.bundle", error) ? builtFolders(folder)
                                                        : installedFolders(commandFolder(folder));
}

const ProgramFolders& programFolders() {
    static const ProgramFolders folders = programFolders(executableFolder());
    return folders;
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
