// Small functions that the pages use to make widgets.
#pragma once

#include <string>

#include <adwaita.h>

namespace quorvel::settings_pages {

// The name that a screen reader reads, in place of what the toolkit has chosen.
void setAccessibleName(GtkWidget* widget, const std::string& name);

// The texts are shown as they are, without markup.
void setRowTexts(AdwActionRow* row, const std::string& title, const std::string& subtitle);

// Adds a switch or the like to the end of a row; a tap on the row moves or focuses it. `name`: for
// screen readers.
void addControl(AdwActionRow* row, GtkWidget* control, const std::string& name);

// Sets the name for screen readers to the text of a button, without the mark of its mnemonic.
void nameByMnemonic(GtkWidget* button, const std::string& text);

// Sets a GtkSwitch without stopping one that the user has touched and that moves to that side.
void setSwitch(GtkWidget* control, bool isOn);

// A button without a frame that shows an icon of the theme. `name`: for screen readers, and as its
// tooltip.
GtkWidget* makeIconButton(const char* icon, const std::string& name);

// Scrolls what surrounds the widget as far as it takes to show all of it, once new widgets have got
// their places.
void scrollIntoView(GtkWidget* widget);

// A label that wraps and can be selected with the keyboard, so that its text can be copied.
GtkWidget* makeParagraph(const std::string& text);

} // namespace quorvel::settings_pages
