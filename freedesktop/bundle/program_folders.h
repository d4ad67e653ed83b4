// Finds the program's own files relative to its executable.
#pragma once

#include <string>

namespace quorvel::freedesktop {

struct ProgramFolders {
    std::string bundle;           // Quorvel.bundle
    std::string data;             // pictures and the sample calendars
    std::string window;           // the program that `quorvel show` executes
    std::string command;          // the program `quorvel`
    std::string refresh;          // the program that fetches calendars from servers
    std::string settings;         // the program `quorvel-settings`; it need not be installed
    std::string dataServerModule; // the module that wraps the calendar server's library
    std::string layerModule;      // the module that wraps the layer shell's library
    std::string renderingModule;  // the module that wraps the libraries of texts and pictures
    std::string desktopModule;    // the module that wraps the library that asks the desktop
    std::string commandModule;    // the module that the program `quorvel` consists of
    std::string platformLibrary;  // the library that hosts and bundles share
    std::string catalogs;         // translations: LANGUAGE/LC_MESSAGES/quorvel.mo
};

// All paths are beside the executable if the bundle is there, as after a build, else where an
// installation puts them. An installation has two folders of executables: one for the commands, and
// one for the programs that only the commands start.
ProgramFolders programFolders(const std::string& executableFolder);
// For the running process. Looked up once, as its executable stays where it is. On any thread.
const ProgramFolders& programFolders();
// For a library or module in a program of others. `code`: any function in it. The other two are the
// folders of the commands, seen from the library's own, after a build and in an installation.
ProgramFolders programFoldersOfLibrary(const void* code, const std::string& builtCommands,
                                       const std::string& installedCommands);

} // namespace quorvel::freedesktop
