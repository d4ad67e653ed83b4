#include "shells/window/plain_placement.h"

#include <utility>

#include "shells/window/x11_placement.h"

namespace quorvel::window {

namespace {

double now() {
    return static_cast<double>(g_get_monotonic_time()) / G_USEC_PER_SEC;
}

// The monitor of a stored position may be gone.
bool isOnMonitor(const WindowPosition& corner) {
    constexpr int header = 50; // points from the corner of the shadow to a place in the header
    const WindowPosition position{corner.x + header, corner.y + header};
    GdkDisplay* const display = gdk_display_get_default();
    for (int i = 0; i < gdk_display_get_n_monitors(display); ++i) {
        GdkRectangle area;
        gdk_monitor_get_workarea(gdk_display_get_monitor(display, i), &area);
        if (position.x >= area.x && position.x < area.x + area.width && position.y >= area.y &&
            position.y < area.y + area.height) {
            return true;
        }
    }
    return false;
}

// The desktop chose the size and the place of such a window, or there is none.
bool isManaged(GtkWindow* window) {
    constexpr GdkWindowState managedStates = static_cast<GdkWindowState>(
        GDK_WINDOW_STATE_MAXIMIZED | GDK_WINDOW_STATE_FULLSCREEN | GDK_WINDOW_STATE_TILED |
        GDK_WINDOW_STATE_ICONIFIED | GDK_WINDOW_STATE_WITHDRAWN);
    GdkWindow* const surface = gtk_widget_get_window(GTK_WIDGET(window));
    return surface == nullptr || (gdk_window_get_state(surface) & managedStates) != 0;
}

WindowSize sizeOf(GtkWindow* window) {
    WindowSize size;
    gtk_window_get_size(window, &size.width, &size.height);
    return size;
}

} // namespace

PlainPlacement::PlainPlacement(std::string geometryFile, bool hasFixedWidth)
    : m_geometryFile(std::move(geometryFile))
    , m_hasFixedWidth(hasFixedWidth) {}

void PlainPlacement::prepare(GtkWindow* window) {
    const WindowGeometry geometry =
        m_geometryFile.empty() ? WindowGeometry{} : readGeometry(m_geometryFile);
    if (!m_hasFixedWidth) {
        m_userSize = geometry.size;
    }
    if (geometry.position && isOnMonitor(*geometry.position)) {
        gtk_window_move(window, geometry.position->x, geometry.position->y);
    }
}

void PlainPlacement::resize(GtkWindow* window, platform::CGSize size) {
    const bool isFirst = !m_requestedSize;
    if (!isFirst && hasUserSize(window)) {
        return;
    }
    m_requestedSize = WindowSize{static_cast<int>(size.width), static_cast<int>(size.height)};
    m_requestedAt = now();
    const WindowSize& chosen = isFirst && m_userSize ? *m_userSize : *m_requestedSize;
    if (isFirst) {
        gtk_window_set_default_size(window, chosen.width, chosen.height);
    } else {
        gtk_window_resize(window, chosen.width, chosen.height);
    }
}

// Any size that was not requested; a new size takes effect a moment after the request.
bool PlainPlacement::hasUserSize(GtkWindow* window) const {
    constexpr double longestResize = 1; // seconds
    if (m_userSize || !m_requestedSize || now() - m_requestedAt < longestResize) {
        return m_userSize.has_value();
    }
    return sizeOf(window) != *m_requestedSize;
}

void PlainPlacement::store(GtkWindow* window) {
    if (m_geometryFile.empty() || isManaged(window)) {
        return;
    }
    WindowGeometry geometry;
    if (hasUserSize(window)) {
        geometry.size = sizeOf(window);
    }
    if (isX11Display()) { // Wayland shows no program where its windows are
        // That of the surface, with the shadow: prepare() moves a window that has none yet.
        geometry.position.emplace();
        gdk_window_get_position(gtk_widget_get_window(GTK_WIDGET(window)), &geometry.position->x,
                                &geometry.position->y);
    }
    if (geometry != readGeometry(m_geometryFile)) {
        writeGeometry(m_geometryFile, geometry);
    }
}

} // namespace quorvel::window
