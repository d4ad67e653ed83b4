// How the agenda's window lies on the desktop: as a plain window, or as a layer.
#pragma once

#include <memory>

#include <gtk/gtk.h>

#include "base/result.h"
#include "platform/geometry.h"
#include "shells/window/agenda_window_options.h"

namespace quorvel::window {

// Belongs to the thread of the toolkit. The window outlives it.
class WindowPlacement {
public:
    virtual ~WindowPlacement() = default;

    // Before the window is realized.
    virtual void prepare(GtkWindow* window) = 0;
    // The content's size, in points; also before the window appears.
    virtual void resize(GtkWindow* window, platform::CGSize size) = 0;
    // Null: the desktop chooses it.
    virtual GdkMonitor* monitor() const = 0;
    // Of a window on an output that has that much for windows.
    virtual platform::CGFloat greatestHeight(platform::CGFloat available) const = 0;
    virtual bool canBeMoved() const = 0;
    virtual bool hasHeader() const { return false; }
    // What the user has chosen, before the window is destroyed.
    virtual void store(GtkWindow* /*window*/) {}
};

// After startToolkit(). An error where the display has no layers, or no output of that name.
Result<std::unique_ptr<WindowPlacement>> makeWindowPlacement(const AgendaWindowOptions& options);

} // namespace quorvel::window
