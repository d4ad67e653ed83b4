// The two kinds of link that the widget makes, taken apart.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "platform/ns_date.h"

namespace quorvel::freedesktop {

// x-apple-calevent://CALENDAR/UID?o=SECONDS. The slashes behind the first one belong to the UID;
// they may have been colons.
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

// Absent where the text is neither.
std::optional<CalendarLink> parseCalendarLink(std::string_view text);

} // namespace quorvel::freedesktop
