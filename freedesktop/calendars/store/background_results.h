// What a background thread finds in the calendars of a server, and the rules by which stores use
// it.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "freedesktop/calendars/files/calendar_problem.h"
#include "freedesktop/dates/time_zone.h"
#include "platform/calendar_store.h"

namespace quorvel::freedesktop::calendars {

// What a store was asked.
struct BackgroundSearch {
    platform::EKEventPredicate predicate;
    std::shared_ptr<const TimeZone> userZone; // never null
    // The predicate names all calendars that the store had, which may be none because none was
    // known yet: those that have been added since are searched as well.
    bool isOfAllCalendars = false;
};

// Immutable, as are its calendars and events.
struct BackgroundResult {
    platform::EKCalendars calendars;
    std::vector<std::string> deselected; // identifiers
    bool isAnyReadable = false;
    std::optional<BackgroundSearch> search; // absent: no store has been asked for events yet
    platform::EKEvents events;              // of that search, in the store's order
    bool isLate = false;                    // the inner stores did not know everything in time
    std::vector<CalendarProblem> unreadable = {};
};

// What the latest store was given.
struct GivenResults {
    std::shared_ptr<const BackgroundResult> listing; // null: nothing was known yet
    std::optional<BackgroundSearch> search;          // absent: the store was not asked for events
    std::shared_ptr<const BackgroundResult> found;   // the events came from it; may be null
};

// Whether the search names all calendars of the list.
bool namesAll(const platform::EKEventPredicate& predicate, const platform::EKCalendars& calendars);

// The predicate for a store that has these calendars.
platform::EKEventPredicate predicateFor(const BackgroundSearch& search,
                                        const platform::EKCalendars& calendars);

// Those events of the result that match the search. The result may be null, and of another search.
platform::EKEvents eventsWithin(const BackgroundResult* result, const BackgroundSearch& search);

// Whether the events are not, or not completely, known. The result may be null.
bool isLate(const BackgroundResult* result);

// Whether a store would be given something else now. The events of another search are not compared,
// as the result of the store's own one is still to come.
bool differsFromGiven(const BackgroundResult& result, const GivenResults& given);

} // namespace quorvel::freedesktop::calendars
