// What the user can name as calendars besides Evolution Data Server: a path, a URL, standard input.
#pragma once

#include <string>
#include <string_view>
#include <variant>

#include "base/result.h"

namespace quorvel::freedesktop {

struct LocalCalendars {
    std::string path;
};
struct StandardInput {};
// A calendar on a server. The URL may be a secret: whoever knows it can read the calendar. It is
// never part of a message.
struct RemoteCalendar {
    std::string url; // normalized; https, or http on this machine; without name and password
    std::string host;
};

using CalendarAddress = std::variant<LocalCalendars, StandardInput, RemoteCalendar>;

// A path, "-", or a URL with the scheme https, webcal, webcals, http or file. The error is in the
// user's language and says what to do; its `where` is empty.
Result<CalendarAddress> parseCalendarAddress(std::string_view text);

// Likewise, but fails if it is no calendar on a server.
Result<RemoteCalendar> parseRemoteCalendar(std::string_view text);

} // namespace quorvel::freedesktop
