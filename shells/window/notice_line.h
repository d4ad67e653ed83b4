// One line over the lower edge of the agenda, which fades by itself: for what the user must know
// but need not answer.
#pragma once

#include <string>

#include <gtk/gtk.h>

#include "freedesktop/glib/delayed_call.h"

namespace quorvel::window {

class NoticeLine {
public:
    NoticeLine();
    NoticeLine(const NoticeLine&) = delete;
    NoticeLine& operator=(const NoticeLine&) = delete;

    // A child of the overlay that it is added to.
    GtkWidget* widget() const { return m_revealer; }
    void show(const std::string& text); // replaces the line that is shown

private:
    GtkWidget* m_revealer;
    GtkWidget* m_label;
    freedesktop::DelayedCall m_fading;
};

} // namespace quorvel::window
