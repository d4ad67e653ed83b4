// Turns the options of a layer into plain values.
#pragma once

#include <optional>

#include "app/command_line.h"
#include "app/failure.h"
#include "shells/window/layer_options.h"

namespace quorvel::app {

// Absent without --layer, which all the others need.
CommandResult<std::optional<window::LayerOptions>> layerOf(const CommandLine& line);

} // namespace quorvel::app
