#include "freedesktop/calendars/store/background_results.h"

#include <algorithm>
#include <iterator>
#include <tuple>
#include <unordered_map>
#include <unordered_set>

#include "freedesktop/calendars/store/search_window.h"

namespace quorvel::freedesktop::calendars {

using platform::EKCalendar;
using platform::EKCalendars;
using platform::EKEvent;
using platform::EKEventPredicate;
using platform::EKEvents;

namespace {

using Identifiers = std::unordered_set<std::string>;

Identifiers identifiersOf(const EKCalendars& calendars) {
    Identifiers identifiers;
    for (const auto& calendar : calendars) {
        if (calendar) {
            identifiers.insert(calendar->calendarIdentifier);
        }
    }
    return identifiers;
}

// Whether events belong to one of some calendars. The events of a result share few calendars, so
// that each identifier is looked up once.
class WantedCalendars {
public:
    explicit WantedCalendars(const EKCalendars& wanted)
        : m_wanted(identifiersOf(wanted)) {}

    bool contains(const EKCalendar* calendar) {
        if (calendar == nullptr) {
            return false;
        }
        const auto [entry, isNew] = m_known.try_emplace(calendar, false);
        if (isNew) {
            entry->second = m_wanted.contains(calendar->calendarIdentifier);
        }
        return entry->second;
    }

private:
    Identifiers m_wanted;
    std::unordered_map<const EKCalendar*, bool> m_known;
};

bool isSameCalendar(const std::shared_ptr<const EKCalendar>& one,
                    const std::shared_ptr<const EKCalendar>& other) {
    if (one == other || !one || !other) {
        return one == other;
    }
    return std::tie(one->calendarIdentifier, one->title, one->CGColor) ==
           std::tie(other->calendarIdentifier, other->title, other->CGColor);
}

bool isSameEvent(const std::shared_ptr<const EKEvent>& one,
                 const std::shared_ptr<const EKEvent>& other) {
    if (one == other || !one || !other) {
        return one == other;
    }
    const auto values = [](const EKEvent& event) {
        return std::tie(event.startDate, event.endDate, event.isAllDay, event.title, event.location,
                        event.persistentEvent.eventIdentifier);
    };
    return values(*one) == values(*other) && isSameCalendar(one->calendar, other->calendar);
}

bool isSameList(const EKCalendars& one, const EKCalendars& other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(), isSameCalendar);
}

bool isSameSearch(const BackgroundSearch& one, const BackgroundSearch& other) {
    return one.predicate.startDate == other.predicate.startDate &&
           one.predicate.endDate == other.predicate.endDate && one.userZone == other.userZone &&
           one.isOfAllCalendars == other.isOfAllCalendars &&
           isSameList(one.predicate.calendars, other.predicate.calendars);
}

bool isSameListing(const BackgroundResult& one, const BackgroundResult& other) {
    return one.isAnyReadable == other.isAnyReadable && one.deselected == other.deselected &&
           one.unreadable == other.unreadable && isSameList(one.calendars, other.calendars);
}

// As it appears to a store before the first result.
BackgroundResult unknownListing() {
    BackgroundResult unknown;
    unknown.isAnyReadable = true;
    return unknown;
}

} // namespace

bool namesAll(const EKEventPredicate& predicate, const EKCalendars& calendars) {
    WantedCalendars wanted(predicate.calendars);
    return std::all_of(calendars.begin(), calendars.end(),
                       [&](const auto& calendar) { return wanted.contains(calendar.get()); });
}

EKEventPredicate predicateFor(const BackgroundSearch& search, const EKCalendars& calendars) {
    EKEventPredicate predicate{search.predicate.startDate, search.predicate.endDate, {}};
    WantedCalendars wanted(search.predicate.calendars);
    std::copy_if(calendars.begin(), calendars.end(), std::back_inserter(predicate.calendars),
                 [&](const auto& calendar) {
                     return search.isOfAllCalendars || wanted.contains(calendar.get());
                 });
    return predicate;
}

EKEvents eventsWithin(const BackgroundResult* result, const BackgroundSearch& search) {
    const auto window = searchWindow(search.predicate, *search.userZone);
    if (result == nullptr || !window) {
        return {};
    }
    EKEvents events;
    addEventsWithin(*window, result->events, events);
    WantedCalendars wanted(search.predicate.calendars);
    std::erase_if(events,
                  [&](const auto& event) { return !wanted.contains(event->calendar.get()); });
    return events;
}

bool isLate(const BackgroundResult* result) {
    return result == nullptr || !result->search || result->isLate;
}

bool differsFromGiven(const BackgroundResult& result, const GivenResults& given) {
    if (!isSameListing(result, given.listing ? *given.listing : unknownListing())) {
        return true;
    }
    if (!given.search || !result.search || !isSameSearch(*result.search, *given.search)) {
        return false;
    }
    if (isLate(&result) != isLate(given.found.get())) {
        return true;
    }
    const EKEvents now = eventsWithin(&result, *given.search);
    const EKEvents before = eventsWithin(given.found.get(), *given.search);
    return !std::equal(now.begin(), now.end(), before.begin(), before.end(), isSameEvent);
}

} // namespace quorvel::freedesktop::calendars
