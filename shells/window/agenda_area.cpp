#include "shells/window/agenda_area.h"

#include <optional>
#include <utility>

#include "freedesktop/graphics/cairo_graphics_context.h"
#include "shells/window/agenda_accessible.h"
#include "shells/window/agenda_host.h"
#include "shells/window/event_clock.h"
#include "shells/window/finger_input.h"
#include "shells/window/gtk_handles.h"
#include "shells/window/painting.h"

namespace quorvel::window {

using platform::CGFloat;
using platform::CGPoint;
using platform::CGSize;

namespace {

// Window systems count a finger's way on a touchpad in steps of a wheel, of 10 to 15 points each.
constexpr CGFloat touchpadStep = 12; // points
constexpr CGFloat wheelStep = 57;    // points; about three lines
// Not every window system says when the fingers leave the touchpad.
constexpr guint longestPause = 150; // milliseconds

struct Area;

// Everything of the area's that is not GTK's.
class AreaState {
public:
    AreaState(GtkWidget* widget, std::shared_ptr<freedesktop::TextLines> lines,
              AreaFailureHandler failed);

    void setHost(AgendaHost* host);
    void close(); // takes no more input
    void lookDifferent();

    void paint(cairo_t* context);
    void resize(CGSize size);
    CGSize wantedSize() const;
    void letGo();
    bool scroll(const GdkEventScroll& event);

    // No exception leaves a function that GTK calls.
    template <class Work>
    void guarded(Work work) noexcept {
        try {
            work();
        } catch (...) {
            m_failed(std::current_exception());
        }
    }

private:
    void connectDrag();
    void press(CGPoint location);
    void drag(CGPoint way);
    void lift(CGPoint way);
    void cancel();
    bool turnWheel(const GdkEventScroll& event);
    void glide(const GdkEventScroll& event);
    double eventTime(const GdkEvent* event);
    double dragEventTime();
    void advance(double time);

