// Which links and identifiers leave the program at all: both may come from a stranger's calendar.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quorvel::freedesktop {

// Why the link is not opened; absent where it may be. Only the two schemes that the widget makes
// are opened, and only links that are short enough for one argument of a process.
std::optional<std::string> problemWithLink(std::string_view link);

// The name of the desktop entry of an application: "org.example.App" and "org.example.App.desktop"
// alike. Absent for what can be no identifier.
std::optional<std::string> desktopEntryName(std::string_view identifier);

// The beginning of a text, for a line of the log.
std::string shortened(std::string_view text);

} // namespace quorvel::freedesktop
