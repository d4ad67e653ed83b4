// The calendars of the desktop's own applications.
#pragma once

#include <string>

namespace quorvel::freedesktop {

// Whether the desktop's calendar service has a source with that identifier. False if the service
// does not answer. Runs the default main context, for a few seconds at most.
bool isDesktopSource(const std::string& identifier);

} // namespace quorvel::freedesktop
