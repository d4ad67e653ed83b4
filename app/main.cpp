// The program `quorvel`: it answers --version, hands `show` to the window's program, and loads the
// module with the commands for everything else. It names the files that it loads, so that the
// loader searches no folder for them.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include <dlfcn.h>
#include <unistd.h>

#include "app/version_text.h"
#include "app/window_start.h"
#include "freedesktop/bundle/library_search.h"
#include "freedesktop/bundle/program_folders.h"

namespace {

using namespace quorvel;
using RunCommand = int (*)(int argc, char** argv);

bool asksOnlyForVersion(int argc, char** argv) {
    return argc == 2 && std::string_view(argv[1]) == "--version";
}

// Written without a buffer, so that a failure leaves nothing behind: the commands report it.
bool printVersion() {
    const std::string_view text = app::versionText;
    return ::write(STDOUT_FILENO, text.data(), text.size()) == static_cast<ssize_t>(text.size());
}

bool asksForWindow(int argc, char** argv) {
    const auto isHelp = [](std::string_view argument) {
        return argument == "--help" || argument == "-h";
    };
    return argc > 1 && std::string_view(argv[1]) == "show" &&
           std::none_of(argv + 2, argv + argc, isHelp);
}

// Returns only where the window cannot be shown: the commands report why.
void replaceByWindow(const std::string& program, char** argv) {
    if (::access(program.c_str(), X_OK) == 0 && freedesktop::findLibrary(app::toolkitLibrary)) {
        ::execv(program.c_str(), argv);
    }
}

// A packager may install the library where the loader finds it by itself.
void loadPlatform(const std::string& file) {
    if (::access(file.c_str(), F_OK) == 0) {
        ::dlopen(file.c_str(), RTLD_NOW);
    }
}

RunCommand loadCommands(const std::string& file) {
    void* const module = ::dlopen(file.c_str(), RTLD_NOW);
    return module != nullptr ? reinterpret_cast<RunCommand>(::dlsym(module, "quorvelRunCommand"))
                             : nullptr;
}

} // namespace

int main(int argc, char** argv) {
    if (asksOnlyForVersion(argc, argv) && printVersion()) {
        return EXIT_SUCCESS;
    }
    const freedesktop::ProgramFolders& folders = freedesktop::programFolders();
    if (asksForWindow(argc, argv)) {
        replaceByWindow(folders.window, argv);
    }
    loadPlatform(folders.platformLibrary);
    const RunCommand run = loadCommands(folders.commandModule);
    if (run == nullptr) {
        const char* const reason = ::dlerror();
        std::fprintf(
            stderr,
            "quorvel: the part of Quorvel with the commands cannot be loaded (%s): install "
            "Quorvel again (on Debian the package quorvel)\n",
            reason != nullptr ? reason : folders.commandModule.c_str());
        return EXIT_FAILURE;
    }
    return run(argc, argv);
}
