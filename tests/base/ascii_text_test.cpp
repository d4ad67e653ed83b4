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

} // namespace
} // namespace quorvel
