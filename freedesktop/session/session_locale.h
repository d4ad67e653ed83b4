// Determines the locale of dates and times in a session.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace quorvel::freedesktop {

// All settings of the locale, in the form of the environment ("de_DE.UTF-8"); empty: unset.
struct SessionLocale {
    std::string lcAll;  // from the environment
    std::string lcTime; // likewise
    std::string lang;   // likewise
    std::string region; // set by the user on the desktop
    // The system's assignments ("LC_TIME=de_DE.UTF-8"). Absent: they have not changed since the
    // session began, so the environment has the same values.
    std::optional<std::vector<std::string>> system;
};

// The first known locale of: LC_ALL, which overrides everything; the region; the system's
// assignments, or without any the environment. In the form of canonicalLocale().
std::string localeOf(const SessionLocale& session);

} // namespace quorvel::freedesktop
