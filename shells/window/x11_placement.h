// A layer on an X11 desktop: the window manager's hints put the window below or above the others,
// on every workspace and out of the lists of windows, at a place of its own.
#pragma once

#include "freedesktop/glib/handles.h"
#include "shells/window/layer_options.h"
#include "shells/window/window_placement.h"

namespace quorvel::window {

bool isX11Display();

class X11Placement final : public WindowPlacement {
public:
    X11Placement(LayerOptions options, GdkMonitor* monitor);
    void prepare(GtkWindow* window) override;
    void resize(GtkWindow* window, platform::CGSize size) override;
    GdkMonitor* monitor() const override;
    platform::CGFloat greatestHeight(platform::CGFloat available) const override {
        return heightBetweenMargins(m_options, available);
    }
    bool canBeMoved() const override { return false; }

private:
    LayerOptions m_options;
    freedesktop::ObjectHandle<GdkMonitor> m_monitor; // may be null
};

} // namespace quorvel::window
