// The locale's words for the days around today, and its patterns of a word with a time. Only for
// this folder, because it uses ICU types.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include <unicode/locid.h>
#include <unicode/udat.h>
#include <unicode/unistr.h>

namespace quorvel::freedesktop {

// Reads the words of a day when it is asked for.
class RelativeDayWords {
public:
    explicit RelativeDayWords(const icu::Locale& locale);

    // Date format patterns for a day relative to today (-1: yesterday). If the locale has a word
    // for the day, it replaces the date, capitalised as an item of a list.
    icu::UnicodeString datePattern(std::int64_t day);
    icu::UnicodeString dateAndTimePattern(std::int64_t day);

private:
    static constexpr std::int64_t farthestDay = 3; // no locale has words for more distant days

    struct Word {
        icu::UnicodeString alone; // empty: no word for this day
        icu::UnicodeString plain; // not capitalised
    };

    const Word* wordFor(std::int64_t day);
    Word readWord(std::int64_t day);
    void readPatterns();
    void openFormats();

    icu::Locale m_locale;
    icu::LocalUDateFormatPointer m_plainFormat;
    // Null before the first word.
    icu::LocalUDateFormatPointer m_listItemFormat;
    icu::LocalUDateFormatPointer m_dateFormat;
    icu::UnicodeString m_datePattern;
    icu::UnicodeString m_timePattern;
    icu::UnicodeString m_beforeFirst;
    icu::UnicodeString m_betweenThem;
    icu::UnicodeString m_afterSecond;
    bool m_dateFirst = true;
    std::array<std::optional<Word>, 2 * farthestDay + 1> m_words; // absent: not asked for yet
};

} // namespace quorvel::freedesktop
