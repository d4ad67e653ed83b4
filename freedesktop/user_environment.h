// What the environment says about the user: the locale, where calendars usually are, the folders.
#pragma once

#include <string>
#include <vector>

#include "freedesktop/calendars/files/calendar_source.h"

namespace quorvel::freedesktop {

// From LC_ALL, LC_TIME and LANG, in the form of canonicalLocale().
std::string userLocale();
// Evolution Data Server where it is installed, the folders of calendars in the user's home, and
// Thunderbird. Any of them may be missing.
std::vector<CalendarSource> usualCalendars();
std::string userPreferencesFolder();
std::string userIndexFolder(); // empty: the user has no folder for caches
// Where a window stores its size; empty: the user has no folder for states.
std::string userWindowGeometryFile();
// See FreedesktopOptions::linkProgram.
std::string userLinkProgram();

} // namespace quorvel::freedesktop
