#include "app/window_start.h"

#include <cerrno>
#include <cstring>
#include <string>
#include <unistd.h>

#include "freedesktop/bundle/library_search.h"
#include "freedesktop/bundle/program_folders.h"
#include "freedesktop/language/catalogs.h"
#include "freedesktop/language/messages.h"

namespace quorvel::app {

using freedesktop::translated;

namespace {

// Where the library is missing, the loader would end the window's program with a message of its
// own. A package may leave it to the user to install the library.
Result<void> checkToolkit() {
    if (const auto found = freedesktop::findLibrary(toolkitLibrary); !found) {
        return Error{
            filled(translated("the window's library cannot be loaded: {1}"), {found.error()}),
            {},
            translated("install GTK 3 (on Debian the package libgtk-3-0), or print the rows with "
                       "'quorvel agenda'")};
    }
    return {};
}

} // namespace

Failure replaceByWindowProgram(char* const* argv) {
    const std::string program = freedesktop::programFolders().window;
    if (::access(program.c_str(), X_OK) == 0) {
        if (const Result<void> checked = checkToolkit(); !checked) {
            return operationFailure(checked.error());
        }
    }
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
