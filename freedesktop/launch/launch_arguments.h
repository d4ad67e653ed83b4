// What an application is given when it is started.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace quorvel::freedesktop {

// Without both, the application just comes to the front.
struct LaunchArguments {
    std::optional<std::string> link; // replaces the file on the command line
    // Appended to the command line. With any, the program is started instead of activated.
    std::vector<std::string> arguments;
};

} // namespace quorvel::freedesktop
