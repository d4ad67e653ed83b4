// The list of texts that the row of a choice opens, and the chosen text in the row.
#pragma once

#include <gtk/gtk.h>

#include "freedesktop/glib/handles.h"

namespace quorvel::settings_pages {

// Makes the rows of the list: the text of a GtkStringObject, which takes more lines where its place
// is narrow, and a mark beside the chosen one.
freedesktop::ObjectHandle<GtkListItemFactory> textFactory();

} // namespace quorvel::settings_pages
