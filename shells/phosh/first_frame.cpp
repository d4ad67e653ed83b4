#include "shells/phosh/first_frame.h"

#include <utility>

namespace quorvel::phosh {

FirstFrame::FirstFrame(std::function<void()> onPainted)
    : m_onPainted(std::move(onPainted)) {}

FirstFrame::~FirstFrame() {
    stop();
}

void FirstFrame::waitFor(GtkWidget* widget) {
    stop();
    GdkFrameClock* const clock = gtk_widget_get_frame_clock(widget);
    if (clock == nullptr) {
        return;
    }
    m_clock = GDK_FRAME_CLOCK(g_object_ref(clock));
    using Handler = void (*)(GdkFrameClock*, FirstFrame*);
    const Handler afterPaint = [](GdkFrameClock*, FirstFrame* frame) { frame->painted(); };
    m_signal = g_signal_connect(m_clock, "after-paint", G_CALLBACK(afterPaint), this);
    gtk_widget_queue_draw(widget);
}

void FirstFrame::stop() {
    if (GdkFrameClock* const clock = std::exchange(m_clock, nullptr)) {
        g_signal_handler_disconnect(clock, std::exchange(m_signal, 0));
        g_object_unref(clock);
    }
}

void FirstFrame::painted() {
    const auto onPainted = m_onPainted; // may destroy this object
    stop();
    onPainted();
}

} // namespace quorvel::phosh
