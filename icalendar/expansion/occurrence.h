// An occurrence of an event (RFC 5545 3.8.4.4, "recurrence instance"), and the window that a search
// covers.
#pragma once

#include <cstdint>
#include <optional>

#include "icalendar/expansion/loaded_file.h"

namespace quorvel::icalendar {

// Start and end are instants in seconds since 1970. Refers to the file, which must outlive it.
struct Occurrence {
    const LoadedFile* file = nullptr;
    const IcsEvent* event = nullptr; // the main event, or the override in its place
    std::int64_t start = 0;
    std::int64_t end = 0; // 23:59:59 of its last day where it is all-day
    bool isAllDay = false;
    // Of a repeated event or an override: the instant at which the rule placed it.
    std::optional<std::int64_t> recurrence;
};

// Both ends are instants in seconds since 1970 and belong to it.
struct Window {
    double from = 0;
    double to = 0;
    bool operator==(const Window&) const = default;
};

// Ends after the window's beginning, or starts at it; and starts at or before the window's end.
bool belongsTo(const Window& window, std::int64_t start, std::int64_t end);

} // namespace quorvel::icalendar
