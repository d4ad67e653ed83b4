// The store of the user's calendars and events.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ns_date.h"
#include "platform/ui_color.h"

namespace quorvel::platform {

struct EKCalendar {
    std::string calendarIdentifier; // stable; without ':' and '/'
    std::string title;
    std::optional<UIColor> CGColor;
};

// The stored event that an occurrence belongs to.
struct EKPersistentEvent {
    std::string eventIdentifier; // CALENDAR:UID, and ":RID=<seconds>" for one of a repeated event
};

// One occurrence.
struct EKEvent {
    std::optional<std::string> title;
    NSDate startDate;
    NSDate endDate;
    std::optional<std::string> location;
    bool isAllDay = false;
    std::shared_ptr<const EKCalendar> calendar; // may be null
    EKPersistentEvent persistentEvent;
};

using EKCalendars = std::vector<std::shared_ptr<const EKCalendar>>;
using EKEvents = std::vector<std::shared_ptr<const EKEvent>>; // an entry may be null

// The occurrences that overlap [startDate, endDate] and belong to one of the calendars. A range
// over four years is cut to its first four; an empty list of calendars finds nothing.
struct EKEventPredicate {
    NSDate startDate;
    NSDate endDate;
    EKCalendars calendars;
};

// A fresh view of the calendars. Short-lived: what was changed since it was made may stay unseen.
class EKEventStore {
public:
    virtual ~EKEventStore() = default;

    virtual EKCalendars calendars() = 0; // in the store's order
    // Null where there is no such calendar.
    virtual std::shared_ptr<const EKCalendar> calendarWithIdentifier(std::string_view id) = 0;
    // Blocks until the occurrences are there; they come in the store's order.
    virtual EKEvents eventsMatchingPredicate(const EKEventPredicate& predicate) = 0;
};

class CalendarStores {
public:
    virtual ~CalendarStores() = default;
    virtual std::unique_ptr<EKEventStore> makeEventStore() = 0;
};

} // namespace quorvel::platform
