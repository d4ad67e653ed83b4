// Which calendars are searched, for which days, and the records of the events found.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "agenda/ek_event_qrv.h"
#include "platform/calendar_store.h"
#include "platform/platform.h"

namespace quorvel {

using EventRecords = std::vector<std::shared_ptr<const EKEventQRV>>;
// One list for all its readers: it never changes once it is made.
using SharedEventRecords = std::shared_ptr<const EventRecords>;

inline constexpr std::string_view stockCalendarPreferencesPath =
    "/private/var/mobile/Library/Preferences/com.apple.mobilecal.plist";
inline constexpr std::string_view calendarSelectionPath =
    "/var/mobile/Library/Preferences/org.quorvel.quorvel.calendars.plist";

// All of the store's calendars but those that the stock calendar application has switched off;
// none where its preferences cannot be read.
platform::EKCalendars calendarsOfStockApplication(platform::Preferences& preferences,
                                                  platform::EKEventStore& store);

// The calendars that the calendar-selection file names, in its order. An unknown one is logged and
// skipped. Nothing, logged too, where the file is missing, unreadable or empty.
std::optional<platform::EKCalendars> calendarsOfSelectionFile(platform::Preferences& preferences,
                                                              platform::EKEventStore& store,
                                                              platform::SystemLog& systemLog);

// From now to the end of today and that many days of 86400 seconds more.
platform::EKEventPredicate predicateForDays(const platform::DateServices& dateServices,
                                            platform::NSDate now, std::int64_t daysToDisplay,
                                            platform::EKCalendars calendars);

std::shared_ptr<const EKEventQRV> recordOfEvent(const platform::EKEvent& event);

// In the events' order, at most maxEvents of them unless that is below 1. A null event is logged
// and does not count.
EventRecords recordsOfEvents(const platform::EKEvents& events, std::int64_t maxEvents,
                             platform::SystemLog& systemLog);

// Searches a new store by the current settings and makes the records. Never fails.
EventRecords gatherEvents(const platform::Platform& platform);

} // namespace quorvel
