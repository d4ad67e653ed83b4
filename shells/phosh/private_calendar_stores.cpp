#include "shells/phosh/private_calendar_stores.h"

#include <string>
#include <utility>

#include "freedesktop/language/messages.h"

namespace quorvel::phosh {

using platform::EKCalendar;
using platform::EKCalendars;
using platform::EKEvent;
using platform::EKEventPredicate;
using platform::EKEvents;
using platform::EKEventStore;

namespace {

std::shared_ptr<const EKEvent> withoutDetails(const std::shared_ptr<const EKEvent>& event) {
    if (!event) {
        return nullptr;
    }
    EKEvent hidden = *event;
    hidden.title = freedesktop::translated(hiddenTitle);
    hidden.location = std::nullopt;
    return std::make_shared<const EKEvent>(std::move(hidden));
}

class PrivateEventStore final : public EKEventStore {
public:
    PrivateEventStore(std::unique_ptr<EKEventStore> store,
                      const std::function<bool()>& showsDetails)
        : m_store(std::move(store))
        , m_showsDetails(showsDetails) {}

    EKCalendars calendars() override { return m_store->calendars(); }
    std::shared_ptr<const EKCalendar> calendarWithIdentifier(std::string_view id) override {
        return m_store->calendarWithIdentifier(id);
    }
    EKEvents eventsMatchingPredicate(const EKEventPredicate& predicate) override {
        EKEvents events = m_store->eventsMatchingPredicate(predicate);
        if (!m_showsDetails()) {
            for (auto& event : events) {
                event = withoutDetails(event);
            }
        }
        return events;
    }

private:
    std::unique_ptr<EKEventStore> m_store;
    std::function<bool()> m_showsDetails;
};

} // namespace

PrivateCalendarStores::PrivateCalendarStores(platform::CalendarStores& stores,
                                             std::function<bool()> showsDetails)
    : m_stores(stores)
    , m_showsDetails(std::move(showsDetails)) {}

std::unique_ptr<EKEventStore> PrivateCalendarStores::makeEventStore() {
    return std::make_unique<PrivateEventStore>(m_stores.makeEventStore(), m_showsDetails);
}

} // namespace quorvel::phosh
