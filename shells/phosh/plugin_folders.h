// Finds the program's files from the place of the plugin, as the running program is the shell.
#pragma once

#include "freedesktop/bundle/program_folders.h"

namespace quorvel::phosh {

freedesktop::ProgramFolders pluginFolders();

} // namespace quorvel::phosh
