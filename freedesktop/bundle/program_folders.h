// Where the program's own files lie, seen from its executable.
#pragma once

#include <string>

namespace quorvel::freedesktop {

struct ProgramFolders {
    std::string bundle;           // Quorvel.bundle
    std::string data;             // the pictures and the sample
    std::string window;           // the program that `quorvel show` becomes
    std::string dataServerModule; // what wraps the calendar server's library
};

// Beside the executable, as a build leaves them; else where an installation puts them, whether
// they are there or not. An installation has two folders of executables: that of the commands, and
// one for the programs that only they start.
ProgramFolders programFolders(const std::string& executableFolder);
// Of the running process.
ProgramFolders programFolders();

} // namespace quorvel::freedesktop
