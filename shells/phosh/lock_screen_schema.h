// Opens the plugin's own settings.
#pragma once

#include <gio/gio.h>

#include "freedesktop/glib/handles.h"

namespace quorvel::phosh {

inline constexpr const char* detailsKey = "show-details-when-locked";

// The settings of the schema org.quorvel.shell. Null where it is not installed, or an older one
// that lacks a key: opening that would end the process.
freedesktop::ObjectHandle<GSettings> openLockScreenSettings();

} // namespace quorvel::phosh
