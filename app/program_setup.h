// What the command line asks for, checked and turned into what the commands are made of.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/command_line.h"
#include "freedesktop/freedesktop_platform.h"
#include "platform/ui_color.h"
#include "shells/headless/script.h"

namespace quorvel::app {

struct ProgramSetup {
    freedesktop::FreedesktopOptions platform;
    std::string bundle; // the folder
    std::vector<headless::Step> steps;
    std::optional<platform::UIColor> backdrop; // absent: transparent
};

// Wrong usage is found before anything is read or written. Throws headless::UsageError, and
// std::runtime_error for what cannot be read or written.
ProgramSetup setUp(const CommandLine& line);

} // namespace quorvel::app
