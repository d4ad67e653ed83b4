// The display names of time zones on Windows, such as "(UTC+01:00) Amsterdam, Berlin, Bern". Some
// programs write them instead of a zone identifier.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace quorvel::freedesktop {

// The offset in parentheses at the start of the text: "(UTC+01:00)", "(GMT-3)", "(GMT+05.30)",
// "(UTC)". In minutes east of UTC, standard time. Absent: there is none.
std::optional<int> statedOffset(std::string_view displayName);

// The IANA name of the zone, found by the places and the offset in front of them. Absent without an
// offset, or if no known place is within an hour of it. The text may have any length.
std::optional<std::string_view> zoneOfDisplayName(std::string_view displayName);

// A known zone: its places, separated by '|', and the offset that is shown before them.
struct DisplayedZone {
    int minutes; // east of UTC
    std::string_view places;
    std::string_view zone;
};
const std::vector<DisplayedZone>& displayedZones();

} // namespace quorvel::freedesktop
