// The options of the platform for a user who has chosen nothing on a command line: the machine's
// time zone, the environment's locale, the desktop's text scale, the usual calendars, the user's
// folders.
#pragma once

#include <string>
#include <vector>

#include "freedesktop/calendars/files/calendar_source.h"
#include "freedesktop/freedesktop_platform.h"

namespace quorvel::freedesktop {

struct ProgramFolders;

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

// Everything above, without a log and a handler of problems.
FreedesktopOptions userOptions(const ProgramFolders& folders);

} // namespace quorvel::freedesktop
