// Shows an event or a day in the installed calendar application.
#pragma once

#include <string>

#include "base/result.h"
#include "freedesktop/launch/calendar_link.h"

namespace quorvel::freedesktop {

// Uses the user's default application if it can show an event or day from arguments, else an
// installed one that can, else the default as it is; never this program itself. Runs the default
// main context until the application has answered, a few seconds per step at most. `where` is empty
// in the error. The token lets the application come to the front; empty: none.
Result<void> openInCalendarApplication(const CalendarLink& link,
                                       const std::string& activationToken);

} // namespace quorvel::freedesktop
