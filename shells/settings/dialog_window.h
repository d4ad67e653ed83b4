// A dialog in front of a window, with a header; Escape closes it.
#pragma once

#include <adwaita.h>

namespace quorvel::settings_pages {

// GTK owns the window, which destroys itself when it is closed or its parent is. It is as wide as a
// phone allows, and not shown yet. `widget` is one of the parent window.
AdwWindow* makeDialogWindow(GtkWidget* widget, const char* title, GtkWidget* content);

} // namespace quorvel::settings_pages
