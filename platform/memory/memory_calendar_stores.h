// Calendars and events from lists, and a record of the searches.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/calendar_store.h"

namespace quorvel::platform::memory {

// The public lists may be changed at any time; a store has the lists of the moment it was made.
// The stores must not outlive this object.
class MemoryCalendarStores : public CalendarStores {
public:
    std::unique_ptr<EKEventStore> makeEventStore() override;

    std::shared_ptr<const EKCalendar> addCalendar(std::string identifier, std::string title,
                                                  std::optional<UIColor> color = std::nullopt);
    std::shared_ptr<const EKEvent> addEvent(EKEvent event);

    EKCalendars calendars;
    // A null entry is found by every search that names a calendar.
    EKEvents events;
    // Where present, every search gives this list, whatever it asks for.
    std::optional<EKEvents> answer;

    std::size_t storesMade = 0;
    std::vector<EKEventPredicate> predicates; // one a search, in order
};

// The entries that the predicate asks for, in their order.
EKEvents eventsMatching(const EKEvents& events, const EKEventPredicate& predicate);

} // namespace quorvel::platform::memory
