// Which events of a calendar's files count: of several versions of one event the newest (RFC 5545
// 3.8.7.4, SEQUENCE); and which are overrides of single instances (RFC 5545 3.8.4.4,
// RECURRENCE-ID).
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
    std::vector<EventReference> future; // those of them with RANGE=THISANDFUTURE, the first ones
    bool hasMoreFuture = false;         // there are more of these than future holds
    EventReference mainEvent;           // its newest version; may be absent
};

// The overrides of a calendar's events, by UID, which is a part of the file's text.
using Overrides = std::unordered_map<std::string_view, OverrideSet>;

// An event of a calendar's files, and the days that it can touch, since 1970-01-01.
struct EventEntry {
    std::int32_t firstDay = 0;
    std::int32_t lastDay = 0;
    std::uint32_t file = 0;  // index in the files
    std::uint32_t event = 0; // index in IcsFile::events
};

// The overrides' keys and references point into the files, which must outlive it. Versions that are
// equally new are all in it, unless they begin at the same time.
struct EventSet {
    std::vector<EventEntry> entries; // main events and overrides
    Overrides overrides;
};

EventSet collectEvents(const std::vector<std::shared_ptr<LoadedFile>>& files);

} // namespace quorvel::icalendar
