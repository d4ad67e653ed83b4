// What an application is given when it is started.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace quorvel::freedesktop {

// Without both, the application just comes to the front.
struct LaunchArguments {
    std::optional<std::string> link;    // takes the place of a file on the command line
    std::vector<std::string> arguments; // behind the program's own; not empty: do not activate over
                                        // the bus but start the program
};

} // namespace quorvel::freedesktop
