// Corrects the time patterns of the locale data. Only for this folder, because it uses ICU types.
#pragma once

#include <unicode/locid.h>
#include <unicode/unistr.h>

#include "freedesktop/dates/clock_format.h"

namespace quorvel::freedesktop {

// The locale with the user's clock format as a keyword.
icu::Locale withClockFormat(icu::Locale locale, ClockFormat clockFormat);
// The skeleton with the hour fields, "j" included, of that clock format.
icu::UnicodeString skeletonWithClock(const icu::UnicodeString& skeleton, ClockFormat clockFormat);
// The pattern with the hour fields of that clock format. Adds or removes the AM/PM marker. Does not
// change quoted text.
icu::UnicodeString patternWithClock(const icu::UnicodeString& pattern, ClockFormat clockFormat);

// The pattern with a plain space beside the AM/PM marker.
icu::UnicodeString withPlainSpaces(icu::UnicodeString pattern);

// Applies a clock format in the locale's name ("en_US@hours=h23") to the short time in `pattern`.
// ICU itself applies it only to skeletons.
icu::UnicodeString withLocalesClock(icu::UnicodeString pattern, const icu::Locale& locale);

} // namespace quorvel::freedesktop
