// Passes on the calendar stores of a platform, and records the query that the widget makes.
#pragma once

#include <memory>
#include <optional>

#include "platform/calendar_store.h"

namespace quorvel::headless {

struct RecordedQuery {
    platform::EKEventPredicate predicate;
    platform::EKEvents events; // the store's result; an entry may be null
};

class RecordingCalendarStores : public platform::CalendarStores {
public:
    // `stores` outlives this object, which outlives the event stores that it makes.
    explicit RecordingCalendarStores(platform::CalendarStores& stores)
        : m_stores(stores) {}

    std::unique_ptr<platform::EKEventStore> makeEventStore() override;

    // The latest query of the latest event store; absent without one.
    const std::optional<RecordedQuery>& latestQuery() const { return m_latestQuery; }

private:
    platform::CalendarStores& m_stores;
    std::optional<RecordedQuery> m_latestQuery;
};

} // namespace quorvel::headless
