// Reads the events of one of Thunderbird's calendar databases.
#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "base/result.h"
#include "base/translatable_text.h"
#include "icalendar/model/ics_file.h"

namespace quorvel::freedesktop::thunderbird {

struct DatabaseLimits {
    // See IcsFileParser; outlives the call.
    const std::function<bool(std::string_view)>& zoneIsKnown;
    const std::atomic<bool>* isCancelled = nullptr; // may be null: it is never cancelled
    std::size_t mostBytes = std::size_t{64} << 20U; // of all parsed calendars in memory
    double longest = 30;                            // seconds
};

// The calendars with these identifiers, each parsed, by identifier. One without rows is empty. A
// database without any table has empty calendars. The database must be the caller's own copy:
// SQLite may write to it. The rows come from another program and may be anything; the error
// is a sentence about "it", the database.
Result<std::map<std::string, icalendar::IcsFile>, TranslatableText>
readCalendars(const std::string& path, const std::vector<std::string>& identifiers,
              const DatabaseLimits& limits);

} // namespace quorvel::freedesktop::thunderbird
