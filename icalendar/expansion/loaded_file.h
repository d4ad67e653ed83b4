// A parsed calendar file (RFC 5545 3.4) together with the cache of its expansion.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "icalendar/expansion/expansion_cache.h"
#include "icalendar/model/ics_file.h"

namespace quorvel::icalendar {

// The parsed file never changes; the cache is filled by searches. For one thread at a time.
struct LoadedFile {
    LoadedFile(std::string filePath, std::uint64_t fileVersion, IcsFile parsed)
        : path(std::move(filePath))
        , version(fileVersion)
        , ics(std::move(parsed)) {}

    std::string path;          // for problem messages
    std::uint64_t version = 0; // a different one after each change of the file; 0: it never changes
    const IcsFile ics;
    ExpansionCache cache;
};

// The name of a zone by its index in EventTime, and the index of a name. A name that no event's
// time has, only a date of RDATE or EXDATE, is added to the cache.
const ZoneName& zoneName(const LoadedFile& file, std::size_t index);
std::uint32_t zoneIndex(LoadedFile& file, const ZoneName& name);

// Refers to an event of the file; both null where there is none.
struct EventReference {
    LoadedFile* file = nullptr;
    const IcsEvent* event = nullptr;
};

} // namespace quorvel::icalendar
