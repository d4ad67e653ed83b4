#include "shells/window/agenda_window.h"

#include <exception>
#include <utility>

#include "freedesktop/bundle/loaded_bundle.h"
#include "freedesktop/freedesktop_platform.h"
#include "shells/gtk/key_command.h"
#include "shells/gtk/painting.h"
#include "shells/window/main_loop.h"

namespace quorvel::window {

using gtk::KeyCommand;
using platform::CGFloat;
using platform::CGRect;
using platform::CGSize;

namespace {

constexpr CGFloat cornerRadius = 12; // points
constexpr GdkWindowState hiddenStates =
    static_cast<GdkWindowState>(GDK_WINDOW_STATE_ICONIFIED | GDK_WINDOW_STATE_WITHDRAWN);

double frameTime() {
    return static_cast<double>(g_get_monotonic_time()) / G_USEC_PER_SEC;
}

// The monitor that shows the window or, before the window is shown, the one that will probably show
// it. Null where there is no monitor.
GdkMonitor* monitorOf(GtkWidget* window) {
    GdkDisplay* display = gdk_display_get_default();
    GdkWindow* surface = window != nullptr ? gtk_widget_get_window(window) : nullptr;
    if (surface != nullptr) {
        return gdk_display_get_monitor_at_window(display, surface);
    }
    GdkMonitor* primary = gdk_display_get_primary_monitor(display);
    return primary != nullptr ? primary : gdk_display_get_monitor(display, 0);
}

} // namespace

template <class Work>
void AgendaWindow::guarded(Work work) noexcept {
    try {
        work();
    } catch (...) {
        m_loop.fail(std::current_exception());
    }
}

AgendaWindow::AgendaWindow(freedesktop::FreedesktopPlatform& platform,
                           const freedesktop::LoadedBundle& bundle, AgendaWindowOptions options,
                           std::unique_ptr<WindowPlacement> placement, MainLoop& loop)
    : m_platform(platform)
    , m_options(std::move(options))
    , m_placement(std::move(placement))
    , m_loop(loop)
    , m_host(bundle, platform.platform(),
             {m_options.controllerName, m_options.width,
              [this] {
                  return shells::CalendarState{m_platform.hasReadableCalendars(),
                                               m_platform.areCalendarsLate(),
                                               m_platform.unreadableCalendars()};
              },
              frameTime})
    , m_agenda(*this) {
    m_agenda.setContent(m_platform, m_host);
}

AgendaWindow::~AgendaWindow() {
    if (m_window != nullptr) {
        g_signal_handlers_disconnect_by_data(gtk_widget_get_screen(m_window), this);
        gtk_widget_destroy(m_window);
        guarded([this] { m_agenda.hide(); });
    }
}

void AgendaWindow::makeWindow() {
    m_window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    gtk_window_set_title(GTK_WINDOW(m_window), "Quorvel");
    gtk_window_set_role(GTK_WINDOW(m_window), "agenda");
    m_placement->prepare(GTK_WINDOW(m_window));
    // The theme must not paint behind the backdrop.
    gtk_widget_set_app_paintable(m_window, TRUE);
    if (GdkVisual* visual = gdk_screen_get_rgba_visual(gtk_widget_get_screen(m_window))) {
        gtk_widget_set_visual(m_window, visual);
    }
    gtk_container_add(GTK_CONTAINER(m_window), m_agenda.widget());
}

void AgendaWindow::connectSignals() {
    using Painter = gboolean (*)(GtkWidget*, cairo_t*, AgendaWindow*);
    const Painter drawBegan = [](GtkWidget*, cairo_t* context, AgendaWindow* window) -> gboolean {
        window->guarded([&] { window->paintBackground(context); });
        return FALSE;
    };
    const Painter drawEnded = [](GtkWidget*, cairo_t* context, AgendaWindow* window) -> gboolean {
        window->guarded([&] { window->clearRoundedCorners(context); });
        return FALSE;
    };
    using KeyHandler = gboolean (*)(GtkWidget*, GdkEventKey*, AgendaWindow*);
    const KeyHandler keyPressed = [](GtkWidget*, GdkEventKey* event,
                                     AgendaWindow* window) -> gboolean {
        bool isTaken = false;
        window->guarded([&] { isTaken = window->handleKey(*event); });
        return isTaken ? GDK_EVENT_STOP : GDK_EVENT_PROPAGATE;
    };
    using ButtonHandler = gboolean (*)(GtkWidget*, GdkEventButton*, AgendaWindow*);
    const ButtonHandler buttonPressed = [](GtkWidget*, GdkEventButton* event,
                                           AgendaWindow* window) -> gboolean {
        bool isTaken = false;
        window->guarded([&] { isTaken = window->handleButton(*event); });
        return isTaken ? GDK_EVENT_STOP : GDK_EVENT_PROPAGATE;
    };
    using CloseHandler = gboolean (*)(GtkWidget*, GdkEvent*, AgendaWindow*);
    const CloseHandler closed = [](GtkWidget*, GdkEvent*, AgendaWindow* window) -> gboolean {
        window->m_loop.quit();
        return GDK_EVENT_STOP; // the destructor destroys it
    };
    using StateHandler = gboolean (*)(GtkWidget*, GdkEventWindowState*, AgendaWindow*);
    const StateHandler stateChanged = [](GtkWidget*, GdkEventWindowState* event,
                                         AgendaWindow* window) -> gboolean {
        window->guarded([&] { window->handleStateChange(*event); });
        return GDK_EVENT_PROPAGATE;
    };
    using ScaleHandler = void (*)(GtkWidget*, GParamSpec*, AgendaWindow*);
    const ScaleHandler scaleChanged = [](GtkWidget*, GParamSpec*, AgendaWindow* window) {
        window->guarded([&] { window->updateScale(); });
    };
    g_signal_connect(m_window, "draw", G_CALLBACK(drawBegan), this);
    g_signal_connect_after(m_window, "draw", G_CALLBACK(drawEnded), this);
    g_signal_connect(m_window, "key-press-event", G_CALLBACK(keyPressed), this);
    g_signal_connect(m_window, "delete-event", G_CALLBACK(closed), this);
    g_signal_connect(m_window, "window-state-event", G_CALLBACK(stateChanged), this);
    g_signal_connect(m_agenda.widget(), "button-press-event", G_CALLBACK(buttonPressed), this);
    g_signal_connect(m_agenda.widget(), "notify::scale-factor", G_CALLBACK(scaleChanged), this);
}

void AgendaWindow::connectScreenSignals() {
    GdkScreen* screen = gtk_widget_get_screen(m_window);
    using ScreenHandler = void (*)(GdkScreen*, AgendaWindow*);
    const ScreenHandler compositedChanged = [](GdkScreen*, AgendaWindow* window) {
        gtk_widget_queue_draw(window->m_window);
    };
    const ScreenHandler monitorsChanged = [](GdkScreen*, AgendaWindow* window) {
        window->guarded([&] { window->limitHeightToMonitor(); });
    };
    g_signal_connect(screen, "composited-changed", G_CALLBACK(compositedChanged), this);
    g_signal_connect(screen, "monitors-changed", G_CALLBACK(monitorsChanged), this);
}

// Presenting.

// Presents the widget on the thread of the window: apart from the calendars, the platform belongs
// to one thread.
void AgendaWindow::show() {
    if (GdkMonitor* monitor = currentMonitor()) {
        m_platform.setScale(gdk_monitor_get_scale_factor(monitor));
    }
    limitHeightToMonitor();
    makeWindow();
    connectSignals();
    connectScreenSignals();
    m_agenda.show();
    m_placement->resize(GTK_WINDOW(m_window), m_agenda.wantedSize());
    gtk_widget_show_all(m_window);
    updateScale(); // the window may have appeared on another monitor
}

void AgendaWindow::onWantedSizeChanged() {
    if (m_window == nullptr) {
        return;
    }
    m_placement->resize(GTK_WINDOW(m_window), m_agenda.wantedSize());
}

void AgendaWindow::onFailure(std::exception_ptr failure) noexcept {
    m_loop.fail(std::move(failure));
}

// The window itself.

bool AgendaWindow::isTranslucent() const {
    return gdk_screen_is_composited(gtk_widget_get_screen(m_window)) != 0;
}

CGRect AgendaWindow::frameOfArea() const {
    GtkAllocation frame;
    gtk_widget_get_allocation(m_agenda.widget(), &frame);
    return platform::CGRectMake(frame.x, frame.y, frame.width, frame.height);
}

void AgendaWindow::paintBackground(cairo_t* context) {
    gtk::paintBackdrop(context, frameOfArea(), m_options.backdrop, isTranslucent());
}

void AgendaWindow::clearRoundedCorners(cairo_t* context) {
    if (isTranslucent() && !m_options.isDecorated) {
        gtk::clearCorners(context, frameOfArea(), cornerRadius);
    }
}

GdkMonitor* AgendaWindow::currentMonitor() const {
    GdkMonitor* chosen = m_placement->monitor();
    return chosen != nullptr ? chosen : monitorOf(m_window);
}

void AgendaWindow::limitHeightToMonitor() {
    if (GdkMonitor* monitor = currentMonitor()) {
        GdkRectangle workArea;
        gdk_monitor_get_workarea(monitor, &workArea);
        m_agenda.setGreatestHeight(m_placement->greatestHeight(workArea.height));
    }
}

void AgendaWindow::updateScale() {
    m_agenda.setScale(gtk_widget_get_scale_factor(m_agenda.widget()));
}

// Dismisses the widget when the window is minimized or withdrawn, and presents it when the window
// returns. The window's first appearance is not a return.
void AgendaWindow::handleStateChange(const GdkEventWindowState& event) {
    const bool wasHidden = ((event.new_window_state ^ event.changed_mask) & hiddenStates) != 0;
    const bool isHidden = (event.new_window_state & hiddenStates) != 0;
    const bool isFirst =
        ((event.new_window_state ^ event.changed_mask) & GDK_WINDOW_STATE_WITHDRAWN) != 0;
    if (isFirst || wasHidden == isHidden) {
        return;
    }
    if (isHidden) {
        m_agenda.hide();
    } else {
        limitHeightToMonitor();
        m_agenda.show();
    }
}

bool AgendaWindow::handleKey(const GdkEventKey& event) {
    const auto command = gtk::keyCommand(event.keyval, event.state);
    if (command == KeyCommand::close) {
        m_loop.quit();
        return true;
    }
    return command && m_agenda.run(*command);
}

// A press outside the rows moves the window.
bool AgendaWindow::handleButton(const GdkEventButton& event) {
    if (event.type != GDK_BUTTON_PRESS || event.button != GDK_BUTTON_PRIMARY ||
        m_host.isOnRow({event.x, event.y}) || !m_placement->canBeMoved()) {
        return false;
    }
    gtk_window_begin_move_drag(GTK_WINDOW(m_window), static_cast<int>(event.button),
                               static_cast<int>(event.x_root), static_cast<int>(event.y_root),
                               event.time);
    return true;
}

} // namespace quorvel::window
