// Today's date for the window's header.
#pragma once

#include <string>

namespace quorvel::platform {
struct Platform;
} // namespace quorvel::platform

namespace quorvel::window {

// Weekday, day and month of the platform's clock, in the order of the user's locale: "Tuesday,
// March 10".
std::string todayText(const platform::Platform& platform);

} // namespace quorvel::window
