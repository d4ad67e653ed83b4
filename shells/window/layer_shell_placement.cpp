#include "shells/window/layer_shell_placement.h"

#include <utility>

#include "freedesktop/glib/handles.h"
#include "freedesktop/io/module_function.h"
#include "freedesktop/language/messages.h"
#include "shells/window/layer/layer_shell.h"

namespace quorvel::window {

using freedesktop::share;
using freedesktop::translated;
using platform::CGSize;

namespace {

class LayerShellPlacement final : public WindowPlacement {
public:
    LayerShellPlacement(const LayerShell& shell, LayerOptions options, GdkMonitor* monitor)
        : m_shell(shell)
        , m_options(std::move(options)) {
        if (monitor != nullptr) {
            m_monitor = share(monitor);
        }
    }
    void prepare(GtkWindow* window) override {
        gtk_window_set_decorated(window, FALSE);
        m_shell.prepare(window, m_options, m_monitor.get());
    }
    // A layer takes the least size that its content asks for; the compositor determines a length
    // between two anchored edges.
    void resize(GtkWindow* window, CGSize size) override {
        const Edges& anchor = m_options.anchor;
        gtk_widget_set_size_request(
            GTK_WIDGET(window), anchor.left && anchor.right ? -1 : static_cast<int>(size.width),
            anchor.top && anchor.bottom ? -1 : static_cast<int>(size.height));
        gtk_window_resize(window, 1, 1);
    }
    GdkMonitor* monitor() const override { return m_monitor.get(); }
    platform::CGFloat greatestHeight(platform::CGFloat available) const override {
        return heightBetweenMargins(m_options, available);
    }
    bool canBeMoved() const override { return false; }

private:
    const LayerShell& m_shell;
    LayerOptions m_options;
    freedesktop::ObjectHandle<GdkMonitor> m_monitor; // may be null
};

Result<const LayerShell*> loadedLayerShell(const std::string& module) {
    const auto function = freedesktop::moduleFunction(module, layerShellSymbol);
    if (!function) {
        return Error{filled(translated("the layer shell's library cannot be loaded: {1}"),
                            {function.error()}),
                     {},
                     translated("install gtk-layer-shell, or start without --layer")};
    }
    return reinterpret_cast<LayerShellFunction>(*function)();
}

} // namespace

Result<std::unique_ptr<WindowPlacement>> makeLayerShellPlacement(const std::string& module,
                                                                 const LayerOptions& options,
                                                                 GdkMonitor* monitor) {
    const Result<const LayerShell*> shell = loadedLayerShell(module);
    if (!shell) {
        return shell.error();
    }
    if (!(*shell)->isSupported()) {
        return Error{
            translated("the compositor has no layers"), {}, translated("start without --layer")};
    }
    return std::unique_ptr<WindowPlacement>(
        std::make_unique<LayerShellPlacement>(**shell, options, monitor));
}

} // namespace quorvel::window
