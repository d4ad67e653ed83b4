// Lower case of ASCII.
#include "base/ascii_text.h"

#include <gtest/gtest.h>

namespace quorvel {
namespace {

TEST(AsciiText, OnlyItsOwnCapitalsBecomeLowerCase) {
    EXPECT_EQ(asciiLowerCase("Europe/BERLIN_1 @[`{"), "europe/berlin_1 @[`{");
    EXPECT_EQ(asciiLowerCase("\xC3\x84\xC4\xB0I"), "\xC3\x84\xC4\xB0i");
    EXPECT_EQ(asciiLowerCase(""), "");
}

TEST(AsciiText, OnlyItsOwnSmallLettersBecomeUpperCase) {
    EXPECT_EQ(asciiUpperCase("freq=daily_1 @[`{"), "FREQ=DAILY_1 @[`{");
    EXPECT_EQ(asciiUpperCase("\xC3\xA4\xC4\xB1i"), "\xC3\xA4\xC4\xB1I");
}

TEST(AsciiText, DigitsHaveAValue) {
    const std::string digits = "0123456789abcdefABCDEF";
    for (int byte = 0; byte < 256; ++byte) {
        const char c = static_cast<char>(byte);
        const std::size_t at = digits.find(c);
        const int value = at == std::string::npos ? -1 : static_cast<int>(at < 16 ? at : at - 6);
        EXPECT_EQ(hexDigitValue(c), value) << byte;
        EXPECT_EQ(isAsciiDigit(c), value >= 0 && value <= 9) << byte;
    }
}

} // namespace
} // namespace quorvel
