// The subscriptions behind the pages: which there are, and the commands that change them.
#pragma once

#include <string>
#include <vector>

#include "shells/settings/calendar_choice.h"

namespace quorvel::settings_pages {

struct ListedSubscription {
    std::string identifier; // of the calendar
    std::string title;      // as the user knows it
    std::string host;
};

// Those of the list in that folder; none where it cannot be read, which the widget reports.
std::vector<ListedSubscription> readSubscriptionList(const std::string& preferencesFolder);

// Marks the calendars that are subscribed to, and appends those that were never fetched.
std::vector<ListedCalendar> withSubscriptions(std::vector<ListedCalendar> calendars,
                                              const std::vector<ListedSubscription>& subscriptions);

// `program`: the path of `quorvel`. The results are the program and its arguments.
// The address is the line that is written to standard input.
std::vector<std::string> subscribeCommand(const std::string& program,
                                          const std::string& preferencesFolder);
std::vector<std::string> unsubscribeCommand(const std::string& program,
                                            const std::string& preferencesFolder,
                                            const std::string& identifier);

} // namespace quorvel::settings_pages
