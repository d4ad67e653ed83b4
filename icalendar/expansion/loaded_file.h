// A parsed calendar file and what its expansion has worked out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "icalendar/expansion/expansion_cache.h"
#include "icalendar/model/ics_file.h"

namespace quorvel::icalendar {

// A parsed file, which stays as it was parsed, with what is worked out for it on demand.
struct LoadedFile {
    LoadedFile(std::string filePath, std::uint64_t fileVersion, IcsFile parsed)
        : path(std::move(filePath))
        , version(fileVersion)
        , ics(std::move(parsed)) {}

    std::string path;          // for messages
    std::uint64_t version = 0; // another one after each change; 0: it never changes
    const IcsFile ics;
    ExpansionCache cache;
};

// The name of a zone by the index that EventTime has, and the counterpart: a name that no parsed
// time bears is added to the cache.
const ZoneName& zoneName(const LoadedFile& file, std::size_t index);
std::uint32_t zoneIndex(LoadedFile& file, const ZoneName& name);

struct EventReference {
    LoadedFile* file = nullptr;
    const IcsEvent* event = nullptr;
};

} // namespace quorvel::icalendar
