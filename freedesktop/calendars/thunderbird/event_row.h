// One event as Thunderbird's databases store it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace quorvel::freedesktop::thunderbird {

struct StoredTime {
    std::int64_t instant = 0; // seconds since 1970; of a floating time as if it were one of UTC
    std::string zone;         // a name, "UTC", "floating", a whole VTIMEZONE; may be empty
};

struct EventRow {
    std::string id; // the UID
    std::string title;
    std::string location;
    std::string status;
    std::optional<StoredTime> start;
    std::optional<StoredTime> end;          // of all-day events the day behind the last one
    std::optional<StoredTime> recurrenceId; // absent: it is no changed occurrence
    bool isAllDay = false;
    bool isRecurrenceIdDate = false;
    std::string rules; // lines of an iCalendar: RRULE, EXRULE, RDATE, EXDATE
};

} // namespace quorvel::freedesktop::thunderbird
