#include "app/window_start.h"

#include <cerrno>
#include <cstring>
#include <string>
#include <unistd.h>

#include "freedesktop/bundle/program_folders.h"
#include "freedesktop/language/catalogs.h"
#include "freedesktop/language/messages.h"

namespace quorvel::app {

using freedesktop::translated;

Failure replaceByWindowProgram(char* const* argv) {
    const std::string program = freedesktop::programFolders().window;
    freedesktop::restoreUsersLanguageVariable();
    ::execv(program.c_str(), argv);
    const std::string reason = std::strerror(errno);
    return operationFailure(
        {filled(translated("the window's program '{1}' cannot be started ({2})"),
                {program, reason}),
         {},
         translated("install the program again")});
}

} // namespace quorvel::app
