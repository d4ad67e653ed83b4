// Which program worked out what the index keeps: another one may read a calendar otherwise.
#pragma once

#include <cstdint>

namespace quorvel::freedesktop::calendars {

// Another one with each change of this folder's sources, of those of the dates, and of the zones'
// rules; and for each user of the system, as not all may read the same.
std::uint64_t engineVersion();

} // namespace quorvel::freedesktop::calendars
