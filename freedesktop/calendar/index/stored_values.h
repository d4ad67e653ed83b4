// What the index keeps, as bytes and back. What comes back is equal to what was put in; bytes that
// are something else give nothing.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "freedesktop/calendar/calendar_file.h"
#include "freedesktop/calendar/store_snapshot.h"

namespace quorvel::freedesktop::ics {

std::string bytesOfFile(const FileVersion& version, const icalendar::IcsFile& file);
// Absent where they are of another version of the file.
std::optional<icalendar::IcsFile> fileFromBytes(std::string_view bytes, const FileVersion& version);

// Without the events.
std::string bytesOfSnapshot(const StoreSnapshot& snapshot);
std::optional<StoreSnapshot> snapshotFromBytes(std::string_view bytes);

// The calendars are those that were searched.
std::string bytesOfSearch(const SearchResult& result, const platform::EKCalendars& calendars);
std::optional<SearchResult> searchFromBytes(std::string_view bytes,
                                            const platform::EKCalendars& calendars);

} // namespace quorvel::freedesktop::ics
