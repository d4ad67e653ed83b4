#include "shells/window/window_placement.h"

#include <utility>

#include "shells/window/layer_shell_placement.h"
#include "shells/window/outputs.h"
#include "shells/window/plain_placement.h"
#include "shells/window/x11_placement.h"

namespace quorvel::window {

Result<std::unique_ptr<WindowPlacement>> makeWindowPlacement(const AgendaWindowOptions& options) {
    if (!options.layer) {
        return std::unique_ptr<WindowPlacement>(
            std::make_unique<PlainPlacement>(options.geometryFile, options.width.has_value()));
    }
    const Result<GdkMonitor*> monitor = outputNamed(options.layer->output);
    if (!monitor) {
        return monitor.error();
    }
    if (isX11Display()) {
        return std::unique_ptr<WindowPlacement>(
            std::make_unique<X11Placement>(*options.layer, *monitor));
    }
    return makeLayerShellPlacement(options.layerModule, *options.layer, *monitor);
}

} // namespace quorvel::window
