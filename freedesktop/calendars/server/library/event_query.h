// One question to a calendar of the server, and its answer as an iCalendar.
#pragma once

#include <map>
#include <memory>
#include <string>

#include <libecal/libecal.h>

#include "freedesktop/calendars/server/data_server.h"
#include "freedesktop/glib/handles.h"

namespace quorvel::freedesktop::eds {

// Everything that repeats and every exception, wherever they lie.
//
// A search by time alone would do with fewer, but the server finds a changed exception by the time
// that it had when the calendar was loaded, and expands each rule to tell whether it meets the
// range. That takes it three times as long as handing them all out.
inline constexpr const char* repeatingEventsQuery = "(has-recurrences?)";

// Those that are once only and may meet the range, whatever the zones are. All of them where the
// range reaches to where the server counts no time.
std::string singleEventsQuery(SearchedRange range);

// Definitions of zones by name; empty where there is none.
using ZoneTexts = std::map<std::string, std::string>;

struct FetchedEvents {
    std::string text; // an iCalendar
    ErrorHandle error;
};

// Blocks until the server answers or the question is cancelled. `zones` are those that were asked
// for before, and grows.
FetchedEvents fetchEvents(ECalClient& client, SearchedRange range, ZoneTexts& zones,
                          GCancellable& cancellable);

} // namespace quorvel::freedesktop::eds
