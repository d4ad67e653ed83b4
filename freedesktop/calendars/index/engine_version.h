// The version of everything that decides what the index contains.
#pragma once

#include <cstdint>

namespace quorvel::freedesktop::calendars {

// Changes with the sources by which calendars and dates are read, with the rules of the time zones,
// and with the user, as another user may be allowed to read other files.
std::uint64_t engineVersion();

} // namespace quorvel::freedesktop::calendars
