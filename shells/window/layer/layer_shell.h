// What the module around the layer shell's library does for the window.
#pragma once

#include <gtk/gtk.h>

#include "shells/window/layer_options.h"

namespace quorvel::window {

struct LayerShell {
    bool (*isSupported)(); // by the compositor of the default display
    // Before the window is realized. A null monitor leaves the choice to the compositor.
    void (*prepare)(GtkWindow* window, const LayerOptions& options, GdkMonitor* monitor);
};

// The module's one symbol; what it returns lives as long as the process.
using LayerShellFunction = const LayerShell* (*)();
inline constexpr const char* layerShellSymbol = "quorvelLayerShell";

} // namespace quorvel::window
