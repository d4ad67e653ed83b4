#include "base/ascii_text.h"

#include <gtest/gtest.h>

namespace quorvel {
namespace {

TEST(AsciiText, OnlyAsciiCapitalsBecomeLowerCase) {
    EXPECT_EQ(asciiLowerCase("Europe/BERLIN_1 @[`{"), "europe/berlin_1 @[`{");
    EXPECT_EQ(asciiLowerCase("\xC3\x84\xC4\xB0I"), "\xC3\x84\xC4\xB0i");
    EXPECT_EQ(asciiLowerCase(""), "");
}

TEST(AsciiText, OnlyItsOwnSmallLettersBecomeUpperCase) {
    EXPECT_EQ(asciiUpperCase("freq=daily_1 @[`{"), "FREQ=DAILY_1 @[`{");
    EXPECT_EQ(asciiUpperCase("\xC3\xA4\xC4\xB1i"), "\xC3\xA4\xC4\xB1I");
}

TEST(AsciiText, ClassifiesCharacters) {
    for (int byte = 0; byte < 256; ++byte) {
        const char c = static_cast<char>(byte);
        const bool isDigit = byte >= 48 && byte <= 57;
        const bool isLetter = (byte >= 65 && byte <= 90) || (byte >= 97 && byte <= 122);
        EXPECT_EQ(isAsciiDigit(c), isDigit) << byte;
        EXPECT_EQ(isAsciiLetter(c), isLetter) << byte;
        EXPECT_EQ(isAsciiLetterOrDigit(c), isLetter || isDigit) << byte;
    }
}

TEST(AsciiText, HexDigitsHaveValuesInBothCases) {
    const std::string_view digits = "0123456789abcdef";
    for (int value = 0; value < 16; ++value) {
        EXPECT_EQ(hexDigitValue(digits[static_cast<std::size_t>(value)]), value);
    }
    EXPECT_EQ(hexDigitValue('A'), 10);
    EXPECT_EQ(hexDigitValue('F'), 15);
    for (const char c : {'g', 'G', '@', '`', '/', ':', '\0', '\xFF'}) {
        EXPECT_EQ(hexDigitValue(c), std::nullopt) << c;
    }
}

TEST(AsciiText, TrimsOnlyTheUnwantedCharacters) {
    EXPECT_EQ(trimmed(" \ta b\t ", " \t"), "a b");
    EXPECT_EQ(trimmed(" \t ", " \t"), "");
    EXPECT_EQ(trimmed("", " "), "");
    EXPECT_EQ(trimmed("a ", ""), "a ");
    EXPECT_EQ(trimmedStart("  a ", " "), "a ");
    EXPECT_EQ(trimmedStart("  ", " "), "");
}

} // namespace
} // namespace quorvel
