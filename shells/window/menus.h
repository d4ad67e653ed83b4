// The menus of the window and of a row, as lists of texts and names of actions.
#pragma once

#include <gio/gio.h>

#include "freedesktop/glib/handles.h"

namespace quorvel::window {

// Actions: win.settings, win.refresh, win.shortcuts, win.about, win.quit.
freedesktop::ObjectHandle<GMenuModel> windowMenu();

// Actions: row.open, row.open-day, row.copy-title, row.copy-time, row.copy-place.
freedesktop::ObjectHandle<GMenuModel> rowMenu();

} // namespace quorvel::window
