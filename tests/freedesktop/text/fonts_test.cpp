#include "freedesktop/text/fonts.h"

#include <gtest/gtest.h>

#include "freedesktop/text/text_lines.h"

namespace quorvel::freedesktop {
namespace {

TEST(Fonts, KnowsWhatIsInstalled) {
    const std::string family = TextLines().systemFamily();
    EXPECT_TRUE(isFontInstalled(family));
    EXPECT_TRUE(isFontInstalled("sans-serif"));
    EXPECT_TRUE(isFontInstalled("MONOSPACE"));
}

TEST(Fonts, UpperAndLowerCaseDoNotMatter) {
    std::string family = TextLines().systemFamily();
    for (char& letter : family)
        letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    EXPECT_TRUE(isFontInstalled(family));
}

TEST(Fonts, KnowsWhatIsNot) {
    EXPECT_FALSE(isFontInstalled("No Such Family Of Letters"));
    EXPECT_FALSE(isFontInstalled(""));
    EXPECT_FALSE(isFontInstalled("\xFF\xFE"));
}

TEST(Fonts, TheRequestedFamilyIsTheSystemFont) {
    EXPECT_EQ(TextLines("DejaVu Serif").systemFamily(), "DejaVu Serif");
    EXPECT_EQ(TextLines("No Such Family").systemFamily(), "No Such Family");
    EXPECT_EQ(TextLines(std::string()).systemFamily(), TextLines().systemFamily());
}

} // namespace
} // namespace quorvel::freedesktop
