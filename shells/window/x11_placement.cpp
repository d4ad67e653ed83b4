#include "shells/window/x11_placement.h"

#include <cmath>
#include <string_view>
#include <utility>

namespace quorvel::window {

using freedesktop::share;
using platform::CGRect;
using platform::CGSize;

namespace {

// The background is the desktop itself; a window manager adds no frame to the other kind either.
GdkWindowTypeHint typeOf(Layer layer) {
    return layer == Layer::background ? GDK_WINDOW_TYPE_HINT_DESKTOP : GDK_WINDOW_TYPE_HINT_UTILITY;
}

bool isBelow(Layer layer) {
    return layer == Layer::background || layer == Layer::bottom;
}

CGRect workAreaOf(GdkMonitor* monitor) {
    GdkRectangle area;
    gdk_monitor_get_workarea(monitor, &area);
    return platform::CGRectMake(area.x, area.y, area.width, area.height);
}

GdkMonitor* firstMonitor() {
    GdkDisplay* display = gdk_display_get_default();
    GdkMonitor* primary = gdk_display_get_primary_monitor(display);
    return primary != nullptr ? primary : gdk_display_get_monitor(display, 0);
}

} // namespace

bool isX11Display() {
    return std::string_view(G_OBJECT_TYPE_NAME(gdk_display_get_default())) == "GdkX11Display";
}

X11Placement::X11Placement(LayerOptions options, GdkMonitor* monitor)
    : m_options(std::move(options)) {
    if (monitor != nullptr) {
        m_monitor = share(monitor);
    }
}

void X11Placement::prepare(GtkWindow* window) {
    gtk_window_set_decorated(window, FALSE);
    gtk_window_set_type_hint(window, typeOf(m_options.layer));
    gtk_window_set_keep_below(window, isBelow(m_options.layer) ? TRUE : FALSE);
    gtk_window_set_keep_above(window, isBelow(m_options.layer) ? FALSE : TRUE);
    gtk_window_set_skip_taskbar_hint(window, TRUE);
    gtk_window_set_skip_pager_hint(window, TRUE);
    gtk_window_set_focus_on_map(window, FALSE); // it takes the keyboard when it is clicked
    gtk_window_stick(window);
}

void X11Placement::resize(GtkWindow* window, CGSize size) {
    GdkMonitor* monitor = this->monitor();
    if (monitor == nullptr) {
        gtk_window_resize(window, static_cast<int>(size.width), static_cast<int>(size.height));
        return;
    }
    const CGRect frame = layerFrame(m_options, workAreaOf(monitor), size);
    gtk_window_resize(window, static_cast<int>(frame.size.width),
                      static_cast<int>(frame.size.height));
    gtk_window_move(window, static_cast<int>(std::lround(frame.origin.x)),
                    static_cast<int>(std::lround(frame.origin.y)));
}

GdkMonitor* X11Placement::monitor() const {
    return m_monitor ? m_monitor.get() : firstMonitor();
}

} // namespace quorvel::window
