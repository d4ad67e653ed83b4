// Parses the locale names of users and the environment.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quorvel::freedesktop {

// "de_DE", "de-DE", "de_DE.UTF-8@euro" -> "de_DE"; "C" and "POSIX" -> "en_US_POSIX". Script and
// extensions ("sr_RS@latin", "en-US-u-hc-h23") are retained. Absent for an unknown language or
// region, and for an invalid name.
std::optional<std::string> canonicalLocale(std::string_view name);

// The locale of dates and times from the values of LC_ALL, LC_TIME and LANG ("": unset): the first
// known one, else "en_US_POSIX".
std::string defaultLocale(std::string_view lcAll, std::string_view lcTime, std::string_view lang);

// Whether the language of a locale is written from right to left.
bool isWrittenRightToLeft(const std::string& locale);

} // namespace quorvel::freedesktop
