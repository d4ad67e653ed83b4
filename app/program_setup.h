// Checks the values of the command line and turns them into what the commands work with.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/command_line.h"
#include "app/failure.h"
#include "freedesktop/freedesktop_platform.h"
#include "platform/ui_color.h"
#include "shells/headless/script.h"
#include "shells/widget/appearance.h"
#include "shells/window/layer_options.h"

namespace quorvel::app {

struct ProgramSetup {
    freedesktop::FreedesktopOptions platform;
    std::string bundleFolder;
    std::vector<headless::Step> steps;
    shells::Appearance appearance;
    std::optional<platform::UIColor> backdrop; // absent: transparent
    std::optional<window::LayerOptions> layer; // absent: a plain window
    std::string layerModule;
};

// Checks every value before a file is read or written. The desktop is not null.
CommandResult<ProgramSetup> makeProgramSetup(const CommandLine& line,
                                             const freedesktop::RenderingFactory& makeRendering,
                                             std::shared_ptr<freedesktop::Desktop> desktop);

} // namespace quorvel::app
