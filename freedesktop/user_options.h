// The options of the platform for a user who has chosen nothing on a command line: the machine's
// time zone, the environment's locale, the desktop's text scale, the usual calendars, the user's
// folders. For programs that are linked with the desktop's library.
#pragma once

#include "freedesktop/freedesktop_platform.h"

namespace quorvel::freedesktop {

struct ProgramFolders;

// Without a log, a handler of problems and a rendering.
FreedesktopOptions userOptions(const ProgramFolders& folders);

} // namespace quorvel::freedesktop
