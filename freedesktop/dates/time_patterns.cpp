#include "freedesktop/dates/time_patterns.h"

#include <memory>
#include <string>

#include <unicode/dtptngen.h>
#include <unicode/smpdtfmt.h>

namespace quorvel::freedesktop {
namespace {

constexpr char16_t narrowSpace = u'\u202F';
constexpr char16_t noBreakSpace = u'\u00A0';

bool isSpace(char16_t c) {
    return c == u' ' || c == noBreakSpace || c == narrowSpace;
}

bool isDayPeriodField(char16_t c) {
    return c == u'a' || c == u'b' || c == u'B';
}

bool isHourField(char16_t c) {
    return c == u'h' || c == u'H' || c == u'k' || c == u'K';
}

bool isMinuteOrSecondField(char16_t c) {
    return c == u'm' || c == u's' || c == u'S';
}

// Replaces 'h' and 'H' by each other, and 'K' and 'k'.
char16_t hourOfClock(char16_t field, ClockFormat clockFormat) {
    const bool ofTwelve = clockFormat == ClockFormat::twelveHours;
    switch (field) {
    case u'h':
    case u'H':
        return ofTwelve ? u'h' : u'H';
    case u'k':
    case u'K':
        return ofTwelve ? u'K' : u'k';
    default:
        return field;
    }
}

// Removes the AM/PM marker and the blanks between it and the time.
class MarkerRemoval {
public:
    void append(char16_t c, bool isMarker) {
        if (isMarker) {
            dropBlanksAtEnd();
            m_dropsBlanks = m_result.isEmpty();
        } else if (!m_dropsBlanks || !isSpace(c)) {
            m_dropsBlanks = false;
            m_result.append(c);
        }
    }
    const icu::UnicodeString& result() const { return m_result; }

private:
    void dropBlanksAtEnd() {
        while (!m_result.isEmpty() && isSpace(m_result.charAt(m_result.length() - 1))) {
            m_result.truncate(m_result.length() - 1);
        }
    }

    icu::UnicodeString m_result;
    bool m_dropsBlanks = false; // behind a marker at the start
};

// Calls `use(character, isField)` for each character of the pattern.
template <class Use>
void forEachCharacter(const icu::UnicodeString& pattern, Use use) {
    bool isQuoted = false;
    for (std::int32_t i = 0; i < pattern.length(); ++i) {
        const char16_t c = pattern.charAt(i);
        if (c == u'\'') {
            isQuoted = !isQuoted;
        }
        use(c, !isQuoted && c != u'\'');
    }
}

icu::UnicodeString withTwentyFourHours(const icu::UnicodeString& pattern) {
    MarkerRemoval removal;
    forEachCharacter(pattern, [&removal](char16_t c, bool isField) {
        removal.append(isField ? hourOfClock(c, ClockFormat::twentyFourHours) : c,
                       isField && isDayPeriodField(c));
    });
    return removal.result();
}

// A missing marker is added behind the last field of the time.
icu::UnicodeString withTwelveHours(const icu::UnicodeString& pattern) {
    icu::UnicodeString result;
    bool hasMarker = false;
    std::int32_t endOfTime = -1;
    forEachCharacter(pattern, [&](char16_t c, bool isField) {
        result.append(isField ? hourOfClock(c, ClockFormat::twelveHours) : c);
        hasMarker = hasMarker || (isField && isDayPeriodField(c));
        if (isField && (isHourField(c) || (endOfTime >= 0 && isMinuteOrSecondField(c)))) {
            endOfTime = result.length();
        }
    });
    if (!hasMarker && endOfTime >= 0) {
        result.insert(endOfTime, u" a");
    }
    return result;
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

icu::Locale withClockFormat(icu::Locale locale, ClockFormat clockFormat) {
    UErrorCode status = U_ZERO_ERROR;
    if (clockFormat == ClockFormat::twelveHours) {
        locale.setKeywordValue("hours", "h12", status);
    } else if (clockFormat == ClockFormat::twentyFourHours) {
        locale.setKeywordValue("hours", "h23", status);
    }
    return locale;
}

icu::UnicodeString skeletonWithClock(const icu::UnicodeString& skeleton, ClockFormat clockFormat) {
    if (clockFormat == ClockFormat::ofLocale) {
        return skeleton;
    }
    icu::UnicodeString result;
    for (std::int32_t i = 0; i < skeleton.length(); ++i) {
        const char16_t c = skeleton.charAt(i);
        if (clockFormat == ClockFormat::twelveHours || !isDayPeriodField(c)) {
            result.append(hourOfClock(c == u'j' ? u'h' : c, clockFormat));
        }
    }
    return result;
}

icu::UnicodeString patternWithClock(const icu::UnicodeString& pattern, ClockFormat clockFormat) {
    switch (clockFormat) {
    case ClockFormat::twelveHours:
        return withTwelveHours(pattern);
    case ClockFormat::twentyFourHours:
        return withTwentyFourHours(pattern);
    case ClockFormat::ofLocale:
        break;
    }
    return pattern;
}

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
