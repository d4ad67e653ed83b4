// Where Thunderbird's calendars are on this machine.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/result.h"
#include "base/translatable_text.h"
#include "freedesktop/calendars/files/calendar_source.h"

namespace quorvel::freedesktop::thunderbird {

// The name of the source is this, alone or followed by the folder of a profile, which may begin
// with "~/".
inline constexpr std::string_view sourceName = "thunderbird:";
inline constexpr std::string_view programName = "Thunderbird";

bool isThunderbird(const CalendarSource& source);

// The folders of the profiles: the one that the source names, else those that Thunderbird starts
// with, as a package of the system, of Flatpak or of Snap, the most recently used first. Each has
// preferences; none need exist.
std::vector<std::string> profilesOf(const CalendarSource& source);

// Fails where there is no profile. The error's `what` is a sentence about the source.
Result<void, TranslatableText> checkProfiles(const CalendarSource& source);

std::string preferencesPath(const std::string& profile);
std::string localDatabasePath(const std::string& profile);
std::string cacheDatabasePath(const std::string& profile);

// The folders in which a change may change the calendars, and by which names. They need not exist.
struct ProfileFolder {
    std::string path;
    bool (*matters)(std::string_view name);
};
std::vector<ProfileFolder> foldersToWatch(const CalendarSource& source);

} // namespace quorvel::freedesktop::thunderbird
