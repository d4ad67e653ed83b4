// The dialogs of the window's menu: settings, keyboard shortcuts, about. Each belongs to GTK, is
// shown in front of the window, and destroys itself when the user closes it.
#pragma once

#include <string>

#include <gtk/gtk.h>

namespace quorvel::window {

// `picture`: the path of a picture file; one that cannot be read shows nothing.
void showAbout(GtkWindow* parent, const std::string& picture);
void showShortcuts(GtkWindow* parent);
// Names the file of the settings and its manual page.
void showSettingsHelp(GtkWindow* parent, const std::string& file);

} // namespace quorvel::window
