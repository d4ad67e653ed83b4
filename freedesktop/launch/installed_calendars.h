// Which of the installed applications shows calendars. For this folder alone.
#pragma once

#include "freedesktop/launch/application_start.h"

namespace quorvel::freedesktop::launch {

// The user's choice where it can be told what to show, else one that can, else his choice. Null
// where there is none: text editors are none, and nor is an entry that runs quorvel-open, which
// would come back here for ever.
EntryHandle installedCalendarApplication();

} // namespace quorvel::freedesktop::launch
