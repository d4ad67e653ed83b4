// The calendars on servers that the user has subscribed to, in a property list of the preferences
// folder.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/result.h"

namespace quorvel::freedesktop {

struct Subscription {
    std::string url; // as in RemoteCalendar
    std::string host;
    std::optional<std::string> title;  // replaces the calendar's own
    std::optional<std::string> colour; // likewise, such as "#336699"
    bool hasPassword = false;          // the secret service has a name and a password
    bool operator==(const Subscription&) const = default;
};

inline constexpr std::string_view subscriptionListName = "org.quorvel.quorvel.subscriptions.plist";

// In the order of the file; empty without one. An entry without a valid address is left out, and a
// further one with the same address.
Result<std::vector<Subscription>> readSubscriptions(const std::string& preferencesFolder);

// These change only the entry of the URL; the rest of the file stays. A new file is readable by the
// user alone, as addresses may be secrets. The error names the file.

// Appends the subscription, or replaces what the entry of its URL says about what is present.
Result<void> storeSubscription(const std::string& preferencesFolder,
                               const Subscription& subscription);
// Also succeeds without such an entry.
Result<void> removeSubscription(const std::string& preferencesFolder, const std::string& url);

} // namespace quorvel::freedesktop
