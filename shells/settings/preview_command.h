// The command that draws the preview.
#pragma once

#include <string>
#include <vector>

namespace quorvel::settings_pages {

struct PreviewCommand {
    std::string program;           // the path of `quorvel`
    std::string preferencesFolder; // of the settings to draw with
    bool isSample = false;         // false: the user's own calendars
    bool isDark = false;
    int scale = 1;        // pixels a point
    double textScale = 1; // as the desktop's user has set it
    double width = 320;   // points
    std::string picture;  // the file to draw to
};

// The program and its arguments.
std::vector<std::string> argumentsOf(const PreviewCommand& command);

// The reason in one line, of what a failed command wrote to standard error.
std::string failureReason(const std::string& errors);

} // namespace quorvel::settings_pages
