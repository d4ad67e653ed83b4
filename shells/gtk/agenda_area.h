// The GTK widget that shows a host's views: it paints them, passes input on to them, and advances
// them frame by frame while something moves. It can be placed in any window.
#pragma once

#include <exception>
#include <functional>
#include <memory>

#include <gtk/gtk.h>

#include "freedesktop/text/text_lines.h"

namespace quorvel::shells {
class AgendaHost;
} // namespace quorvel::shells

namespace quorvel::gtk {

// Receives an exception of the host or the widget that was thrown while GTK was calling. The area
// stays usable.
using AreaFailureHandler = std::function<void(std::exception_ptr)>;

// Creates an area without a host. The reference is floating, as with every new GTK widget. The
// area's natural size is the host's wanted size.
GtkWidget* makeAgendaArea(AreaFailureHandler onFailure);

// Shows this host's views, painted with `lines`; both null: none. The host stays alive until
// another one is set. The host's observer calls redrawAgendaArea(), resizeAgendaArea(), and
// updateAccessibleRows() and updateAccessibleFocus() of agenda_accessible.h.
void setAgendaHost(GtkWidget* area, shells::AgendaHost* host,
                   std::shared_ptr<freedesktop::TextLines> lines);
// Shows and reports nothing from here on: GTK may keep the area longer than its owner.
void closeAgendaArea(GtkWidget* area);

// Paints the views anew, and again for each frame while they move.
void redrawAgendaArea(GtkWidget* area);
// Requests the size that the host wants now.
void resizeAgendaArea(GtkWidget* area);

} // namespace quorvel::gtk
