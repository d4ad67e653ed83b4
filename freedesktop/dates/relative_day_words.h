// The locale's words for the days around today, and how a word and a time stand together. ICU types
// are used here: for this folder alone.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include <unicode/locid.h>
#include <unicode/unistr.h>

namespace quorvel::freedesktop {

class RelativeDayWords {
public:
    explicit RelativeDayWords(const icu::Locale& locale);

    // Patterns of a date format. With a word for that day (-1: yesterday) the word stands in place
    // of the date, capitalised as an item of a list is.
    icu::UnicodeString datePattern(std::int64_t day) const;
    icu::UnicodeString dateAndTimePattern(std::int64_t day) const;

private:
    static constexpr std::int64_t farthestDay = 3; // no locale has a word beyond

    struct Word {
        icu::UnicodeString alone; // empty: no word for this day
        icu::UnicodeString plain; // not capitalised
    };

    const Word* wordFor(std::int64_t day) const;
    void readPatterns(const icu::Locale& locale);
    void readWords(const icu::Locale& locale);

    icu::UnicodeString m_datePattern;
    icu::UnicodeString m_timePattern;
    icu::UnicodeString m_beforeFirst;
    icu::UnicodeString m_betweenThem;
    icu::UnicodeString m_afterSecond;
    bool m_dateFirst = true;
    std::array<Word, 2 * farthestDay + 1> m_words;
};

} // namespace quorvel::freedesktop
