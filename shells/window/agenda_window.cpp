#include "shells/window/agenda_window.h"

#include <exception>
#include <utility>

#include "freedesktop/bundle/loaded_bundle.h"
#include "freedesktop/freedesktop_platform.h"
#include "platform/screen.h"
#include "shells/live/live_presenter.h"
#include "shells/window/agenda_area.h"
#include "shells/window/key_command.h"
#include "shells/window/main_loop.h"
#include "shells/window/painting.h"

namespace quorvel::window {

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

// The monitor that the window is on, or where it is not on any yet, the one that it is likely to
// come up on. Null where there is none at all.
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
                           MainLoop& loop)
    : m_platform(platform)
    , m_options(std::move(options))
    , m_loop(loop)
    , m_host(bundle, platform.platform(),
             {m_options.controllerName, m_options.width, m_options.noCalendarsText,
              [this] { return m_platform.hasReadableCalendars(); }, frameTime}) {}

AgendaWindow::~AgendaWindow() {
    m_presenter.reset();
    m_host.setObserver(nullptr);
    if (m_window != nullptr) {
        setAgendaHost(m_area, nullptr);
        g_signal_handlers_disconnect_by_data(gtk_widget_get_screen(m_window), this);
        gtk_widget_destroy(m_window);
        guarded([this] { m_host.dismiss(); });
    }
}

void AgendaWindow::makeWindow() {
    m_window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    gtk_window_set_title(GTK_WINDOW(m_window), "Quorvel");
    gtk_window_set_role(GTK_WINDOW(m_window), "agenda");
    gtk_window_set_decorated(GTK_WINDOW(m_window), m_options.isDecorated ? TRUE : FALSE);
    // The backdrop is ours, whatever the theme.
    gtk_widget_set_app_paintable(m_window, TRUE);
    if (GdkVisual* visual = gdk_screen_get_rgba_visual(gtk_widget_get_screen(m_window))) {
        gtk_widget_set_visual(m_window, visual);
    }
    m_area = makeAgendaArea(m_platform.textLines(), [this](std::exception_ptr failure) {
        m_loop.fail(std::move(failure));
    });
    gtk_container_add(GTK_CONTAINER(m_window), m_area);
}

void AgendaWindow::connectSignals() {
    using Painter = gboolean (*)(GtkWidget*, cairo_t*, AgendaWindow*);
    const Painter painted = [](GtkWidget*, cairo_t* context, AgendaWindow* window) -> gboolean {
        window->guarded([&] { window->paintBehind(context); });
        return FALSE;
    };
    const Painter paintedAll = [](GtkWidget*, cairo_t* context, AgendaWindow* window) -> gboolean {
        window->guarded([&] { window->paintAbove(context); });
        return FALSE;
    };
    using KeyHandler = gboolean (*)(GtkWidget*, GdkEventKey*, AgendaWindow*);
    const KeyHandler keyPressed = [](GtkWidget*, GdkEventKey* event,
                                     AgendaWindow* window) -> gboolean {
        bool isTaken = false;
        window->guarded([&] { isTaken = window->pressKey(*event); });
        return isTaken ? GDK_EVENT_STOP : GDK_EVENT_PROPAGATE;
    };
    using ButtonHandler = gboolean (*)(GtkWidget*, GdkEventButton*, AgendaWindow*);
    const ButtonHandler buttonPressed = [](GtkWidget*, GdkEventButton* event,
                                           AgendaWindow* window) -> gboolean {
        bool isTaken = false;
        window->guarded([&] { isTaken = window->pressButton(*event); });
        return isTaken ? GDK_EVENT_STOP : GDK_EVENT_PROPAGATE;
    };
    using CloseHandler = gboolean (*)(GtkWidget*, GdkEvent*, AgendaWindow*);
    const CloseHandler closed = [](GtkWidget*, GdkEvent*, AgendaWindow* window) -> gboolean {
        window->m_loop.quit();
        return GDK_EVENT_STOP; // it is destroyed with this object
    };
    using StateHandler = gboolean (*)(GtkWidget*, GdkEventWindowState*, AgendaWindow*);
    const StateHandler stateChanged = [](GtkWidget*, GdkEventWindowState* event,
                                         AgendaWindow* window) -> gboolean {
        window->guarded([&] { window->changeState(*event); });
        return GDK_EVENT_PROPAGATE;
    };
    using ScaleHandler = void (*)(GtkWidget*, GParamSpec*, AgendaWindow*);
    const ScaleHandler scaleChanged = [](GtkWidget*, GParamSpec*, AgendaWindow* window) {
        window->guarded([&] { window->changeScale(); });
    };
    g_signal_connect(m_window, "draw", G_CALLBACK(painted), this);
    g_signal_connect_after(m_window, "draw", G_CALLBACK(paintedAll), this);
    g_signal_connect(m_window, "key-press-event", G_CALLBACK(keyPressed), this);
    g_signal_connect(m_window, "delete-event", G_CALLBACK(closed), this);
    g_signal_connect(m_window, "window-state-event", G_CALLBACK(stateChanged), this);
    g_signal_connect(m_area, "button-press-event", G_CALLBACK(buttonPressed), this);
    g_signal_connect(m_area, "notify::scale-factor", G_CALLBACK(scaleChanged), this);
}

void AgendaWindow::connectScreenSignals() {
    GdkScreen* screen = gtk_widget_get_screen(m_window);
    using ScreenHandler = void (*)(GdkScreen*, AgendaWindow*);
    const ScreenHandler compositedChanged = [](GdkScreen*, AgendaWindow* window) {
        gtk_widget_queue_draw(window->m_window);
    };
    const ScreenHandler monitorsChanged = [](GdkScreen*, AgendaWindow* window) {
        window->guarded([&] { window->fitToMonitor(); });
    };
    g_signal_connect(screen, "composited-changed", G_CALLBACK(compositedChanged), this);
    g_signal_connect(screen, "monitors-changed", G_CALLBACK(monitorsChanged), this);
}

