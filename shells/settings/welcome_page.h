// The page for a user without calendars: what to do, for each kind of calendar.
#pragma once

#include <string>

#include <gtk/gtk.h>

namespace quorvel::settings_pages {

// The content without a window; it scrolls. GTK owns it, with everything that it calls.
// `guide`: the file that describes each kind at length. A row activates "settings.subscribe".
GtkWidget* makeWelcomePage(const char* title, const std::string& guide);

// Opens the page in a dialog in front of the window of a widget. The dialog has the actions as the
// group "settings", and closes before the user subscribes to a calendar.
void showWelcomeDialog(GtkWidget* widget, const std::string& guide, GSimpleActionGroup* actions);

} // namespace quorvel::settings_pages
