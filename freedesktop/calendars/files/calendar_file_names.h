// Which files belong to calendars, by their names.
#pragma once

#include <string_view>

namespace quorvel::freedesktop::calendars {

// Ends in ".ics", in any case, behind at least one character.
bool hasCalendarSuffix(std::string_view name);
// "color" and "displayname", with which vdir collections describe the calendar of their folder.
bool isMetadataName(std::string_view name);
// Without ".ics" at its end.
std::string_view stemOf(std::string_view name);
// Behind the last slash that is not at the end.
std::string_view lastComponent(std::string_view path);
// One of them contains the other, and is long enough that this is no coincidence.
bool nameMatchesUid(std::string_view stem, std::string_view uid);

} // namespace quorvel::freedesktop::calendars
