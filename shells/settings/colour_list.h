// The list of colours that the row of a colour opens.
#pragma once

#include <string_view>

#include <gtk/gtk.h>

#include "freedesktop/glib/handles.h"
#include "shells/settings/swatch.h"

namespace quorvel::settings_pages {

// The colours of a choice, by its value in the form of settingText(). Empty: chosen by the host.
Swatch swatchOfColour(std::string_view value);

// Makes the rows of the list: a swatch beside the text of a GtkStringObject that was made by
// newColourItem().
freedesktop::ObjectHandle<GtkListItemFactory> colourFactory();

freedesktop::ObjectHandle<GtkStringObject> newColourItem(std::string_view value, const char* label);

} // namespace quorvel::settings_pages
