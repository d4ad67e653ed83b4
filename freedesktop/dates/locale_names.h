// Locale identifiers as the user and the environment write them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quorvel::freedesktop {

// "de_DE", "de-DE", "de_DE.UTF-8@euro" -> "de_DE"; "C" and "POSIX" -> "en_US_POSIX". Script and
// extensions ("sr_RS@latin", "en-US-u-hc-h23") are kept. Absent for a language or region that is
// known to nobody, and for what is no locale at all.
std::optional<std::string> canonicalLocale(std::string_view name);

// The locale for dates and times, from the values of LC_ALL, LC_TIME and LANG ("" where unset):
// the first that is known, else "en_US_POSIX".
std::string defaultLocale(std::string_view lcAll, std::string_view lcTime, std::string_view lang);

} // namespace quorvel::freedesktop
