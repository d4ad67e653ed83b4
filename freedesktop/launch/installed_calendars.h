// Finds the installed calendar application. Only for this folder.
#pragma once

#include "freedesktop/launch/application_start.h"

namespace quorvel::freedesktop::launch {

// The user's default if it can show an event or day from arguments, else an installed application
// that can, else the default. Null if there is none. Text editors do not count, nor do entries that
// run quorvel-open, which would start itself for ever.
EntryHandle installedCalendarApplication();

} // namespace quorvel::freedesktop::launch
