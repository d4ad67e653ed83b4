// The pattern from ICU's data against the one of ICU's generator, which must be the same to the
// byte in every locale.
#include "freedesktop/dates/hour_pattern.h"

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <unicode/dtptngen.h>
#include <unicode/smpdtfmt.h>

#include "freedesktop/dates/time_patterns.h"

namespace quorvel::freedesktop {
namespace {

constexpr ClockFormat allClocks[] = {ClockFormat::ofLocale, ClockFormat::twelveHours,
                                     ClockFormat::twentyFourHours};

std::string utf8(const icu::UnicodeString& text) {
    std::string result;
    return text.toUTF8String(result);
}

std::string fromGenerator(const icu::Locale& locale, ClockFormat clockFormat) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::DateTimePatternGenerator> generator(
        icu::DateTimePatternGenerator::createInstance(locale, status));
    return utf8(generator->getBestPattern(skeletonWithClock(u"j", clockFormat), status));
}

std::string fromData(const std::string& name, ClockFormat clockFormat) {
    const auto locale = withClockFormat(icu::Locale::createFromName(name.c_str()), clockFormat);
    const auto pattern = hourPattern(locale, clockFormat);
    return pattern ? utf8(*pattern) : "(absent)";
}

// Whether the data told it.
bool isSame(const std::string& name, ClockFormat clockFormat) {
    const auto locale = withClockFormat(icu::Locale::createFromName(name.c_str()), clockFormat);
    const auto pattern = hourPattern(locale, clockFormat);
    if (pattern) {
        EXPECT_EQ(utf8(*pattern), fromGenerator(locale, clockFormat)) << locale.getName();
    }
    return pattern.has_value();
}

std::vector<std::string> availableNames() {
    std::int32_t count = 0;
    const icu::Locale* const locales = icu::Locale::getAvailableLocales(count);
    std::vector<std::string> names;
    for (std::int32_t i = 0; i < count; ++i) {
        names.emplace_back(locales[i].getName());
    }
    return names;
}

icu::UnicodeString shortTime(const char* name) {
    const std::unique_ptr<icu::DateFormat> format(
        icu::DateFormat::createTimeInstance(icu::DateFormat::kShort, icu::Locale(name)));
    icu::UnicodeString pattern;
    return dynamic_cast<icu::SimpleDateFormat&>(*format).toPattern(pattern);
}

// The first test, because ICU remembers what it has opened first.
TEST(HourPattern, LeavesAnAliasItsData) {
    fromData("zh_TW", ClockFormat::ofLocale);
    EXPECT_NE(shortTime("zh_TW"), shortTime("zh"));
}

TEST(HourPattern, IsTheGeneratorsInEveryLocale) {
    const auto names = availableNames();
    std::size_t told = 0;
    for (const std::string& name : names) {
        for (const ClockFormat clockFormat : allClocks) {
            told += isSame(name, clockFormat) ? 1 : 0;
        }
    }
    // A third of them. Newer data leave out of a locale what equals the root's.
    EXPECT_GT(told, names.size());
}

TEST(HourPattern, IsTheGeneratorsForNamesWithoutDataOfTheirOwn) {
    for (const char* const name :
         {"de_US",  "en_US_POSIX", "zh_TW",          "zh_HK",   "sr_RS", "sr_ME", "iw_IL", "no",
          "no_NO",  "in_ID",       "tl_PH",          "de_DD",   "ru_SU", "en_XX", "xx",    "root",
          "",       "und_US",      "ca_ES_VALENCIA", "en_DE",   "pa_PK", "mo_MD", "sh_BA", "es_419",
          "en_001", "en_150",      "de__PHONEBOOK",  "nb_NO_NY"}) {
        for (const ClockFormat clockFormat : allClocks) {
            isSame(name, clockFormat);
        }
    }
}

TEST(HourPattern, IsTheGeneratorsForKeywords) {
    for (const char* const name :
         {"en_US@hours=h23", "en_GB@hours=h12", "de@hours=h11", "de@hours=h24",
          "ja_JP@calendar=japanese", "de_DE@calendar=hebrew", "ar_EG@numbers=latn",
          "en_US@rg=gbzzzz", "en_GB@rg=uszzzz", "th_TH@calendar=gregorian",
          "en_US@hours=", "en_US@calendar=buddhist;numbers=thai"}) {
        for (const ClockFormat clockFormat : allClocks) {
            isSame(name, clockFormat);
        }
    }
}

TEST(HourPattern, ComesFromTheNearestLocaleThatHasIt) {
    EXPECT_EQ(fromData("en_GB", ClockFormat::ofLocale), "HH");
    EXPECT_EQ(fromData("en_US_POSIX", ClockFormat::twentyFourHours), "HH");
    EXPECT_EQ(fromData("de_AT", ClockFormat::ofLocale), "HH 'Uhr'");
    EXPECT_EQ(fromData("en_AU", ClockFormat::ofLocale),
              fromGenerator(icu::Locale("en_AU"), ClockFormat::ofLocale));
}

TEST(HourPattern, IsAbsentWhereTheDataDoNotTell) {
    EXPECT_EQ(fromData("de_US", ClockFormat::ofLocale), "(absent)");
    EXPECT_EQ(fromData("th_TH", ClockFormat::ofLocale), "(absent)");
    EXPECT_EQ(fromData("en_GB@calendar=hebrew", ClockFormat::ofLocale), "(absent)");
    EXPECT_EQ(fromData("en_GB@hours=h12", ClockFormat::ofLocale), "(absent)");
    EXPECT_EQ(fromData("root", ClockFormat::ofLocale), "(absent)");
}

} // namespace
} // namespace quorvel::freedesktop
