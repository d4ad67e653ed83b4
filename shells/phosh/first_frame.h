// Calls a function after the next frame of a widget has been painted.
#pragma once

#include <functional>

#include <gtk/gtk.h>

namespace quorvel::phosh {

// Belongs to GTK's thread.
class FirstFrame {
public:
    explicit FirstFrame(std::function<void()> onPainted);
    ~FirstFrame(); // the function is not called afterwards
    FirstFrame(const FirstFrame&) = delete;
    FirstFrame& operator=(const FirstFrame&) = delete;

    // Once per call, while the widget is realized. The widget may be destroyed meanwhile.
    void waitFor(GtkWidget* widget);
    void stop();

private:
    void painted();

    std::function<void()> m_onPainted;
    GdkFrameClock* m_clock = nullptr; // a reference of ours while waiting
    gulong m_signal = 0;
};

} // namespace quorvel::phosh
