#include "app/window_start.h"

#include <cerrno>
#include <cstring>
#include <string>
#include <unistd.h>

#include "freedesktop/bundle/program_folders.h"
#include "freedesktop/language/catalogs.h"

namespace quorvel::app {

Failure replaceByWindowProgram(char* const* argv) {
    const std::string program = freedesktop::programFolders().window;
    freedesktop::restoreUsersLanguageVariable();
    ::execv(program.c_str(), argv);
    return operationFailure(
        {"the window's program '" + program + "' cannot be started (" + std::strerror(errno) + ")",
         {},
         "install the program again"});
}

} // namespace quorvel::app
