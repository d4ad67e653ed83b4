// Snapshots and search results as the bytes that the index stores, and back.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "freedesktop/calendars/store/store_snapshot.h"

namespace quorvel::freedesktop::calendars {

// Without the events.
std::string bytesOfSnapshot(const StoreSnapshot& snapshot);
// Absent where the bytes are damaged.
std::optional<StoreSnapshot> snapshotFromBytes(std::string_view bytes);

// The calendars are those that were searched.
std::string bytesOfSearch(const SearchResult& result, const platform::EKCalendars& calendars);
// Absent where the bytes are damaged, or name more calendars than there are.
std::optional<SearchResult> searchFromBytes(std::string_view bytes,
                                            const platform::EKCalendars& calendars);

} // namespace quorvel::freedesktop::calendars
