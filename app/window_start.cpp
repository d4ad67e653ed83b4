#include "app/window_start.h"

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <unistd.h>

#include "freedesktop/bundle/program_folders.h"

namespace quorvel::app {

int becomeWindowProgram(char* const* argv) {
    const std::string program = freedesktop::programFolders().window;
    ::execv(program.c_str(), argv);
    throw std::runtime_error("the window's program '" + program + "' cannot be started (" +
                             std::strerror(errno) + "): install the program again");
}

} // namespace quorvel::app
