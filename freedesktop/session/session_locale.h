// Which locale dates and times follow in a session.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace quorvel::freedesktop {

// What is known of the session's locale, by names as the environment writes them ("de_DE.UTF-8");
// empty: unset.
struct SessionLocale {
    std::string lcAll; // of the environment, as the next two
    std::string lcTime;
    std::string lang;
    std::string region; // that the user has set on the desktop
    // Assignments ("LC_TIME=de_DE.UTF-8"); absent: they have not changed since the session began,
    // and so the environment has them.
    std::optional<std::vector<std::string>> system;
};

// The first that is known: of LC_ALL, since who sets it wants that and nothing else; the region;
// the system's; the environment's. As canonicalLocale() gives it.
std::string localeOf(const SessionLocale& session);

} // namespace quorvel::freedesktop
