// Parses the two kinds of link that the widget makes.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "platform/ns_date.h"

namespace quorvel::freedesktop {

// x-apple-calevent://CALENDAR/UID?o=SECONDS. All slashes after the first belong to the UID, whose
// colons may have been replaced by slashes.
struct EventLink {
    std::string calendar;
    std::string uid;
    platform::NSDate start; // of the occurrence
};

// fantastical2://show?date=YEAR-MONTH-DAY
struct DayLink {
    int year = 0; // 1 to 9999
    int month = 0;
    int day = 0;
};

using CalendarLink = std::variant<EventLink, DayLink>;

// Absent if the text is neither.
std::optional<CalendarLink> parseCalendarLink(std::string_view text);

} // namespace quorvel::freedesktop
