#include "agenda/event_gathering.h"

#include <algorithm>
#include <string>
#include <utility>

#include "agenda/days.h"
#include "agenda/event_link.h"
#include "agenda/settings.h"
#include "base/time_units.h"
#include "platform/clock.h"
#include "platform/date_services.h"
#include "platform/preferences.h"
#include "platform/system_log.h"

namespace quorvel {

using namespace platform;

namespace {

// Empty where the key is absent or holds no list.
PropertyListArray deselectedCalendars(const PropertyListDictionary& preferences) {
    const PropertyListValue* value = objectForKey(preferences, "LastDeselectedCalendars");
    const auto* list = value != nullptr ? std::get_if<PropertyListArray>(&value->value) : nullptr;
    return list != nullptr ? *list : PropertyListArray();
}

bool listsIdentifier(const PropertyListArray& list, const std::string& identifier) {
    return std::any_of(list.begin(), list.end(), [&](const PropertyListValue& entry) {
        return stringValue(entry) == identifier;
    });
}

std::optional<EKCalendars> calendarsToSearch(const Platform& platform, EKEventStore& store) {
    if (settings::onlySelectedCalendars) {
        return calendarsOfStockApplication(platform.preferences, store);
    }
    return calendarsOfSelectionFile(platform.preferences, store, platform.systemLog);
}

} // namespace

EKCalendars calendarsOfStockApplication(Preferences& preferences, EKEventStore& store) {
    const auto dictionary = preferences.dictionaryWithContentsOfFile(stockCalendarPreferencesPath);
    if (!dictionary) {
        return {};
    }
    const PropertyListArray deselected = deselectedCalendars(*dictionary);
    EKCalendars selected;
    for (const auto& calendar : store.calendars()) {
        if (calendar && !listsIdentifier(deselected, calendar->calendarIdentifier)) {
            selected.push_back(calendar);
        }
    }
    return selected;
}

std::optional<EKCalendars> calendarsOfSelectionFile(Preferences& preferences, EKEventStore& store,
                                                    SystemLog& systemLog) {
    const auto identifiers = preferences.arrayWithContentsOfFile(calendarSelectionPath);
    if (!identifiers || identifiers->empty()) {
        systemLog.log("QRV: no enabled calendars found, not searching the DB!");
        return std::nullopt;
    }
    EKCalendars enabled;
    for (const PropertyListValue& entry : *identifiers) {
        const std::string identifier = stringValue(entry).value_or(std::string());
        if (auto calendar = store.calendarWithIdentifier(identifier)) {
            enabled.push_back(std::move(calendar));
        } else {
            systemLog.log("QRV: unable to find calendar with UUID " + identifier + ", skipping");
        }
    }
    return enabled;
}

EKEventPredicate predicateForDays(const DateServices& dateServices, NSDate now,
                                  std::int64_t daysToDisplay, EKCalendars calendars) {
    // Days of fixed length on purpose: over a clock change the end lies an hour off.
    const auto ahead = static_cast<NSTimeInterval>(daysToDisplay * secondsPerDay);
    const NSDate end = lastSecondOfDay(dateServices, now).dateByAddingTimeInterval(ahead);
    return {now, end, std::move(calendars)};
}

std::shared_ptr<const EKEventQRV> recordOfEvent(const EKEvent& event) {
    auto record = std::make_shared<EKEventQRV>();
    record->setTitle(event.title);
    record->setStartDate(event.startDate);
    record->setEndDate(event.endDate);
    record->setLocation(event.location);
    record->setAllDay(event.isAllDay);
    if (event.calendar) {
        record->setCalendarColor(event.calendar->CGColor);
    }
    record->setURL(eventLink(event.persistentEvent.eventIdentifier, event.startDate));
    return record;
}

EventRecords recordsOfEvents(const EKEvents& events, std::int64_t maxEvents, SystemLog& systemLog) {
    EventRecords records;
    for (const auto& event : events) {
        if (!event) {
            systemLog.log("QRV: skipping nil event...");
            continue;
        }
        records.push_back(recordOfEvent(*event));
        if (maxEvents >= 1 && static_cast<std::int64_t>(records.size()) >= maxEvents) {
            break;
        }
    }
    return records;
}

EventRecords gatherEvents(const Platform& platform) {
    const auto store = platform.calendarStores.makeEventStore();
    if (!store) {
        return {};
    }
    auto calendars = calendarsToSearch(platform, *store);
    if (!calendars) {
        return {};
    }
    const EKEventPredicate predicate =
        predicateForDays(platform.dateServices, platform.clock.now(), settings::daysToDisplay,
                         *std::move(calendars));
    return recordsOfEvents(store->eventsMatchingPredicate(predicate), settings::maxEventsToDisplay,
                           platform.systemLog);
}

} // namespace quorvel
