// What a store shows: the calendars at one moment, and what a search of them comes to.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "base/content_hash.h"
#include "freedesktop/calendars/files/calendar_files.h"
#include "freedesktop/calendars/files/loaded_calendar.h"
#include "icalendar/expansion/occurrences.h"
#include "platform/calendar_store.h"

namespace quorvel::freedesktop::calendars {

using LoadedCalendars = std::vector<std::shared_ptr<LoadedCalendar>>;

// Shared between threads: the mutex over the reader guards `isSettled` and `loaded`; nothing else
// changes once the snapshot is made.
struct StoreSnapshot {
    Signature signature;    // of what was seen on disk
    bool isSettled = false; // whatever changes afterwards shows in the signature
    bool isAnyReadable = false;
    bool isAnyCalendar = false;
    platform::EKCalendars calendars;
    std::vector<VersionedProblem> problems;
    std::shared_ptr<const LoadedCalendars> loaded; // null: nobody has asked for events yet
};

struct SearchResult {
    platform::EKEvents events; // in the store's order
    std::vector<VersionedProblem> problems;
    bool isNarrow = false; // of the narrow window alone
};

} // namespace quorvel::freedesktop::calendars
