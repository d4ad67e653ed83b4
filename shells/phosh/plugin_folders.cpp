#include "shells/phosh/plugin_folders.h"

namespace quorvel::phosh {

// After a build, the plugin's folder is in the one of the programs.
freedesktop::ProgramFolders pluginFolders() {
    return freedesktop::programFoldersOfLibrary(reinterpret_cast<const void*>(&pluginFolders),
                                                QUORVEL_BUILT_COMMANDS_FROM_PLUGIN,
                                                QUORVEL_COMMANDS_FROM_PLUGIN);
}

} // namespace quorvel::phosh
