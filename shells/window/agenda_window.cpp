#include "shells/window/agenda_window.h"

#include <exception>
#include <string>
#include <utility>

#include "freedesktop/bundle/loaded_bundle.h"
#include "freedesktop/dates/locale_names.h"
#include "freedesktop/freedesktop_platform.h"
#include "freedesktop/glib/handles.h"
#include "freedesktop/language/messages.h"
#include "shells/gtk/key_command.h"
#include "shells/host/painting.h"
#include "shells/window/dialogs.h"
#include "shells/window/main_loop.h"
#include "shells/window/notice_line.h"
#include "shells/window/row_actions.h"
#include "shells/window/settings_start.h"
#include "shells/window/today_text.h"
#include "shells/window/toolkit.h"
#include "shells/window/window_actions.h"
#include "shells/window/window_header.h"
#include "shells/window/window_key.h"
#include "shells/window/window_text.h"

namespace quorvel::window {

using freedesktop::translated;
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

shells::AgendaHostOptions hostOptions(const AgendaWindowOptions& window,
                                      freedesktop::FreedesktopPlatform& platform) {
    shells::AgendaHostOptions options;
    options.controllerName = window.controllerName;
    options.width = window.width;
    options.frameTime = frameTime;
    options.calendarState = [&platform] {
        return shells::CalendarState{platform.hasReadableCalendars(), platform.areCalendarsLate(),
                                     platform.unreadableCalendars()};
    };
    return options;
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
                           std::unique_ptr<WindowPlacement> placement, WindowAppearance& appearance,
                           MainLoop& loop)
    : m_platform(platform)
    , m_bundle(bundle)
    , m_options(std::move(options))
    , m_placement(std::move(placement))
    , m_loop(loop)
    , m_appearance(appearance)
    , m_host(bundle, platform.platform(), hostOptions(m_options, m_platform))
    , m_agenda(*this)
    , m_rowAction([this] {
        guarded([this] {
            if (const auto row = std::exchange(m_clickedRow, std::nullopt)) {
                runRowAction(*row);
            }
        });
    }) {
    m_appearance.setOnChange([this] { guarded([this] { followDesktop(); }); });
    m_agenda.setContent(m_platform, m_host);
    m_platform.setLaunchContext(&m_launchContext);
    m_platform.setLaunchFailureHandler([this](const Error&) {
        if (m_notice) {
            m_notice->show(translated(text::linkNotOpened));
        }
    });
}

AgendaWindow::~AgendaWindow() {
    m_appearance.setOnChange(nullptr);
    m_platform.setLaunchFailureHandler(nullptr);
    m_platform.setLaunchContext(nullptr);
    if (m_window != nullptr) {
        m_placement->store(window());
        m_rowActions.reset();
        m_actions.reset();
        m_notice.reset();
        g_signal_handlers_disconnect_by_data(gtk_widget_get_screen(m_window), this);
        if (GdkFrameClock* const clock = gtk_widget_get_frame_clock(m_window)) {
            g_signal_handlers_disconnect_by_data(clock, this);
        }
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
    if (m_placement->hasHeader()) {
        m_header = std::make_unique<WindowHeader>();
        gtk_window_set_titlebar(GTK_WINDOW(m_window), m_header->widget());
    }
    makeContent();
    addActions();
}

// The agenda with the line over it, and below both the button for a user without calendars.
void AgendaWindow::makeContent() {
    m_notice = std::make_unique<NoticeLine>();
    GtkWidget* const overlay = gtk_overlay_new();
    gtk_container_add(GTK_CONTAINER(overlay), m_agenda.widget());
    gtk_overlay_add_overlay(GTK_OVERLAY(overlay), m_notice->widget());
    gtk_overlay_set_overlay_pass_through(GTK_OVERLAY(overlay), m_notice->widget(), TRUE);
    m_manualButton = gtk_button_new_with_label(translated(text::addCalendars));
    gtk_widget_set_no_show_all(m_manualButton, TRUE);
    m_content = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    gtk_box_pack_start(GTK_BOX(m_content), overlay, TRUE, TRUE, 0);
    gtk_box_pack_end(GTK_BOX(m_content), m_manualButton, FALSE, FALSE, 0);
    gtk_container_add(GTK_CONTAINER(m_window), m_content);
}

void AgendaWindow::addActions() {
    m_actions = std::make_unique<WindowActions>(
        m_window, "win", [this](std::exception_ptr failure) { m_loop.fail(std::move(failure)); });
    m_settings = std::make_unique<SettingsStart>(m_options.settingsCommand, m_options.settingsFile);
    m_actions->add("settings", [this] { m_settings->start(window(), m_launchContext); });
    m_actions->add("refresh", [this] { run(WindowKey::refresh); });
    m_actions->add("shortcuts", [this] { run(WindowKey::shortcuts); });
    m_actions->add("about", [this] {
        showAbout(window(), m_bundle.pathForResource("Calendar@3x", "png").value_or(""));
    });
    m_actions->add("quit", [this] { run(WindowKey::quit); });
    m_actions->add("manual", [this] { openManual(); });
    gtk_actionable_set_action_name(GTK_ACTIONABLE(m_manualButton), "win.manual");
}

void AgendaWindow::connectSignals() {
    using Painter = gboolean (*)(GtkWidget*, cairo_t*, AgendaWindow*);
    const Painter drawBegan = [](GtkWidget*, cairo_t* context, AgendaWindow* window) -> gboolean {
        window->guarded([&] { window->paintBackground(context); });
        return FALSE;
    };
    const Painter drawEnded = [](GtkWidget*, cairo_t* context, AgendaWindow* window) -> gboolean {
        window->guarded([&] { window->clearRoundedCorners(context); });
        window->m_isDrawn = true;
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
    const ButtonHandler buttonReleased = [](GtkWidget*, GdkEventButton*,
                                            AgendaWindow* window) -> gboolean {
        if (window->m_clickedRow) {
            window->m_rowAction.start(0);
        }
        return GDK_EVENT_PROPAGATE;
    };
    using TooltipHandler = gboolean (*)(GtkWidget*, int, int, gboolean, GtkTooltip*, AgendaWindow*);
    const TooltipHandler tooltipWanted = [](GtkWidget*, int x, int y, gboolean isFromKeyboard,
                                            GtkTooltip* tooltip, AgendaWindow* window) -> gboolean {
        std::string cut;
        window->guarded([&] {
            cut = window->cutTextsAt(isFromKeyboard != FALSE
                                         ? std::nullopt
                                         : std::optional(platform::CGPoint{x + 0.0, y + 0.0}));
        });
        gtk_tooltip_set_text(tooltip, cut.c_str());
        return cut.empty() ? FALSE : TRUE;
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
        window->guarded([&] {
            window->updateScale();
            window->updateHeaderPicture();
        });
    };
    // The theme's background of the window lies below that of the content.
    g_signal_connect(m_content, "draw", G_CALLBACK(drawBegan), this);
    g_signal_connect_after(m_content, "draw", G_CALLBACK(drawEnded), this);
    g_signal_connect(m_window, "key-press-event", G_CALLBACK(keyPressed), this);
    g_signal_connect(m_window, "delete-event", G_CALLBACK(closed), this);
    g_signal_connect(m_window, "window-state-event", G_CALLBACK(stateChanged), this);
    g_signal_connect(m_agenda.widget(), "button-press-event", G_CALLBACK(buttonPressed), this);
    gtk_widget_set_has_tooltip(m_agenda.widget(), TRUE);
    g_signal_connect(m_agenda.widget(), "query-tooltip", G_CALLBACK(tooltipWanted), this);
    g_signal_connect(m_agenda.widget(), "button-release-event", G_CALLBACK(buttonReleased), this);
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

// The first frame: what it does not show is made after it.

void AgendaWindow::connectFirstFrame() {
    using FrameHandler = void (*)(GdkFrameClock*, AgendaWindow*);
    const FrameHandler frameEnded = [](GdkFrameClock* clock, AgendaWindow* window) {
        if (window->m_isDrawn) {
            g_signal_handlers_disconnect_by_data(clock, window);
            window->completeAfterFirstFrame();
        }
    };
    g_signal_connect(gtk_widget_get_frame_clock(m_window), "after-paint", G_CALLBACK(frameEnded),
                     this);
}

// The main loop has handled no input yet.
void AgendaWindow::completeAfterFirstFrame() {
    gdk_display_flush(gtk_widget_get_display(m_window));
    if (m_header) {
        showHeaderContents();
        m_header->makeMenu();
    }
    gtk_window_set_icon_name(window(), applicationId); // the picture of a theme takes long to read
}

// The rows keep their room where the bar becomes higher, as with large fonts.
void AgendaWindow::showHeaderContents() {
    const int heightBefore = m_header->height();
    updateHeaderPicture();
    m_header->showContents();
    if (m_header->height() != heightBefore) {
        int width = 0;
        int height = 0;
        gtk_window_get_size(window(), &width, &height);
        limitHeightToMonitor();
        gtk_window_resize(window(), width, height);
    }
}

// Presenting.

// Presents the widget on the thread of the window: apart from the calendars, the platform belongs
// to one thread.
void AgendaWindow::show() {
    if (GdkMonitor* monitor = currentMonitor()) {
        m_platform.setScale(gdk_monitor_get_scale_factor(monitor));
    }
    makeWindow();
    limitHeightToMonitor();
    connectSignals();
    connectScreenSignals();
    m_host.setAppearance(m_appearance.colors());
    m_platform.setTextScale(m_appearance.textScale());
    m_agenda.show();
    resizeToWantedSize();
    gtk_widget_grab_focus(m_agenda.widget()); // instead of the first button of the header
    gtk_widget_show_all(m_window);
    connectFirstFrame();
    updateScale(); // the window may have appeared on another monitor
}

void AgendaWindow::followDesktop() {
    if (m_window == nullptr) {
        return;
    }
    m_agenda.setAppearance(m_appearance.colors());
    m_platform.reloadFonts();
    m_agenda.setTextScale(m_appearance.textScale());
    gtk_widget_queue_draw(m_window);
}

void AgendaWindow::bringToFront() {
    gtk_window_present(window());
}

void AgendaWindow::onPresented() {
    if (m_window != nullptr) {
        updateHeader();
        gtk_widget_set_visible(m_manualButton, m_host.hasCalendars() ? FALSE : TRUE);
    }
}

// The toolkit has no messages in the user's language, by which it would choose the direction.
void AgendaWindow::updateHeader() {
    gtk_widget_set_default_direction(freedesktop::isWrittenRightToLeft(m_platform.locale())
                                         ? GTK_TEXT_DIR_RTL
                                         : GTK_TEXT_DIR_LTR);
    if (m_header) {
        m_header->setDate(todayText(m_platform.platform()));
    }
}

void AgendaWindow::onWantedSizeChanged() {
    if (m_window != nullptr) {
        resizeToWantedSize();
    }
}

void AgendaWindow::resizeToWantedSize() {
    CGSize size = m_agenda.wantedSize();
    if (gtk_widget_get_visible(m_manualButton) != FALSE) {
        int buttonHeight = 0;
        gtk_widget_get_preferred_height(m_manualButton, nullptr, &buttonHeight);
        size.height += buttonHeight;
    }
    m_placement->resize(window(), size);
}

void AgendaWindow::onFailure(std::exception_ptr failure) noexcept {
    m_loop.fail(std::move(failure));
}

// The window itself.

bool AgendaWindow::isTranslucent() const {
    return gdk_screen_is_composited(gtk_widget_get_screen(m_window)) != 0;
}

// In the coordinates in which the content paints.
CGRect AgendaWindow::frameOfContent() const {
    return platform::CGRectMake(0, 0, gtk_widget_get_allocated_width(m_content),
                                gtk_widget_get_allocated_height(m_content));
}

void AgendaWindow::paintBackground(cairo_t* context) {
    const auto backdrop =
        m_options.backdrop.value_or(shells::windowBackdrop(m_appearance.colors()));
    shells::paintBackdrop(context, frameOfContent(), backdrop, isTranslucent());
}

void AgendaWindow::clearRoundedCorners(cairo_t* context) {
    if (isTranslucent() && !m_header) {
        shells::clearCorners(context, frameOfContent(), cornerRadius);
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
        // Without a compositor, themes draw a frame around the window.
        constexpr int frameHeight = 10; // points, above and below
        const int headerHeight = m_header ? m_header->height() + frameHeight : 0;
        m_agenda.setGreatestHeight(m_placement->greatestHeight(workArea.height - headerHeight));
    }
}

void AgendaWindow::updateScale() {
    m_agenda.setScale(gtk_widget_get_scale_factor(m_agenda.widget()));
}

void AgendaWindow::updateHeaderPicture() {
    const auto picture = m_bundle.pathForResource("Calendar", "png");
    if (m_header && picture) {
        m_header->setPicture(*picture, gtk_widget_get_scale_factor(m_agenda.widget()));
    }
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

// The header's buttons have keys of their own while they have the focus.
bool AgendaWindow::handleKey(const GdkEventKey& event) {
    if (const auto key = windowKey(event.keyval, event.state)) {
        run(*key);
        return true;
    }
    const auto command = gtk::keyCommand(event.keyval, event.state);
    if (command == KeyCommand::close) {
        m_loop.quit();
        return true;
    }
    GtkWidget* const focus = gtk_window_get_focus(window());
    const bool isForRows = focus == nullptr || focus == m_agenda.widget();
    return command && (isForRows || *command == KeyCommand::present) && m_agenda.run(*command);
}

void AgendaWindow::run(WindowKey key) {
    switch (key) {
    case WindowKey::close:
    case WindowKey::quit:
        m_loop.quit();
        break;
    case WindowKey::refresh:
        m_agenda.run(KeyCommand::present);
        break;
    case WindowKey::menu:
        if (m_header) {
            m_header->openMenu();
        }
        break;
    case WindowKey::rowMenu:
        if (const auto row = m_host.rows().focusedRow()) {
            openRowMenu(*row, nullptr);
        }
        break;
    case WindowKey::shortcuts:
        showShortcuts(window());
        break;
    }
}

void AgendaWindow::openManual() {
    const freedesktop::TextHandle uri(
        g_filename_to_uri(m_options.calendarsManual.c_str(), nullptr, nullptr));
    if (!uri || gtk_show_uri_on_window(window(), uri.get(), gtk_get_current_event_time(),
                                       nullptr) == FALSE) {
        m_notice->show(translated(text::manualMissing));
    }
}

// Rows.

void AgendaWindow::openRowMenu(std::size_t row, const GdkEvent* event) {
    shells::AgendaRows& rows = m_host.rows();
    rows.focusRow(row);
    if (const auto content = rows.content(row)) {
        if (!m_rowActions) {
            m_rowActions = std::make_unique<RowActions>(
                m_agenda.widget(), m_platform.platform(),
                [this](std::exception_ptr failure) { m_loop.fail(std::move(failure)); });
        }
        m_rowActions->openMenu(*content, rows.rowFrame(row), event);
    }
}

// For the row at the point, or without a point the row that has the focus.
std::string AgendaWindow::cutTextsAt(const std::optional<platform::CGPoint>& point) {
    const shells::AgendaRows& rows = m_host.rows();
    const auto row = point ? rows.rowAt(*point) : rows.focusedRow();
    const bool isResting = !m_host.window().isMoving() && !m_host.window().isFingerDown();
    return row && isResting ? rows.cutTexts(*row, m_platform.platform().textMeasurer) : "";
}

void AgendaWindow::runRowAction(std::size_t row) {
    m_host.rows().runRowAction(row);
}

// A double click runs the row's action after its second press has been lifted, as a row can be
// pulled by one finger only.
bool AgendaWindow::handlePressOnRow(std::size_t row, const GdkEventButton& event) {
    if (event.type == GDK_2BUTTON_PRESS && event.button == GDK_BUTTON_PRIMARY) {
        m_clickedRow = row;
        return false;
    }
    const auto* const cause = reinterpret_cast<const GdkEvent*>(&event);
    if (event.type != GDK_BUTTON_PRESS || gdk_event_triggers_context_menu(cause) == FALSE ||
        m_host.window().isFingerDown()) {
        return false;
    }
    openRowMenu(row, cause);
    return true;
}

// A press outside the rows moves the window.
bool AgendaWindow::handleButton(const GdkEventButton& event) {
    m_clickedRow.reset();
    if (const auto row = m_host.rows().rowAt({event.x, event.y})) {
        return handlePressOnRow(*row, event);
    }
    if (event.type != GDK_BUTTON_PRESS || event.button != GDK_BUTTON_PRIMARY ||
        !m_placement->canBeMoved()) {
        return false;
    }
    gtk_window_begin_move_drag(GTK_WINDOW(m_window), static_cast<int>(event.button),
                               static_cast<int>(event.x_root), static_cast<int>(event.y_root),
                               event.time);
    return true;
}

} // namespace quorvel::window
