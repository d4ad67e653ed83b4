// The dialog that lists the keys of the settings' window.
#pragma once

#include <gtk/gtk.h>

namespace quorvel::settings_pages {

// Opens it in front of the window of a widget.
void showShortcuts(GtkWidget* widget);

} // namespace quorvel::settings_pages
