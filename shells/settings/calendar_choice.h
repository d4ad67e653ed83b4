// The calendars that the user has, and which of them the widget shows.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/result.h"
#include "freedesktop/preferences/calendar_selection.h"

namespace quorvel::settings_pages {

enum class SubscriptionState { none, fetched, neverFetched };

struct ListedCalendar {
    std::string identifier;
    std::string title;
    std::string colour; // "#RRGGBBAA"; empty: it has none
    std::string origin; // where it comes from; may be empty
    bool isShown = false;
    SubscriptionState subscription = SubscriptionState::none;
};

// What `quorvel settings calendars --json` prints. The error is another document.
Result<std::vector<ListedCalendar>> parseCalendarList(std::string_view document);

// Shows or hides one calendar of the list of the user's own.
freedesktop::CalendarSelection withCalendar(freedesktop::CalendarSelection selection,
                                            const std::string& identifier, bool isShown);

// No longer follows the desktop. Where the user's own list names none of the calendars, those
// become the list that are shown now, so that none disappears.
freedesktop::CalendarSelection withOwnList(freedesktop::CalendarSelection selection,
                                           const std::vector<ListedCalendar>& calendars);

} // namespace quorvel::settings_pages
