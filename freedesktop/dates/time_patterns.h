// What is put right in the locale data's patterns of times. ICU types are used here: for this
// folder alone.
#pragma once

#include <unicode/locid.h>
#include <unicode/unistr.h>

#include "freedesktop/dates/clock_format.h"

namespace quorvel::freedesktop {

// The locale with the user's clock named in it.
icu::Locale withClockFormat(icu::Locale locale, ClockFormat clockFormat);
// The skeleton with its hours ("j" too) as that clock counts them.
icu::UnicodeString skeletonWithClock(const icu::UnicodeString& skeleton, ClockFormat clockFormat);
// The pattern with its hours as that clock counts them, and with the AM/PM marker that it needs or
// without the one that it must not have. Quoted text stays as it is.
icu::UnicodeString patternWithClock(const icu::UnicodeString& pattern, ClockFormat clockFormat);

// The pattern with a plain space beside the AM/PM marker.
icu::UnicodeString withPlainSpaces(icu::UnicodeString pattern);

// A locale may name its clock ("en_US@hours=h23"). The hour skeleton follows it by itself, the
// locale's short time does not: `pattern` with the short time in it replaced where it must be.
icu::UnicodeString withLocalesClock(icu::UnicodeString pattern, const icu::Locale& locale);

} // namespace quorvel::freedesktop
