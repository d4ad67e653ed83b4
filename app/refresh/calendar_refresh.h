// Refreshes the copy of one calendar.
#pragma once

#include <string>

#include "base/result.h"
#include "freedesktop/network/download.h"

namespace quorvel::app {

struct RefreshOptions {
    std::string cacheFolder;
    std::string certificateAuthorities; // a file; empty: those of the system
    double timeout = 30;                // seconds for one calendar
};

enum class RefreshOutcome { current, failed };

// Blocks, for an unlimited time. What the server does wrong is written to the state of the copy,
// which stays as it is. An error means that the cache cannot be written.
Result<RefreshOutcome> refreshCalendar(const std::string& url, const RefreshOptions& options);

// Writes that a refresh has failed, and removes what it has left.
Result<void> recordFailure(const std::string& url, const RefreshOptions& options,
                           const freedesktop::network::DownloadFailure& failure);

} // namespace quorvel::app
