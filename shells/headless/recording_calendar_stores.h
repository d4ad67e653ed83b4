// The calendar stores of a platform, with a record of what the widget asked of them.
#pragma once

#include <memory>
#include <optional>

#include "platform/calendar_store.h"

namespace quorvel::headless {

struct RecordedQuery {
    platform::EKEventPredicate predicate;
    platform::EKEvents events; // as the store gave them; an entry may be null
};

class RecordingCalendarStores : public platform::CalendarStores {
public:
    // `stores` outlives this object, which outlives the stores that it makes.
    explicit RecordingCalendarStores(platform::CalendarStores& stores)
        : m_stores(stores) {}

    std::unique_ptr<platform::EKEventStore> makeEventStore() override;

    // The query that the latest store was asked; absent where it was asked none.
    const std::optional<RecordedQuery>& latestQuery() const { return m_latestQuery; }

private:
    platform::CalendarStores& m_stores;
    std::optional<RecordedQuery> m_latestQuery;
};

} // namespace quorvel::headless
