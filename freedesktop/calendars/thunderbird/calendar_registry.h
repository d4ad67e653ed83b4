// Which calendars a profile has, from its preferences.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quorvel::freedesktop::thunderbird {

struct RegisteredCalendar {
    std::string id;         // the key of its rows in the databases
    std::string name;       // may be empty
    std::string colour;     // as it is written, such as "#ff7800"; may be empty
    bool isLocal = true;    // its events are in local.sqlite; false: copies of them in cache.sqlite
    bool isSelected = true; // Thunderbird's list has a tick beside it
    bool isCached = true;   // false: Thunderbird does not store the events of the server
};

// Those that are switched on, in the order in which Thunderbird lists them.
std::vector<RegisteredCalendar> registeredCalendars(std::string_view preferencesScript);

} // namespace quorvel::freedesktop::thunderbird
