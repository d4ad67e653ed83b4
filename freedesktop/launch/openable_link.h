// Decides which links and identifiers are passed to other programs: both may come from a calendar
// of unknown origin.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/result.h"

namespace quorvel::freedesktop {

// Accepts only the two schemes that the widget makes, and only links that are short enough for one
// argument of a process.
Result<void> checkLink(std::string_view link);

// The name of an application's desktop entry, for "org.example.App" and "org.example.App.desktop".
// Absent for an invalid identifier.
std::optional<std::string> desktopEntryName(std::string_view identifier);

// The beginning of a text, for a line of the log.
std::string shortened(std::string_view text);

} // namespace quorvel::freedesktop
