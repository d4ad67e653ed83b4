// The program `quorvel`: it answers --version, and loads the module with the commands for
// everything else. It names the files that it loads, so that the loader searches no folder for
// them.
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include <dlfcn.h>
#include <unistd.h>

#include "app/version_text.h"
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
    const freedesktop::ProgramFolders folders = freedesktop::programFolders();
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
