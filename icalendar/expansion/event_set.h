// Which events of a calendar's files count: of several versions of one event the newest (RFC 5545
// 3.8.7.4, SEQUENCE), and the overrides of single instances (RFC 5545 3.8.4.4, RECURRENCE-ID).
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "icalendar/expansion/loaded_file.h"

namespace quorvel::icalendar {

// The overrides of one UID, sorted by the local time that they override, and the newest first.
struct OverrideSet {
    std::vector<EventReference> all;
    std::vector<EventReference> future; // those of them that hold for what follows as well
    bool hasMoreFuture = false;         // than future holds
    EventReference mainEvent;           // the newest version of the main event; may be absent
};

// The overrides of a calendar's events, by UID.
using Overrides = std::unordered_map<std::string_view, OverrideSet>;

// An event of a calendar's files, and the days that it can touch.
struct EventEntry {
    std::int32_t firstDay = 0;
    std::int32_t lastDay = 0;
    std::uint32_t file = 0;
    std::uint32_t event = 0; // of the file
};

// Versions that are equally new are all in it, unless they begin alike.
struct EventSet {
    std::vector<EventEntry> entries; // overrides among them
    Overrides overrides;
};

EventSet collectEvents(const std::vector<std::shared_ptr<LoadedFile>>& files);

} // namespace quorvel::icalendar