// Presenting.

// The widget is presented on the thread that shows the window, as nothing of the platform but the
// calendars is made for two threads.
void AgendaWindow::show() {
    if (GdkMonitor* monitor = monitorOf(nullptr)) {
        m_platform.setScale(gdk_monitor_get_scale_factor(monitor));
    }
    fitToMonitor();
    // Watches already what is read now.
    m_presenter = std::make_unique<shells::LivePresenter>(
        m_platform, [this] { guarded([this] { present(); }); });
    makeWindow();
    connectSignals();
    connectScreenSignals();
    m_host.present();
    m_host.setObserver(this);
    agendaPresented();
    setAgendaHost(m_area, &m_host);
    const CGSize size = m_host.wantedSize();
    gtk_window_set_default_size(GTK_WINDOW(m_window), static_cast<int>(size.width),
                                static_cast<int>(size.height));
    gtk_widget_show_all(m_window);
    changeScale(); // it may have come up on another monitor
}

void AgendaWindow::present() {
    fitToMonitor();
    m_host.present();
}

void AgendaWindow::agendaPresented() {
    m_presenter->restart(m_host.rows().descriptions());
    agendaAreaPresented(m_area);
    describeMissingCalendars();
}

// For those who cannot read the line.
void AgendaWindow::describeMissingCalendars() {
    const bool isMissing = m_host.isShowingNoCalendars();
    atk_object_set_description(gtk_widget_get_accessible(m_area),
                               isMissing ? m_host.noCalendarsText().c_str() : "");
}

void AgendaWindow::agendaLooksDifferent() {
    agendaAreaLooksDifferent(m_area);
}

void AgendaWindow::agendaWantsSize() {
    agendaAreaWantsSize(m_area);
    const CGSize size = m_host.wantedSize();
    gtk_window_resize(GTK_WINDOW(m_window), static_cast<int>(size.width),
                      static_cast<int>(size.height));
}

void AgendaWindow::agendaFocusMoved() {
    agendaAreaFocusMoved(m_area);
}

void AgendaWindow::agendaFingerCameOrWent() {
    if (m_presenter) {
        m_presenter->setPaused(m_host.window().isFingerDown());
    }
}

// The window itself.

bool AgendaWindow::isTranslucent() const {
    return gdk_screen_is_composited(gtk_widget_get_screen(m_window)) != 0;
}

CGRect AgendaWindow::placeOfArea() const {
    GtkAllocation place;
    gtk_widget_get_allocation(m_area, &place);
    return platform::CGRectMake(place.x, place.y, place.width, place.height);
}

void AgendaWindow::paintBehind(cairo_t* context) {
    paintBackdrop(context, placeOfArea(), m_options.backdrop, isTranslucent());
}

void AgendaWindow::paintAbove(cairo_t* context) {
    if (isTranslucent() && !m_options.isDecorated) {
        cutCorners(context, placeOfArea(), cornerRadius);
    }
}

void AgendaWindow::fitToMonitor() {
    if (GdkMonitor* monitor = monitorOf(m_window)) {
        GdkRectangle workArea;
        gdk_monitor_get_workarea(monitor, &workArea);
        m_host.setGreatestHeight(workArea.height);
    }
}

void AgendaWindow::changeScale() {
    const CGFloat scale = gtk_widget_get_scale_factor(m_area);
    if (scale != m_platform.platform().screen.scale()) {
        m_platform.setScale(scale);
        present();
    }
}

// What was hidden is out of date when it shows again. Coming up for the first time is no return.
void AgendaWindow::changeState(const GdkEventWindowState& event) {
    const bool wasHidden = ((event.new_window_state ^ event.changed_mask) & hiddenStates) != 0;
    const bool isHidden = (event.new_window_state & hiddenStates) != 0;
    const bool isFirst =
        ((event.new_window_state ^ event.changed_mask) & GDK_WINDOW_STATE_WITHDRAWN) != 0;
    if (isFirst || wasHidden == isHidden) {
        return;
    }
    if (isHidden) {
        m_host.dismiss();
    } else {
        present();
    }
}

bool AgendaWindow::pressKey(const GdkEventKey& event) {
    const auto command = keyCommand(event.keyval, event.state);
    if (command) {
        run(*command);
    }
    return command.has_value();
}

void AgendaWindow::run(KeyCommand command) {
    AgendaRows& rows = m_host.rows();
    switch (command) {
    case KeyCommand::close:
        m_loop.quit();
        return;
    case KeyCommand::present:
        present();
        return;
    case KeyCommand::run:
        if (const auto row = rows.focusedRow()) {
            rows.focusRow(*row); // back into sight
            rows.runRowAction(*row);
        }
        return;
    default:
        break;
    }
    if (const auto row =
            movedFocus(command, rows.focusedRow(), rows.rowCount(), rows.pageLength())) {
        rows.focusRow(*row);
    }
}

// Where no row is, the window can be taken.
bool AgendaWindow::pressButton(const GdkEventButton& event) {
    if (event.type != GDK_BUTTON_PRESS || event.button != GDK_BUTTON_PRIMARY ||
        m_host.isOnRow({event.x, event.y})) {
        return false;
    }
    gtk_window_begin_move_drag(GTK_WINDOW(m_window), static_cast<int>(event.button),
                               static_cast<int>(event.x_root), static_cast<int>(event.y_root),
                               event.time);
    return true;
}

} // namespace quorvel::window
