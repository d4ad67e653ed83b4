// The GTK widget that shows a host's views: it paints them, hands them the input, and gives them
// frames while something moves. It needs nothing of the window that it stands in.
#pragma once

#include <exception>
#include <functional>
#include <memory>

#include <gtk/gtk.h>

#include "freedesktop/text/text_lines.h"

namespace quorvel::window {

class AgendaHost;

// What fails in the host or the widget while GTK is calling; the area goes on.
using AreaFailureHandler = std::function<void(std::exception_ptr)>;

// Shows nothing yet. The reference is floating, as with every new GTK widget. Its natural size is
// the one that the host wants.
GtkWidget* makeAgendaArea(std::shared_ptr<freedesktop::TextLines> lines, AreaFailureHandler failed);

// From here on the area shows this host's views, null: none. The host outlives its place in the
// area; its observer has to pass on what follows.
void setAgendaHost(GtkWidget* area, AgendaHost* host);

void agendaAreaLooksDifferent(GtkWidget* area);
void agendaAreaWantsSize(GtkWidget* area);
void agendaAreaPresented(GtkWidget* area);
void agendaAreaFocusMoved(GtkWidget* area);

} // namespace quorvel::window
