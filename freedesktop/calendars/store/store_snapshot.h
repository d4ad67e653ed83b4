// The values that stores, the calendar service and its reader exchange.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "base/content_hash.h"
#include "freedesktop/calendars/files/calendar_problem.h"
#include "freedesktop/dates/time_zone.h"
#include "icalendar/expansion/occurrences.h"
#include "platform/calendar_store.h"

namespace quorvel::freedesktop::calendars {

// The calendars at one moment, without their events. Immutable once made: from any thread.
struct StoreSnapshot {
    // Two snapshots of one reader with the same number have the same calendars, events and
    // problems, though the times of their files may differ. 0: nothing was read yet.
    std::uint64_t contentNumber = 0;
    Signature signature; // of the sources' scan
    // Every later change of the calendars will show in the signature of a scan.
    bool isSettled = false;
    bool isAnyReadable = false; // of the sources
    bool isAnyCalendar = false; // at least one calendar could be read
    platform::EKCalendars calendars;
    std::vector<std::string> stores;     // of the calendars, see LoadedCalendar::store
    std::vector<std::string> deselected; // identifiers, see LoadedCalendar::isDeselected
    std::vector<VersionedProblem> problems;
};

// Which events a store asks for. Immutable once made: from any thread.
struct SearchRequest {
    std::shared_ptr<const StoreSnapshot> snapshot; // never null
    std::shared_ptr<const TimeZone> userZone;      // never null
    icalendar::Window window;                      // what is searched, and cached
    icalendar::Window narrow;        // within the window; searched where the window holds too much
    platform::EKCalendars calendars; // some of the snapshot's, in its order
    // Whether both have the same result.
    bool operator==(const SearchRequest& other) const {
        return snapshot->contentNumber == other.snapshot->contentNumber &&
               userZone == other.userZone && window == other.window && narrow == other.narrow &&
               calendars == other.calendars;
    }
};

// Immutable once made: from any thread.
struct SearchResult {
    platform::EKEvents events; // in the store's order
    std::vector<VersionedProblem> problems;
    bool isNarrow = false; // these are the events of the narrow window only
};

} // namespace quorvel::freedesktop::calendars
