#include <gtest/gtest.h>
#include <langinfo.h>

#include <cerrno>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "base/utf8.h"
#include "freedesktop/language/catalogs.h"
#include "freedesktop/language/messages.h"

namespace quorvel::freedesktop {
namespace {

// The environment that a user would start the program in; restored afterwards.
class LanguageTest : public testing::Test {
protected:
    LanguageTest() {
        for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG", "LANGUAGE", "LOCPATH"}) {
            const char* const value = std::getenv(name);
            m_saved.emplace_back(name, value != nullptr ? std::optional<std::string>(value)
                                                        : std::nullopt);
            unsetenv(name);
        }
        setenv("LOCPATH", QUORVEL_TEST_LOCALES, 1);
    }
    ~LanguageTest() override {
        for (const auto& [name, value] : m_saved) {
            value ? setenv(name, value->c_str(), 1) : unsetenv(name);
        }
        std::setlocale(LC_ALL, "C");
    }

    static void choose(const std::optional<std::string>& locale = std::nullopt) {
        chooseLanguage(QUORVEL_TEST_CATALOGS, locale);
    }

private:
    std::vector<std::pair<const char*, std::optional<std::string>>> m_saved;
};

TEST_F(LanguageTest, TranslatesIntoThatOfTheEnvironment) {
    setenv("LANG", "de_DE.UTF-8", 1);
    choose();
    EXPECT_STREQ(translated("a day"), "ein schöner Tag");
    EXPECT_STREQ(translated("a week"), "a week") << "is not in the catalog";
    EXPECT_STREQ(translated(""), "") << "is not the catalog's description";
    EXPECT_STREQ(translatedInContext("of the calendar", "a day"), "ein Kalendertag");
    EXPECT_STREQ(translatedInContext("of the moon", "a day"), "a day");
    EXPECT_STREQ(translatedPlural("{1} day", "{1} days", 1), "{1} Tag");
    EXPECT_STREQ(translatedPlural("{1} day", "{1} days", 0), "{1} Tage");
}

TEST_F(LanguageTest, LeavesThePlainEnvironmentInEnglish) {
    choose();
    EXPECT_STREQ(translated("a day"), "a day");
    EXPECT_STREQ(translatedInContext("of the calendar", "a day"), "a day");
    EXPECT_STREQ(translatedPlural("{1} day", "{1} days", 1), "{1} day");
    EXPECT_STREQ(translatedPlural("{1} day", "{1} days", 2), "{1} days");
}

TEST_F(LanguageTest, TakesTheFirstKnownOfTheUsersLanguages) {
    setenv("LANG", "ja_JP.UTF-8", 1);
    setenv("LANGUAGE", "sw:de:ar", 1);
    choose();
    EXPECT_STREQ(translated("a day"), "ein schöner Tag");
}

TEST_F(LanguageTest, KnowsEachPluralFormOfTheLanguage) {
    choose("ar_EG");
    const std::vector<std::pair<unsigned long, std::string>> forms = {
        {0, "form 0"},  {1, "form 1"},  {2, "form 2"},   {3, "form 3"},   {10, "form 3"},
        {11, "form 4"}, {99, "form 4"}, {100, "form 5"}, {102, "form 5"}, {103, "form 3"}};
    for (const auto& [count, form] : forms) {
        EXPECT_EQ(translatedPlural("{1} day", "{1} days", count), form) << count;
    }
}

TEST_F(LanguageTest, AChosenOneWinsOverTheEnvironment) {
    setenv("LANG", "ja_JP.UTF-8", 1);
    setenv("LANGUAGE", "ar", 1);
    for (const char* locale : {"de_DE", "de", "de_AT", "de_Latn_DE", "de_DE@calendar=buddhist"}) {
        choose(locale);
        EXPECT_STREQ(translated("a day"), "ein schöner Tag") << locale;
    }
    for (const char* locale : {"en_US", "en_US_POSIX", "sw_KE"}) {
        choose(locale);
        EXPECT_STREQ(translated("a day"), "a day") << locale;
    }
}

TEST_F(LanguageTest, IsChosenWhereATextIsShown) {
    const TranslatableText text("its {1} cannot be used: {2}",
                                {TranslatableText::verbatim("a day"), "an odd thing"});
    choose("en_US");
    EXPECT_EQ(translated(text), "its a day cannot be used: an odd thing");
    choose("de_DE");
    EXPECT_EQ(translated(text), "ein Unding: a day taugt nicht");
}

TEST_F(LanguageTest, IsNotPassedOnToOtherPrograms) {
    setenv("LANGUAGE", "ar", 1);
    choose("de_DE");
    choose("ja_JP");
    EXPECT_EQ(usersLanguageVariable(), "ar");
    restoreUsersLanguageVariable();
    EXPECT_STREQ(std::getenv("LANGUAGE"), "ar");
}

TEST_F(LanguageTest, IsThatOfTheSystemsMessagesToo) {
    choose("de_DE");
    const std::string german = std::strerror(ENOENT);
    choose("en_US");
    EXPECT_STREQ(std::strerror(ENOENT), "No such file or directory");
    if (german == std::strerror(ENOENT)) {
        GTEST_SKIP() << "the system's own translations are not installed";
    }
    EXPECT_EQ(german, "Datei oder Verzeichnis nicht gefunden");
}

// Libraries convert the system's messages from the encoding of LC_CTYPE, and fail otherwise.
TEST_F(LanguageTest, HasTheSystemsMessagesInTheEncodingOfCharacters) {
    for (const char* locale : {"fr_FR", "ja_JP", "ar_EG"}) {
        choose(locale);
        EXPECT_STREQ(nl_langinfo(CODESET), "UTF-8") << locale;
        const std::string text = std::strerror(ENOENT);
        EXPECT_EQ(text.find('?'), std::string::npos) << text;
        EXPECT_EQ(wellFormedUtf8(text), text) << locale;
    }
}

TEST_F(LanguageTest, LeavesNumbersAlone) {
    setenv("LC_ALL", "de_DE.UTF-8", 1);
    choose();
    EXPECT_STREQ(std::setlocale(LC_MESSAGES, nullptr), "de_DE.UTF-8");
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
    EXPECT_EQ(std::strtod("1.75", nullptr), 1.75);
}

} // namespace
} // namespace quorvel::freedesktop
