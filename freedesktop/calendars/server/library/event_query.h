// Fetches events from a calendar of the server, as an iCalendar.
#pragma once

#include <map>
#include <memory>
#include <string>

#include <libecal/libecal.h>

#include "freedesktop/calendars/server/data_server.h"
#include "freedesktop/glib/handles.h"

namespace quorvel::freedesktop::eds {

// All events that repeat and all exceptions, at any time.
//
// A search by time would return fewer. But the server finds a changed exception by the time that it
// had when the calendar was loaded, and expands each rule to find out whether it meets the range,
// which takes it three times as long as returning all.
inline constexpr const char* repeatingEventsQuery = "(has-recurrences?)";

// The events that do not repeat and may meet the range in any time zone. All of them where the
// range extends beyond the times that the server can represent.
std::string singleEventsQuery(SearchedRange range);

// Definitions of time zones by name; empty for a zone without one.
using ZoneTexts = std::map<std::string, std::string>;

struct FetchedEvents {
    std::string text; // an iCalendar
    ErrorHandle error;
};

// Blocks until the server answers or the request is cancelled. `zones` caches those that were
// fetched before, and grows.
FetchedEvents fetchEvents(ECalClient& client, SearchedRange range, ZoneTexts& zones,
                          GCancellable& cancellable);

} // namespace quorvel::freedesktop::eds
