// A layer of a Wayland compositor that has the layer shell. Its library is in a module that only
// `--layer` loads.
#pragma once

#include <memory>
#include <string>

#include "shells/window/layer_options.h"
#include "shells/window/window_placement.h"

namespace quorvel::window {

// `module` is the path of quorvel-layer-shell.so. The error is a module that cannot be loaded, or a
// compositor without layers.
Result<std::unique_ptr<WindowPlacement>> makeLayerShellPlacement(const std::string& module,
                                                                 const LayerOptions& options,
                                                                 GdkMonitor* monitor);

} // namespace quorvel::window
