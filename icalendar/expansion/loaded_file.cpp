#include "icalendar/expansion/loaded_file.h"

#include <algorithm>

namespace quorvel::icalendar {

const ZoneName& zoneName(const LoadedFile& file, std::size_t index) {
    const auto& names = file.ics.zoneNames;
    return index < names.size() ? names[index] : file.cache.listedZones[index - names.size()];
}

std::uint32_t zoneIndex(LoadedFile& file, const ZoneName& name) {
    const auto& parsed = file.ics.zoneNames;
    const auto known = std::find(parsed.begin(), parsed.end(), name);
    if (known != parsed.end()) {
        return static_cast<std::uint32_t>(known - parsed.begin());
    }
    auto& listed = file.cache.listedZones;
    const auto found = std::find(listed.begin(), listed.end(), name);
    const auto index = static_cast<std::size_t>(found - listed.begin());
    if (found == listed.end()) {
        listed.push_back(name);
    }
    return static_cast<std::uint32_t>(parsed.size() + index);
}

} // namespace quorvel::icalendar
