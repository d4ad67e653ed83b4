#include "platform/memory/memory_calendar_stores.h"

#include <algorithm>
#include <utility>

namespace quorvel::platform::memory {

namespace {

constexpr NSTimeInterval fourYears = 4 * 365.25 * 86400;

bool isOneOf(const EKCalendars& calendars, const std::shared_ptr<const EKCalendar>& calendar) {
    return calendar && std::any_of(calendars.begin(), calendars.end(), [&](const auto& one) {
               return one && one->calendarIdentifier == calendar->calendarIdentifier;
           });
}

bool overlaps(const EKEvent& event, NSDate from, NSDate to) {
    return (event.endDate > from || event.startDate == from) && event.startDate <= to;
}

class MemoryEventStore : public EKEventStore {
public:
    explicit MemoryEventStore(MemoryCalendarStores& owner)
        : m_owner(owner)
        , m_calendars(owner.calendars)
        , m_events(owner.events)
        , m_answer(owner.answer) {}

    EKCalendars calendars() override { return m_calendars; }

    std::shared_ptr<const EKCalendar> calendarWithIdentifier(std::string_view id) override {
        const auto found =
            std::find_if(m_calendars.begin(), m_calendars.end(), [&](const auto& calendar) {
                return calendar && calendar->calendarIdentifier == id;
            });
        return found == m_calendars.end() ? nullptr : *found;
    }

    EKEvents eventsMatchingPredicate(const EKEventPredicate& predicate) override {
        m_owner.predicates.push_back(predicate);
        return m_answer ? *m_answer : eventsMatching(m_events, predicate);
    }

private:
    MemoryCalendarStores& m_owner;
    EKCalendars m_calendars;
    EKEvents m_events;
    std::optional<EKEvents> m_answer;
};

} // namespace

EKEvents eventsMatching(const EKEvents& events, const EKEventPredicate& predicate) {
    EKEvents found;
    if (predicate.calendars.empty()) {
        return found;
    }
    const NSDate from = predicate.startDate;
    const NSDate to = std::min(predicate.endDate, from.dateByAddingTimeInterval(fourYears));
    std::copy_if(events.begin(), events.end(), std::back_inserter(found), [&](const auto& event) {
        return !event ||
               (isOneOf(predicate.calendars, event->calendar) && overlaps(*event, from, to));
    });
    return found;
}

std::unique_ptr<EKEventStore> MemoryCalendarStores::makeEventStore() {
    ++storesMade;
    return std::make_unique<MemoryEventStore>(*this);
}

std::shared_ptr<const EKCalendar> MemoryCalendarStores::addCalendar(std::string identifier,
                                                                    std::string title,
                                                                    std::optional<UIColor> color) {
    auto calendar = std::make_shared<const EKCalendar>(
        EKCalendar{std::move(identifier), std::move(title), color});
    calendars.push_back(calendar);
    return calendar;
}

std::shared_ptr<const EKEvent> MemoryCalendarStores::addEvent(EKEvent event) {
    auto added = std::make_shared<const EKEvent>(std::move(event));
    events.push_back(added);
    return added;
}

} // namespace quorvel::platform::memory
