// The names under which Windows shows its zones, such as "(UTC+01:00) Amsterdam, Berlin, Bern":
// some programs write them where the name of a zone belongs.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace quorvel::freedesktop {

// Whether the text begins with an offset in parentheses: "(UTC+01:00)", "(GMT-3)", "(GMT+05.30)",
// "(UTC)". Minutes east of UTC, as in winter; absent where it does not.
std::optional<int> statedOffset(std::string_view displayName);

// The IANA name of the zone, by its places and the offset in front of them. Absent without such an
// offset, and where no place is known that lies within an hour of it. The text may be longer than
// any name; what is too long is not known.
std::optional<std::string_view> zoneOfDisplayName(std::string_view displayName);

// What is known: the places of a zone, parted by '|', and the offset that is shown before them.
struct DisplayedZone {
    int minutes; // east of UTC
    std::string_view places;
    std::string_view zone;
};
const std::vector<DisplayedZone>& displayedZones();

} // namespace quorvel::freedesktop