    GtkWidget* m_widget;
    std::shared_ptr<freedesktop::TextLines> m_lines;
    AreaFailureHandler m_failed;
    ObjectHandle<GtkGesture> m_drag;
    AgendaHost* m_host = nullptr;
    std::optional<FingerInput> m_input; // there is one while there is a host
    EventClock m_clock;
    SourceHandle m_pause; // runs while fingers rest on a touchpad
    bool m_isTicking = false;
};

struct Area {
    GtkDrawingArea parent;
    AreaState* state;
};

struct AreaClass {
    GtkDrawingAreaClass parent;
};

AreaState* stateOf(gpointer widget) {
    return static_cast<Area*>(widget)->state; // the type's own layout begins with GTK's
}

double now() {
    return static_cast<double>(g_get_monotonic_time()) / G_USEC_PER_SEC;
}

bool isFromTouchpad(const GdkEventScroll& event) {
    const GdkDevice* device =
        gdk_event_get_source_device(reinterpret_cast<const GdkEvent*>(&event));
    return event.direction == GDK_SCROLL_SMOOTH && device != nullptr &&
           gdk_device_get_source(const_cast<GdkDevice*>(device)) == GDK_SOURCE_TOUCHPAD;
}

AreaState::AreaState(GtkWidget* widget, std::shared_ptr<freedesktop::TextLines> lines,
                     AreaFailureHandler failed)
    : m_widget(widget)
    , m_lines(std::move(lines))
    , m_failed(std::move(failed)) {
    gtk_widget_set_can_focus(widget, TRUE);
    gtk_widget_add_events(widget, GDK_BUTTON_PRESS_MASK | GDK_BUTTON_RELEASE_MASK |
                                      GDK_BUTTON1_MOTION_MASK | GDK_TOUCH_MASK | GDK_SCROLL_MASK |
                                      GDK_SMOOTH_SCROLL_MASK);
    connectDrag();
}

void AreaState::connectDrag() {
    m_drag.reset(gtk_gesture_drag_new(m_widget));
    gtk_gesture_single_set_button(GTK_GESTURE_SINGLE(m_drag.get()), GDK_BUTTON_PRIMARY);
    // A second finger on the screen is not this gesture's.
    gtk_gesture_single_set_exclusive(GTK_GESTURE_SINGLE(m_drag.get()), TRUE);
    const auto connect = [this](const char* signal, GCallback callback) {
        g_signal_connect(m_drag.get(), signal, callback, this);
    };
    using Handler = void (*)(GtkGestureDrag*, double, double, AreaState*);
    const Handler begin = [](GtkGestureDrag*, double x, double y, AreaState* state) {
        state->guarded([&] { state->press({x, y}); });
    };
    const Handler update = [](GtkGestureDrag*, double x, double y, AreaState* state) {
        state->guarded([&] { state->drag({x, y}); });
    };
    const Handler end = [](GtkGestureDrag*, double x, double y, AreaState* state) {
        state->guarded([&] { state->lift({x, y}); });
    };
    using CancelHandler = void (*)(GtkGesture*, GdkEventSequence*, AreaState*);
    const CancelHandler cancelled = [](GtkGesture*, GdkEventSequence*, AreaState* state) {
        state->guarded([&] { state->cancel(); });
    };
    connect("drag-begin", G_CALLBACK(begin));
    connect("drag-update", G_CALLBACK(update));
    connect("drag-end", G_CALLBACK(end));
    connect("cancel", G_CALLBACK(cancelled));
}

void AreaState::setHost(AgendaHost* host) {
    letGo();
    m_host = host;
    m_input.reset();
    if (m_host != nullptr) {
        m_input.emplace(*m_host);
    }
    setAccessibleRows(m_widget, m_host != nullptr ? &m_host->rows() : nullptr, m_failed);
    gtk_widget_queue_resize(m_widget);
    lookDifferent();
}

void AreaState::lookDifferent() {
    gtk_widget_queue_draw(m_widget);
    if (m_isTicking || m_host == nullptr || !m_host->window().isMoving()) {
        return;
    }
    const GtkTickCallback tick = [](GtkWidget* widget, GdkFrameClock* clock, gpointer) -> gboolean {
        AreaState* state = stateOf(widget);
        state->guarded([&] {
            state->advance(static_cast<double>(gdk_frame_clock_get_frame_time(clock)) /
                           G_USEC_PER_SEC);
        });
        return state->m_isTicking ? G_SOURCE_CONTINUE : G_SOURCE_REMOVE;
    };
    m_isTicking = true;
    gtk_widget_add_tick_callback(m_widget, tick, nullptr, nullptr);
}

void AreaState::advance(double time) {
    if (m_host != nullptr) {
        m_host->advance(time);
    }
    m_isTicking = m_host != nullptr && m_host->window().isMoving();
}

void AreaState::paint(cairo_t* context) {
    if (m_host == nullptr) {
        return;
    }
    platform::UIWindow& views = m_host->window();
    views.layoutIfNeeded();
    {
        freedesktop::CairoGraphicsContext graphics(context, m_lines);
        views.render(graphics);
    }
    if (const auto row = m_host->rows().focusedRow()) {
        paintFocus(context, m_host->rows().rowFrame(*row));
    }
}

void AreaState::resize(CGSize size) {
    if (m_host != nullptr) {
        m_host->setAreaSize(size);
    }
}

CGSize AreaState::wantedSize() const {
    return m_host != nullptr ? m_host->wantedSize() : CGSize{1, 1};
}

// Input.

double AreaState::eventTime(const GdkEvent* event) {
    return m_clock.secondsAt(event != nullptr ? gdk_event_get_time(event) : GDK_CURRENT_TIME,
                             now());
}

double AreaState::dragEventTime() {
    GdkEventSequence* sequence =
        gtk_gesture_single_get_current_sequence(GTK_GESTURE_SINGLE(m_drag.get()));
    return eventTime(gtk_gesture_get_last_event(m_drag.get(), sequence));
}

void AreaState::press(CGPoint location) {
    if (!m_input) {
        return;
    }
    m_pause.reset();
    m_clock.restart();
    m_host->rows().dropFocus();
    m_input->press(location, dragEventTime());
}

void AreaState::drag(CGPoint way) {
    if (!m_input || !m_input->isPressed()) {
        return;
    }
    const bool hadClaim = m_input->hasClaim();
    m_input->drag(way, dragEventTime());
    if (!hadClaim && m_input->hasClaim()) {
        gtk_gesture_set_state(m_drag.get(), GTK_EVENT_SEQUENCE_CLAIMED);
    }
}

void AreaState::lift(CGPoint way) {
    if (m_input) {
        m_input->lift(way, dragEventTime());
    }
}

void AreaState::cancel() {
    m_pause.reset();
    if (m_input) {
        m_input->cancel(m_clock.secondsAt(GDK_CURRENT_TIME, now()));
    }
}

void AreaState::letGo() {
    cancel();
    if (m_drag) {
        gtk_event_controller_reset(GTK_EVENT_CONTROLLER(m_drag.get()));
    }
}

void AreaState::close() {
    letGo();
    m_drag.reset();
}

bool AreaState::scroll(const GdkEventScroll& event) {
    if (!m_input) {
        return false;
    }
    if (!isFromTouchpad(event)) {
        return turnWheel(event);
    }
    glide(event);
    return true;
}

bool AreaState::turnWheel(const GdkEventScroll& event) {
    double steps = 0;
    if (event.direction == GDK_SCROLL_SMOOTH) {
        steps = event.delta_y;
    } else if (event.direction == GDK_SCROLL_UP || event.direction == GDK_SCROLL_DOWN) {
        steps = event.direction == GDK_SCROLL_DOWN ? 1 : -1;
    }
    return steps != 0 && m_host->scrollVertically({event.x, event.y}, steps * wheelStep);
}

void AreaState::glide(const GdkEventScroll& event) {
    if (!m_input->isGliding()) {
        m_clock.restart();
    }
    const double time = eventTime(reinterpret_cast<const GdkEvent*>(&event));
    if (event.is_stop != 0) {
        m_pause.reset();
        m_input->endGlide(time);
        return;
    }
    m_input->glide({event.x, event.y}, {event.delta_x * touchpadStep, event.delta_y * touchpadStep},
                   time);
    const GSourceFunc paused = [](gpointer data) -> gboolean {
        auto* state = static_cast<AreaState*>(data);
        state->m_pause.forget();
        state->guarded([&] {
            if (state->m_input) {
                state->m_input->endGlide(state->m_clock.secondsAt(GDK_CURRENT_TIME, now()));
            }
        });
        return G_SOURCE_REMOVE;
    };
    m_pause.reset(g_timeout_add(longestPause, paused, this));
}

// The class.

gboolean draw(GtkWidget* widget, cairo_t* context) {
    AreaState* state = stateOf(widget);
    state->guarded([&] { state->paint(context); });
    return FALSE;
}

GtkWidgetClass* parentClass = nullptr;

void allocateSize(GtkWidget* widget, GtkAllocation* allocation) {
    parentClass->size_allocate(widget, allocation);
    AreaState* state = stateOf(widget);
    state->guarded([&] {
        state->resize(
            {static_cast<CGFloat>(allocation->width), static_cast<CGFloat>(allocation->height)});
    });
}

void preferredWidth(GtkWidget* widget, int* minimum, int* natural) {
    *minimum = 1;
    *natural = static_cast<int>(stateOf(widget)->wantedSize().width);
}

void preferredHeight(GtkWidget* widget, int* minimum, int* natural) {
    *minimum = 1;
    *natural = static_cast<int>(stateOf(widget)->wantedSize().height);
}

gboolean scrolled(GtkWidget* widget, GdkEventScroll* event) {
    AreaState* state = stateOf(widget);
    bool isTaken = false;
    state->guarded([&] { isTaken = state->scroll(*event); });
    return isTaken ? GDK_EVENT_STOP : GDK_EVENT_PROPAGATE;
}

// The gestures of GTK 3 pass over a touch that the window system takes back. The one that stands
// for the pointer is the one that they know.
gboolean touched(GtkWidget* widget, GdkEventTouch* event) {
    if (event->type == GDK_TOUCH_CANCEL && event->emulating_pointer != 0) {
        AreaState* state = stateOf(widget);
        state->guarded([&] { state->letGo(); });
    }
    return parentClass->touch_event(widget, event); // where the gestures are asked
}

void unmap(GtkWidget* widget) {
    AreaState* state = stateOf(widget);
    state->guarded([&] { state->letGo(); });
    parentClass->unmap(widget);
}

// May come more than once, and is followed by other calls.
void dispose(GObject* object) {
    AreaState* state = stateOf(object);
    state->guarded([&] { state->close(); });
    G_OBJECT_CLASS(parentClass)->dispose(object);
}

void finalize(GObject* object) {
    delete stateOf(object);
    G_OBJECT_CLASS(parentClass)->finalize(object);
}

void initialiseClass(gpointer areaClass, gpointer) {
    parentClass = GTK_WIDGET_CLASS(g_type_class_peek_parent(areaClass));
    GtkWidgetClass* widgetClass = GTK_WIDGET_CLASS(areaClass);
    widgetClass->draw = draw;
    widgetClass->size_allocate = allocateSize;
    widgetClass->get_preferred_width = preferredWidth;
    widgetClass->get_preferred_height = preferredHeight;
    widgetClass->scroll_event = scrolled;
    widgetClass->touch_event = touched;
    widgetClass->unmap = unmap;
    gtk_widget_class_set_accessible_type(widgetClass, agendaAccessibleType());
    G_OBJECT_CLASS(areaClass)->dispose = dispose;
    G_OBJECT_CLASS(areaClass)->finalize = finalize;
}

GType areaType() {
    static const GType type =
        g_type_register_static_simple(GTK_TYPE_DRAWING_AREA, "QuorvelAgendaArea", sizeof(AreaClass),
                                      initialiseClass, sizeof(Area), nullptr, GTypeFlags{});
    return type;
}

} // namespace

GtkWidget* makeAgendaArea(std::shared_ptr<freedesktop::TextLines> lines,
                          AreaFailureHandler failed) {
    auto* widget = static_cast<GtkWidget*>(g_object_new(areaType(), nullptr));
    reinterpret_cast<Area*>(widget)->state =
        new AreaState(widget, std::move(lines), std::move(failed));
    return widget;
}

void setAgendaHost(GtkWidget* area, AgendaHost* host) {
    stateOf(area)->setHost(host);
}

void agendaAreaLooksDifferent(GtkWidget* area) {
    stateOf(area)->lookDifferent();
}

void agendaAreaWantsSize(GtkWidget* area) {
    gtk_widget_queue_resize(area);
}

void agendaAreaPresented(GtkWidget* area) {
    accessibleRowsChanged(area);
}

void agendaAreaFocusMoved(GtkWidget* area) {
    accessibleFocusMoved(area);
}

} // namespace quorvel::window
