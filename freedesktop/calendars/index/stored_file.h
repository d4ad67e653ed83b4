// A parsed calendar file as the bytes that the index stores, and back.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "freedesktop/io/file_version.h"
#include "icalendar/model/ics_file.h"

namespace quorvel::freedesktop::calendars {

std::string bytesOfFile(const FileVersion& version, const icalendar::IcsFile& file);
// Equal to the file that was stored. Absent where the bytes are of another version of the file, or
// are damaged.
std::optional<icalendar::IcsFile> fileFromBytes(std::string_view bytes, const FileVersion& version);

} // namespace quorvel::freedesktop::calendars
