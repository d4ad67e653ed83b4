// Refreshes the copies of calendars on servers before a command that does not stay shows them.
#pragma once

#include "app/command_line.h"
#include "app/failure.h"
#include "freedesktop/freedesktop_platform.h"

namespace quorvel::app {

// Waits for what is due only as long as for other calendars, as the refresh continues by itself;
// but for a named calendar without a copy, and for those that --refresh asks for, until its end.
// A failure means that there is nothing to show of a calendar that was named.
CommandResult<void> refreshCopies(const CommandLine& line,
                                  const freedesktop::FreedesktopOptions& options);

// Whether all copies are current, after --refresh. Those that are not have been reported.
CommandResult<void> checkRefreshed(const freedesktop::FreedesktopOptions& options);

} // namespace quorvel::app
