// The calendars that a user names by a text, as sources of calendars.
#pragma once

#include <string>

#include "base/result.h"
#include "freedesktop/calendars/files/calendar_source.h"

namespace quorvel::freedesktop {

// A path, a URL, "eds:" or "thunderbird:", which must exist; the copy of a calendar on a server is
// in the user's cache and need not exist yet. The error is in the user's language. "-", standard
// input, is an error too.
Result<CalendarSource> namedCalendars(const std::string& name);

} // namespace quorvel::freedesktop
