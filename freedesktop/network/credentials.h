// Names and passwords of calendars, in the desktop's secret service. They are stored nowhere else.
#pragma once

#include <optional>
#include <string>

#include "base/result.h"
#include "freedesktop/network/download.h"

namespace quorvel::freedesktop::network {

// All block until the service answers. None asks the user to unlock anything but storing.

// Absent: none are stored, they are locked, or there is no secret service.
std::optional<Credentials> storedCredentials(const std::string& url);
// Replaces those that are stored. `host` is in the name by which the user finds them.
Result<void> storeCredentials(const std::string& url, const std::string& host,
                              const Credentials& credentials);
// Also succeeds if none are stored.
Result<void> removeCredentials(const std::string& url);

} // namespace quorvel::freedesktop::network
