// Locales as users, desktops and libraries write them.
#include "freedesktop/dates/locale_names.h"

#include <set>
#include <string>

#include <gtest/gtest.h>
#include <unicode/locid.h>
#include <unicode/uenum.h>
#include <unicode/uloc.h>

namespace quorvel::freedesktop {
namespace {

std::string canonical(std::string_view name) {
    return canonicalLocale(name).value_or("absent");
}

TEST(LocaleNames, AreMadeCanonical) {
    EXPECT_EQ(canonical("de_DE"), "de_DE");
    EXPECT_EQ(canonical("de-DE"), "de_DE");
    EXPECT_EQ(canonical("de_de"), "de_DE");
    EXPECT_EQ(canonical("DE"), "de");
    EXPECT_EQ(canonical("de_DE.UTF-8"), "de_DE");
    EXPECT_EQ(canonical("de_DE@euro"), "de_DE");
    EXPECT_EQ(canonical("de_DE.ISO-8859-15@euro"), "de_DE");
    EXPECT_EQ(canonical("zh-Hant-TW"), "zh_Hant_TW");
    EXPECT_EQ(canonical("zh_TW.Big5"), "zh_TW");
    EXPECT_EQ(canonical("es_419"), "es_419");
    EXPECT_EQ(canonical("sq_XK"), "sq_XK");
    EXPECT_EQ(canonical("eo"), "eo");
    EXPECT_EQ(canonical("en_"), "en");
    EXPECT_EQ(canonical("no_NO"), "no_NO");
    EXPECT_EQ(canonical("iw_IL"), "iw_IL");
}

TEST(LocaleNames, RetainScriptsAndExtensions) {
    EXPECT_EQ(canonical("sr_RS@latin"), "sr_Latn_RS");
    EXPECT_EQ(canonical("uz_UZ@cyrillic"), "uz_Cyrl_UZ");
    EXPECT_EQ(canonical("ca_ES.UTF-8@valencia"), "ca_ES_VALENCIA");
    EXPECT_EQ(canonical("en-US-u-hc-h23"), "en_US@hours=h23");
    EXPECT_EQ(canonical("en_US@hours=h23"), "en_US@hours=h23");
}

TEST(LocaleNames, PosixLocaleIsAmericanEnglish) {
    for (const char* name : {"C", "POSIX", "C.UTF-8", "C.utf8"}) {
        EXPECT_EQ(canonical(name), "en_US_POSIX") << name;
    }
}

TEST(LocaleNames, UnknownLocalesAreRefused) {
    for (const char* name : {"", "xx_YY", "xx", "de_XX", "e", "english", "root", "und", "_DE", "@",
                             ".", "de_DE@a=b=c;;", "de-DE-", "en US", "../../etc/passwd", "de_DE\n",
                             "i-klingon", "a_b_c_d", "\xC3\xA9"}) {
        EXPECT_EQ(canonical(name), "absent") << name;
    }
    EXPECT_EQ(canonical("de_" + std::string(1 << 20, 'D')), "absent");
}

// Whichever way a language is found by, its data or the list of all locales.
TEST(LocaleNames, EveryLanguageOfIcuIsKnownAndNoOther) {
    std::set<std::string> languages;
    UErrorCode status = U_ZERO_ERROR;
    const icu::LocalUEnumerationPointer locales(
        uloc_openAvailableByType(ULOC_AVAILABLE_WITH_LEGACY_ALIASES, &status));
    while (const char* const name = uenum_next(locales.getAlias(), nullptr, &status)) {
        languages.insert(icu::Locale(name).getLanguage());
    }
    ASSERT_GT(languages.size(), 200U);
    const std::string letters = "abcdefghijklmnopqrstuvwxyz";
    for (const char first : letters) {
        for (const char second : letters) {
            std::string name{first, second};
            EXPECT_EQ(canonical(name) == name, languages.contains(name)) << name;
            name += letters[static_cast<std::size_t>(second - 'a' + first - 'a') % letters.size()];
            EXPECT_EQ(canonical(name) == name, languages.contains(name)) << name;
        }
    }
    for (const std::string& language : languages) {
        EXPECT_EQ(canonical(language) == language, !language.empty()) << language;
    }
}

TEST(LocaleNames, VariablesHaveAnOrder) {
    EXPECT_EQ(defaultLocale("fr_FR.UTF-8", "de_DE.UTF-8", "en_US.UTF-8"), "fr_FR");
    EXPECT_EQ(defaultLocale("", "de_DE.UTF-8", "en_US.UTF-8"), "de_DE");
    EXPECT_EQ(defaultLocale("", "", "en_GB.UTF-8"), "en_GB");
    EXPECT_EQ(defaultLocale("", "", ""), "en_US_POSIX");
    EXPECT_EQ(defaultLocale("C.UTF-8", "de_DE.UTF-8", ""), "en_US_POSIX");
    EXPECT_EQ(defaultLocale("tlh_XX", "xx_YY", "ja_JP.UTF-8"), "ja_JP");
}

TEST(LocaleNames, KnowTheDirectionOfTheirLanguage) {
    for (const char* name : {"ar_EG", "he_IL", "fa_IR", "ur_PK", "az_Arab_IR"}) {
        EXPECT_TRUE(isWrittenRightToLeft(name)) << name;
    }
    for (const char* name : {"en_US", "ja_JP", "en_US_POSIX", "az_AZ", ""}) {
        EXPECT_FALSE(isWrittenRightToLeft(name)) << name;
    }
}

} // namespace
} // namespace quorvel::freedesktop
