// What an application is given when it is started.
#pragma once

#include <string>
#include <vector>

namespace quorvel::freedesktop {

// Without links and arguments, the application just comes to the front.
struct LaunchArguments {
    std::vector<std::string> links; // in the place of files on the command line
    // Appended to the command line. With any, the program is started instead of activated.
    std::vector<std::string> arguments;
    std::string activationToken; // empty: none
};

} // namespace quorvel::freedesktop
