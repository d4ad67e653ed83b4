// The calendars that the desktop's own applications know.
#pragma once

#include <string>

namespace quorvel::freedesktop {

// Whether the desktop's calendar service has a source of that identifier. Runs the default main
// context for a few seconds at most; false where nobody answers.
bool isDesktopSource(const std::string& identifier);

} // namespace quorvel::freedesktop
