// What is put right in the locale data's patterns of times. ICU types are used here: for this
// folder alone.
#pragma once

#include <unicode/locid.h>
#include <unicode/unistr.h>

namespace quorvel::freedesktop {

// The pattern with a plain space beside the AM/PM marker.
icu::UnicodeString withPlainSpaces(icu::UnicodeString pattern);

// A locale may name its clock ("en_US@hours=h23"). The hour skeleton follows it by itself, the
// locale's short time does not: `pattern` with the short time in it replaced where it must be.
icu::UnicodeString withLocalesClock(icu::UnicodeString pattern, const icu::Locale& locale);

} // namespace quorvel::freedesktop
