// The locale's pattern of an hour alone, read from ICU's data: making ICU's pattern generator takes
// a seventh of a short program's time. Only for this folder, because it uses ICU types.
#pragma once

#include <optional>

#include <unicode/locid.h>
#include <unicode/unistr.h>

#include "freedesktop/dates/clock_format.h"

namespace quorvel::freedesktop {

// The pattern that the generator makes of the skeleton "j", or of the hour field of `clockFormat`.
// `locale` has that clock format as its keyword. Absent where the data alone do not tell: other
// keywords, other calendars, and locales without data of their own.
std::optional<icu::UnicodeString> hourPattern(const icu::Locale& locale, ClockFormat clockFormat);

} // namespace quorvel::freedesktop
