#include "shells/window/window_placement.h"

#include <utility>

#include "shells/window/layer_shell_placement.h"
#include "shells/window/outputs.h"
#include "shells/window/x11_placement.h"

namespace quorvel::window {

namespace {

class PlainPlacement final : public WindowPlacement {
public:
    explicit PlainPlacement(bool isDecorated)
        : m_isDecorated(isDecorated) {}
    void prepare(GtkWindow* window) override {
        gtk_window_set_decorated(window, m_isDecorated ? TRUE : FALSE);
    }
    void resize(GtkWindow* window, platform::CGSize size) override {
        gtk_window_resize(window, static_cast<int>(size.width), static_cast<int>(size.height));
    }
    GdkMonitor* monitor() const override { return nullptr; }
    platform::CGFloat greatestHeight(platform::CGFloat available) const override {
        return available;
    }
    bool canBeMoved() const override { return true; }

private:
    bool m_isDecorated;
};

} // namespace

Result<std::unique_ptr<WindowPlacement>> makeWindowPlacement(const AgendaWindowOptions& options) {
    if (!options.layer) {
        return std::unique_ptr<WindowPlacement>(
            std::make_unique<PlainPlacement>(options.isDecorated));
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
