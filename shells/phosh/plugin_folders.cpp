#include "shells/phosh/plugin_folders.h"

#include <filesystem>
#include <system_error>

#include <dlfcn.h>

namespace quorvel::phosh {

namespace fs = std::filesystem;

namespace {

fs::path folderOfPlugin() {
    Dl_info plugin{};
    const bool isFound = dladdr(reinterpret_cast<const void*>(&pluginFolders), &plugin) != 0;
    std::error_code error;
    const fs::path file =
        isFound ? fs::canonical(plugin.dli_fname, error) : fs::path(); // empty after an error
    return file.parent_path();
}

} // namespace

// After a build, the plugin's folder is in the one of the programs.
freedesktop::ProgramFolders pluginFolders() {
    const fs::path folder = folderOfPlugin();
    std::error_code error;
    const fs::path built = (folder / QUORVEL_BUILT_COMMANDS_FROM_PLUGIN).lexically_normal();
    return freedesktop::programFolders(
        (fs::exists(built / "Quorvel.bundle", error)
             ? built
             : (folder / QUORVEL_COMMANDS_FROM_PLUGIN).lexically_normal())
            .string());
}

} // namespace quorvel::phosh
