#include "shells/gtk/area_input.h"

#include <utility>

#include "shells/host/agenda_host.h"

namespace quorvel::gtk {

using platform::CGFloat;
using platform::CGPoint;

namespace {

// Window systems report a distance on a touchpad in steps of a wheel, of 10 to 15 points each.
constexpr CGFloat touchpadStep = 12; // points
constexpr CGFloat wheelStep = 57;    // points; about three lines
// Not every window system reports that the fingers have left the touchpad: a pause counts as the
// end.
constexpr double longestScrollPause = 0.15; // seconds

double now() {
    return static_cast<double>(g_get_monotonic_time()) / G_USEC_PER_SEC;
}

bool isFromTouchpad(const GdkEventScroll& event) {
    const GdkDevice* device =
        gdk_event_get_source_device(reinterpret_cast<const GdkEvent*>(&event));
    return event.direction == GDK_SCROLL_SMOOTH && device != nullptr &&
           gdk_device_get_source(const_cast<GdkDevice*>(device)) == GDK_SOURCE_TOUCHPAD;
}

} // namespace

template <class Work>
void AreaInput::guarded(Work work) noexcept {
    try {
        work();
    } catch (...) {
        m_onFailure(std::current_exception());
    }
}

AreaInput::AreaInput(GtkWidget* widget, std::function<void(std::exception_ptr)> onFailure)
    : m_widget(widget)
    , m_onFailure(std::move(onFailure))
    , m_scrollTimeout([this] { guarded([this] { endScroll(); }); }) {
    gtk_widget_add_events(widget, GDK_BUTTON_PRESS_MASK | GDK_BUTTON_RELEASE_MASK |
                                      GDK_BUTTON1_MOTION_MASK | GDK_TOUCH_MASK | GDK_SCROLL_MASK |
                                      GDK_SMOOTH_SCROLL_MASK);
    connectDrag();
}

void AreaInput::connectDrag() {
    m_drag.reset(gtk_gesture_drag_new(m_widget));
    gtk_gesture_single_set_button(GTK_GESTURE_SINGLE(m_drag.get()), GDK_BUTTON_PRIMARY);
    // A second finger on the screen does not take part in the gesture.
    gtk_gesture_single_set_exclusive(GTK_GESTURE_SINGLE(m_drag.get()), TRUE);
    const auto connect = [this](const char* signal, GCallback callback) {
        g_signal_connect(m_drag.get(), signal, callback, this);
    };
    using Handler = void (*)(GtkGestureDrag*, double, double, AreaInput*);
    const Handler begin = [](GtkGestureDrag*, double x, double y, AreaInput* input) {
        input->guarded([&] { input->press({x, y}); });
    };
    const Handler update = [](GtkGestureDrag*, double x, double y, AreaInput* input) {
        input->guarded([&] { input->drag({x, y}); });
    };
    const Handler end = [](GtkGestureDrag*, double x, double y, AreaInput* input) {
        input->guarded([&] { input->lift({x, y}); });
    };
    using CancelHandler = void (*)(GtkGesture*, GdkEventSequence*, AreaInput*);
    const CancelHandler cancelled = [](GtkGesture*, GdkEventSequence*, AreaInput* input) {
        input->guarded([&] { input->cancelFinger(); });
    };
    connect("drag-begin", G_CALLBACK(begin));
    connect("drag-update", G_CALLBACK(update));
    connect("drag-end", G_CALLBACK(end));
    connect("cancel", G_CALLBACK(cancelled));
}

void AreaInput::setHost(shells::AgendaHost* host) {
    cancel();
    m_host = host;
    m_finger.reset();
    if (m_host != nullptr) {
        m_finger.emplace(*m_host);
    }
}

void AreaInput::cancel() {
    cancelFinger();
    if (m_drag) {
        gtk_event_controller_reset(GTK_EVENT_CONTROLLER(m_drag.get()));
    }
}

void AreaInput::close() {
    cancel();
    m_drag.reset();
}

double AreaInput::eventTime(const GdkEvent* event) {
    return m_clock.secondsAt(event != nullptr ? gdk_event_get_time(event) : GDK_CURRENT_TIME,
                             now());
}

double AreaInput::dragEventTime() {
    GdkEventSequence* sequence =
        gtk_gesture_single_get_current_sequence(GTK_GESTURE_SINGLE(m_drag.get()));
    return eventTime(gtk_gesture_get_last_event(m_drag.get(), sequence));
}

void AreaInput::press(CGPoint location) {
    if (!m_finger) {
        return;
    }
    m_scrollTimeout.stop();
    m_clock.restart();
    m_host->rows().dropFocus();
    m_finger->press(location, dragEventTime());
}

void AreaInput::drag(CGPoint translation) {
    if (!m_finger || !m_finger->isPressed()) {
        return;
    }
    const bool wasClaimed = m_finger->isClaimed();
    m_finger->drag(translation, dragEventTime());
    if (!wasClaimed && m_finger->isClaimed()) {
        gtk_gesture_set_state(m_drag.get(), GTK_EVENT_SEQUENCE_CLAIMED);
    }
}

void AreaInput::lift(CGPoint translation) {
    if (m_finger) {
        m_finger->lift(translation, dragEventTime());
    }
}

void AreaInput::cancelFinger() {
    m_scrollTimeout.stop();
    if (m_finger) {
        m_finger->cancel(eventTime(nullptr));
    }
}

bool AreaInput::scroll(const GdkEventScroll& event) {
    if (!m_finger) {
        return false;
    }
    if (!isFromTouchpad(event)) {
        return turnWheel(event);
    }
    scrollTouchpad(event);
    return true;
}

bool AreaInput::turnWheel(const GdkEventScroll& event) {
    double steps = 0;
    if (event.direction == GDK_SCROLL_SMOOTH) {
        steps = event.delta_y;
    } else if (event.direction == GDK_SCROLL_UP || event.direction == GDK_SCROLL_DOWN) {
        steps = event.direction == GDK_SCROLL_DOWN ? 1 : -1;
    }
    return steps != 0 && m_host->scrollVertically({event.x, event.y}, steps * wheelStep);
}

void AreaInput::scrollTouchpad(const GdkEventScroll& event) {
    if (!m_finger->isScrolling()) {
        m_clock.restart();
    }
    const double time = eventTime(reinterpret_cast<const GdkEvent*>(&event));
    if (event.is_stop != 0) {
        m_scrollTimeout.stop();
        m_finger->endScroll(time);
        return;
    }
    m_finger->scroll({event.x, event.y},
                     {event.delta_x * touchpadStep, event.delta_y * touchpadStep}, time);
    m_scrollTimeout.start(longestScrollPause);
}

void AreaInput::endScroll() {
    if (m_finger) {
        m_finger->endScroll(eventTime(nullptr));
    }
}

} // namespace quorvel::gtk
