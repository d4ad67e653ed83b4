// What --calendars names, as sources of calendars.
#pragma once

#include <string>
#include <vector>

#include "app/failure.h"
#include "freedesktop/calendars/files/calendar_source.h"

namespace quorvel::app {

// Reads standard input where it is named; at most once in a process. The calendars on servers are
// copies in the user's cache, which need not exist yet.
CommandResult<std::vector<freedesktop::CalendarSource>>
namedSources(const std::vector<std::string>& names);

// Of one name that is not standard input.
CommandResult<freedesktop::CalendarSource> namedSource(const std::string& name);

} // namespace quorvel::app
