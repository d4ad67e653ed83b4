// ICU's relative formatter uses the system's clock. It only supplies the words, by formatting the
// days around the system's today; the caller chooses the word by the platform's clock.
#include "freedesktop/dates/relative_day_words.h"

#include <cmath>

#include <unicode/ucal.h>
#include <unicode/udat.h>

#include "freedesktop/dates/time_patterns.h"

namespace quorvel::freedesktop {
namespace {

constexpr double millisecondsPerDay = 86400000;
constexpr int mostAttempts = 4;

icu::LocalUDateFormatPointer openFormat(const icu::Locale& locale, UDateFormatStyle date,
                                        UDateFormatStyle time, UDisplayContext context) {
    UErrorCode status = U_ZERO_ERROR;
    icu::LocalUDateFormatPointer format(
        udat_open(time, date, locale.getName(), u"UTC", -1, nullptr, 0, &status));
    if (U_SUCCESS(status)) {
        udat_setContext(format.getAlias(), context, &status);
    }
    return format;
}

icu::UnicodeString patternOf(const icu::LocalUDateFormatPointer& format) {
    icu::UnicodeString pattern;
    if (format.isNull()) {
        return pattern;
    }
    constexpr std::int32_t capacity = 256;
    UErrorCode status = U_ZERO_ERROR;
    char16_t* const buffer = pattern.getBuffer(capacity);
    const std::int32_t length = udat_toPattern(format.getAlias(), false, buffer, capacity, &status);
    pattern.releaseBuffer(U_SUCCESS(status) ? length : 0);
    return pattern;
}

icu::UnicodeString formatted(const icu::LocalUDateFormatPointer& format, double date) {
    icu::UnicodeString text;
    if (format.isNull()) {
        return text;
    }
    constexpr std::int32_t capacity = 256;
    UErrorCode status = U_ZERO_ERROR;
    char16_t* const buffer = text.getBuffer(capacity);
    const std::int32_t length =
        udat_format(format.getAlias(), date, buffer, capacity, nullptr, &status);
    text.releaseBuffer(U_SUCCESS(status) ? length : 0);
    return text;
}

double systemDay() {
    return std::floor(ucal_getNow() / millisecondsPerDay);
}

icu::UnicodeString quoted(icu::UnicodeString word) {
    word.findAndReplace(u"'", u"''");
    return u"'" + word + u"'";
}

} // namespace

RelativeDayWords::RelativeDayWords(const icu::Locale& locale)
    : m_locale(locale) {
    readPatterns();
}

// The pattern for date and time contains both single patterns; the remainder joins them. Locales
// have a special joining pattern for relative dates, so it is taken from the relative formatter.
void RelativeDayWords::readPatterns() {
    const auto pattern = [this](UDateFormatStyle date, UDateFormatStyle time) {
        return patternOf(openFormat(m_locale, date, time, UDISPCTX_CAPITALIZATION_NONE));
    };
    m_plainFormat =
        openFormat(m_locale, UDAT_SHORT_RELATIVE, UDAT_NONE, UDISPCTX_CAPITALIZATION_NONE);
    m_datePattern = patternOf(m_plainFormat);
    m_timePattern = pattern(UDAT_NONE, UDAT_SHORT);
    const icu::UnicodeString both = pattern(UDAT_SHORT_RELATIVE, UDAT_SHORT);
    const std::int32_t date = both.indexOf(m_datePattern);
    const std::int32_t time = both.indexOf(m_timePattern);
    if (date < 0 || time < 0) {
        m_betweenThem = u" ";
    } else {
        m_dateFirst = date < time;
        const std::int32_t first = m_dateFirst ? date : time;
        const std::int32_t second = m_dateFirst ? time : date;
        const std::int32_t firstEnd =
            first + (m_dateFirst ? m_datePattern : m_timePattern).length();
        const std::int32_t secondEnd =
            second + (m_dateFirst ? m_timePattern : m_datePattern).length();
        m_beforeFirst = icu::UnicodeString(both, 0, first);
        m_betweenThem = icu::UnicodeString(both, firstEnd, second - firstEnd);
        m_afterSecond = icu::UnicodeString(both, secondEnd);
    }
    m_timePattern = withPlainSpaces(withLocalesClock(m_timePattern, m_locale));
}

void RelativeDayWords::openFormats() {
    m_listItemFormat = openFormat(m_locale, UDAT_SHORT_RELATIVE, UDAT_NONE,
                                  UDISPCTX_CAPITALIZATION_FOR_UI_LIST_OR_MENU);
    m_dateFormat = openFormat(m_locale, UDAT_SHORT, UDAT_NONE, UDISPCTX_CAPITALIZATION_NONE);
}

// ICU prints a day without a word as a plain date. Repeats everything if the system's clock passes
// midnight meanwhile.
RelativeDayWords::Word RelativeDayWords::readWord(std::int64_t day) {
    if (m_dateFormat.isNull()) {
        openFormats();
    }
    Word word;
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        const double today = systemDay();
        const double noon = (today + static_cast<double>(day) + 0.5) * millisecondsPerDay;
        word = {formatted(m_listItemFormat, noon), formatted(m_plainFormat, noon)};
        if (word.plain == formatted(m_dateFormat, noon)) {
            word = {};
        }
        if (systemDay() == today) {
            break;
        }
    }
    return word;
}

const RelativeDayWords::Word* RelativeDayWords::wordFor(std::int64_t day) {
    if (day < -farthestDay || day > farthestDay) {
        return nullptr;
    }
    std::optional<Word>& word = m_words[static_cast<std::size_t>(day + farthestDay)];
    if (!word) {
        word = readWord(day);
    }
    return word->alone.isEmpty() ? nullptr : &*word;
}

icu::UnicodeString RelativeDayWords::datePattern(std::int64_t day) {
    const Word* const word = wordFor(day);
    return word == nullptr ? m_datePattern : quoted(word->alone);
}

// A word behind the time is not at the start, so it is not capitalised.
icu::UnicodeString RelativeDayWords::dateAndTimePattern(std::int64_t day) {
    const Word* const word = wordFor(day);
    const bool atStart = m_dateFirst && m_beforeFirst.isEmpty();
    const icu::UnicodeString date =
        word == nullptr ? m_datePattern : quoted(atStart ? word->alone : word->plain);
    return m_beforeFirst + (m_dateFirst ? date : m_timePattern) + m_betweenThem +
           (m_dateFirst ? m_timePattern : date) + m_afterSecond;
}

} // namespace quorvel::freedesktop
