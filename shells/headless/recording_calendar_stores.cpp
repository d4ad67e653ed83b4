#include "shells/headless/recording_calendar_stores.h"

#include <string_view>
#include <utility>

namespace quorvel::headless {

using platform::EKCalendar;
using platform::EKCalendars;
using platform::EKEventPredicate;
using platform::EKEvents;
using platform::EKEventStore;

namespace {

class RecordingEventStore : public EKEventStore {
public:
    RecordingEventStore(std::unique_ptr<EKEventStore> store, std::optional<RecordedQuery>& query)
        : m_store(std::move(store))
        , m_query(query) {}

    EKCalendars calendars() override { return m_store->calendars(); }
    std::shared_ptr<const EKCalendar> calendarWithIdentifier(std::string_view id) override {
        return m_store->calendarWithIdentifier(id);
    }
    EKEvents eventsMatchingPredicate(const EKEventPredicate& predicate) override {
        m_query = RecordedQuery{predicate, m_store->eventsMatchingPredicate(predicate)};
        return m_query->events;
    }

private:
    std::unique_ptr<EKEventStore> m_store;
    std::optional<RecordedQuery>& m_query;
};

} // namespace

std::unique_ptr<EKEventStore> RecordingCalendarStores::makeEventStore() {
    m_latestQuery.reset();
    return std::make_unique<RecordingEventStore>(m_stores.makeEventStore(), m_latestQuery);
}

} // namespace quorvel::headless
