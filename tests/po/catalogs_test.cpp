// What can be wrong in a translation that is complete.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>

#include "shells/headless/terminal_text.h"
#include "tests/po/catalog_file.h"

namespace quorvel {
namespace {

class CatalogsTest : public testing::TestWithParam<const char*> {
protected:
    const Catalog m_catalog =
        readCatalog(std::string(QUORVEL_CATALOGS) + '/' + GetParam() + "/LC_MESSAGES/quorvel.mo");
};

std::set<std::string> placeholdersOf(const std::string& text) {
    std::set<std::string> found;
    for (std::size_t at = text.find('{'); at != std::string::npos; at = text.find('{', at + 1)) {
        found.insert(text.substr(at, 3));
    }
    return found;
}

// The words that a user types: they stand in the same form in every language.
std::set<std::string> optionsOf(const std::string& text) {
    std::set<std::string> found;
    for (std::size_t at = text.find("--"); at != std::string::npos; at = text.find("--", at + 1)) {
        const std::size_t end = text.find_first_not_of("abcdefghijklmnopqrstuvwxyz-", at + 2);
        found.insert(text.substr(at, end - at));
    }
    return found;
}

bool hasOneMark(const std::string& text) {
    return std::ranges::count(text, '_') == 1;
}

// Of a menu or a button, which begins with a capital letter.
bool isLabelWithMnemonic(const std::string& text) {
    return hasOneMark(text) &&
           (text.front() == '_' || (text.front() >= 'A' && text.front() <= 'Z'));
}

std::size_t widestLine(const std::string& text) {
    std::size_t widest = 0;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        widest = std::max(widest, headless::displayWidth(text.substr(at, end - at)));
        at = end + 1;
    }
    return widest;
}

TEST_P(CatalogsTest, TranslateEveryText) {
    EXPECT_GT(m_catalog.entries.size(), 500U);
    for (const CatalogEntry& entry : m_catalog.entries) {
        for (const std::string& translation : entry.translations) {
            EXPECT_FALSE(translation.empty()) << entry.text;
        }
    }
}

TEST_P(CatalogsTest, KeepThePlaceholders) {
    for (const CatalogEntry& entry : m_catalog.entries) {
        for (const std::string& translation : entry.translations) {
            if (entry.plural.empty()) {
                EXPECT_EQ(placeholdersOf(translation), placeholdersOf(entry.text)) << translation;
            } else { // "{1}" may be a word in the forms for one and two
                std::set<std::string> known = placeholdersOf(entry.plural);
                known.merge(placeholdersOf(entry.text));
                EXPECT_THAT(placeholdersOf(translation), testing::IsSubsetOf(known)) << translation;
            }
        }
    }
}

TEST_P(CatalogsTest, CountWhereTheNumberIsNotClear) {
    for (const CatalogEntry& entry : m_catalog.entries) {
        if (!entry.plural.empty()) {
            EXPECT_EQ(placeholdersOf(entry.translations.back()), placeholdersOf(entry.plural))
                << entry.translations.back();
        }
    }
}

TEST_P(CatalogsTest, KeepTheWordsOfTheCommandLine) {
    for (const CatalogEntry& entry : m_catalog.entries) {
        for (const std::string& translation : entry.translations) {
            EXPECT_EQ(optionsOf(translation), optionsOf(entry.text)) << translation;
        }
    }
}

TEST_P(CatalogsTest, KeepTheMnemonicsOfMenus) {
    int labels = 0;
    for (const CatalogEntry& entry : m_catalog.entries) {
        if (isLabelWithMnemonic(entry.text)) {
            ++labels;
            EXPECT_TRUE(hasOneMark(entry.translations.front())) << entry.translations.front();
        }
    }
    EXPECT_GT(labels, 10);
}

TEST_P(CatalogsTest, BreakTheLinesOfTheHelp) {
    constexpr std::size_t widest = 100; // columns, with those before an option's text
    constexpr std::size_t columnOfText = 26;
    for (const CatalogEntry& entry : m_catalog.entries) {
        const std::string& translation = entry.translations.front();
        if (entry.text.find('\n') != std::string::npos) {
            const bool isOption = !entry.text.ends_with('\n');
            EXPECT_LE(widestLine(translation) + (isOption ? columnOfText : 0), widest)
                << translation;
        }
    }
}

TEST_P(CatalogsTest, HaveThePluralFormsOfTheLanguage) {
    const std::map<std::string, std::size_t> forms = {
        {"ar", 6}, {"de", 2}, {"es", 2}, {"fr", 2}, {"ja", 1}};
    int plurals = 0;
    for (const CatalogEntry& entry : m_catalog.entries) {
        const std::size_t wanted = entry.plural.empty() ? 1 : forms.at(GetParam());
        EXPECT_EQ(entry.translations.size(), wanted) << entry.text;
        plurals += entry.plural.empty() ? 0 : 1;
    }
    EXPECT_GT(plurals, 3);
}

INSTANTIATE_TEST_SUITE_P(Languages, CatalogsTest, testing::Values("ar", "de", "es", "fr", "ja"),
                         [](const auto& language) { return std::string(language.param); });

} // namespace
} // namespace quorvel
