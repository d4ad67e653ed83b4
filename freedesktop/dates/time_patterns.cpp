#include "freedesktop/dates/time_patterns.h"

#include <memory>
#include <string>

#include <unicode/dtptngen.h>
#include <unicode/smpdtfmt.h>

namespace quorvel::freedesktop {
namespace {

constexpr char16_t narrowSpace = u'\u202F';

bool isDayPeriodField(char16_t c) {
    return c == u'a' || c == u'b' || c == u'B';
}

icu::UnicodeString shortTimePattern(const icu::Locale& locale) {
    const std::unique_ptr<icu::DateFormat> format(
        icu::DateFormat::createTimeInstance(icu::DateFormat::kShort, locale));
    icu::UnicodeString pattern;
    if (const auto* const simple = dynamic_cast<const icu::SimpleDateFormat*>(format.get())) {
        simple->toPattern(pattern);
    }
    return pattern;
}

} // namespace

icu::UnicodeString withPlainSpaces(icu::UnicodeString pattern) {
    for (std::int32_t i = 0; i < pattern.length(); ++i) {
        const bool besideMarker =
            (i > 0 && isDayPeriodField(pattern.charAt(i - 1))) ||
            (i + 1 < pattern.length() && isDayPeriodField(pattern.charAt(i + 1)));
        if (pattern.charAt(i) == narrowSpace && besideMarker) {
            pattern.setCharAt(i, u' ');
        }
    }
    return pattern;
}

icu::UnicodeString withLocalesClock(icu::UnicodeString pattern, const icu::Locale& locale) {
    UErrorCode status = U_ZERO_ERROR;
    if (locale.getKeywordValue<std::string>("hours", status).empty() || U_FAILURE(status)) {
        return pattern;
    }
    const std::unique_ptr<icu::DateTimePatternGenerator> generator(
        icu::DateTimePatternGenerator::createInstance(locale, status));
    if (U_FAILURE(status) || !generator) {
        return pattern;
    }
    const icu::UnicodeString time = generator->getBestPattern(u"jmm", status);
    const icu::UnicodeString usual = shortTimePattern(locale);
    if (U_SUCCESS(status) && !time.isEmpty() && !usual.isEmpty()) {
        pattern.findAndReplace(usual, time);
    }
    return pattern;
}

} // namespace quorvel::freedesktop
