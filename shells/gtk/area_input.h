// Turns the events that GTK delivers to the agenda's area into input of its host.
#pragma once

#include <exception>
#include <functional>
#include <optional>

#include <gtk/gtk.h>

#include "freedesktop/glib/delayed_call.h"
#include "freedesktop/glib/handles.h"
#include "platform/geometry.h"
#include "shells/gtk/event_clock.h"
#include "shells/host/finger_input.h"

namespace quorvel::shells {
class AgendaHost;
} // namespace quorvel::shells

namespace quorvel::gtk {

// Follows drags of the primary button and of one finger, scrolling on a touchpad, and a wheel.
class AreaInput {
public:
    // The widget outlives the input. `onFailure` receives exceptions of the host, as none may leave
    // a function that GTK calls.
    AreaInput(GtkWidget* widget, std::function<void(std::exception_ptr)> onFailure);
    AreaInput(const AreaInput&) = delete;
    AreaInput& operator=(const AreaInput&) = delete;

    // Cancels input to the previous host. Null: no input. The host outlives its use here.
    void setHost(shells::AgendaHost* host);
    // Cancels a press or a scroll; the gesture that is going on is ignored from here on.
    void cancel();
    // Cancels, and accepts no more input.
    void close();
    // True where the event was used.
    bool scroll(const GdkEventScroll& event);

private:
    void connectDrag();
    void press(platform::CGPoint location);
    void drag(platform::CGPoint translation);
    void lift(platform::CGPoint translation);
    void cancelFinger();
    bool turnWheel(const GdkEventScroll& event);
    void scrollTouchpad(const GdkEventScroll& event);
    void endScroll();
    double eventTime(const GdkEvent* event);
    double dragEventTime();

    template <class Work>
    void guarded(Work work) noexcept;

    GtkWidget* m_widget;
    std::function<void(std::exception_ptr)> m_onFailure;
    freedesktop::ObjectHandle<GtkGesture> m_drag; // null once closed
    shells::AgendaHost* m_host = nullptr;
    std::optional<shells::FingerInput> m_finger; // absent without a host
    EventClock m_clock;
    freedesktop::DelayedCall m_scrollTimeout;
};

} // namespace quorvel::gtk
