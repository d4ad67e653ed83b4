// Every locale's words and joints against ICU's own relative formatter at the machine's today.
#include "freedesktop/dates/relative_day_words.h"

#include <cmath>
#include <memory>

#include <gtest/gtest.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>
#include <unicode/ucal.h>

#include "freedesktop/dates/time_patterns.h"

namespace quorvel::freedesktop {
namespace {

constexpr double day = 86400000;

std::string utf8(const icu::UnicodeString& text) {
    std::string result;
    return text.toUTF8String(result);
}

double machinesDay() {
    return std::floor(ucal_getNow() / day);
}

std::string withoutNarrowSpaces(icu::UnicodeString text) {
    return utf8(text.findAndReplace(u"\u202F", u" "));
}

std::unique_ptr<icu::DateFormat> relativeFormat(bool withTime, const icu::Locale& locale) {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::DateFormat> format(icu::DateFormat::createDateTimeInstance(
        icu::DateFormat::kShortRelative,
        withTime ? icu::DateFormat::kShort : icu::DateFormat::kNone, locale));
    format->setContext(UDISPCTX_CAPITALIZATION_FOR_UI_LIST_OR_MENU, status);
    format->setTimeZone(*icu::TimeZone::getGMT());
    return format;
}

std::string printedFromPattern(const icu::UnicodeString& pattern, const icu::Locale& locale,
                               UDate date) {
    std::unique_ptr<icu::DateFormat> format(icu::DateFormat::createDateTimeInstance(
        icu::DateFormat::kShort, icu::DateFormat::kShort, locale));
    auto& simple = dynamic_cast<icu::SimpleDateFormat&>(*format);
    simple.setTimeZone(*icu::TimeZone::getGMT());
    simple.applyPattern(pattern);
    icu::UnicodeString text;
    return withoutNarrowSpaces(simple.format(date, text));
}

TEST(RelativeDayWords, EqualTheRelativeFormatterInEveryLocale) {
    std::int32_t count = 0;
    const icu::Locale* const locales = icu::Locale::getAvailableLocales(count);
    ASSERT_GT(count, 500);
    for (std::int32_t i = 0; i < count; ++i) {
        RelativeDayWords words(locales[i]);
        const auto withTime = relativeFormat(true, locales[i]);
        const auto alone = relativeFormat(false, locales[i]);
        const double today = machinesDay();
        std::vector<std::pair<std::string, std::string>> pairs;
        for (int offset = -4; offset <= 4; ++offset) {
            const UDate date = (today + offset) * day + 52200000;
            icu::UnicodeString expected;
            pairs.emplace_back(
                withoutNarrowSpaces(withTime->format(date, expected)),
                printedFromPattern(words.dateAndTimePattern(offset), locales[i], date));
            expected.remove();
            pairs.emplace_back(withoutNarrowSpaces(alone->format(date, expected)),
                               printedFromPattern(words.datePattern(offset), locales[i], date));
        }
        if (machinesDay() != today) {
            --i; // the machine's midnight passed: this locale once more
            continue;
        }
        for (const auto& [expected, actual] : pairs) {
            EXPECT_EQ(actual, expected) << locales[i].getName();
        }
    }
}

TEST(TimePatterns, PutPlainSpacesBesideTheMarker) {
    EXPECT_EQ(withPlainSpaces(u"h:mm\u202Fa"), u"h:mm a");
    EXPECT_EQ(withPlainSpaces(u"a\u202Fh:mm"), u"a h:mm");
    EXPECT_EQ(withPlainSpaces(u"HH\u202F'h'"), u"HH\u202F'h'");
}

} // namespace
} // namespace quorvel::freedesktop
