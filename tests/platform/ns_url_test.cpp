#include "platform/ns_url.h"

#include <gtest/gtest.h>

namespace quorvel::platform {
namespace {

bool isLink(std::string_view text) {
    return NSURL::URLWithString(text).has_value();
}

TEST(NSURLTest, LeavesTheTextUnchanged) {
    const std::string text = "foo://AB/CD?o=1.0#x";
    ASSERT_TRUE(NSURL::URLWithString(text));
    EXPECT_EQ(NSURL::URLWithString(text)->absoluteString(), text);
    ASSERT_TRUE(NSURL::URLWithString(""));
    EXPECT_EQ(NSURL::URLWithString("")->absoluteString(), "");
}

TEST(NSURLTest, AllowsExactlyTheCharactersOfALink) {
    const std::string_view marks = "!$&'()*+,-./:;=?@_~[]#";
    for (int code = 0; code < 256; ++code) {
        const char c = static_cast<char>(code);
        const bool letterOrDigit =
            (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
        EXPECT_EQ(isLink(std::string(1, c)),
                  letterOrDigit || marks.find(c) != std::string_view::npos)
            << code;
    }
}

TEST(NSURLTest, TakesOneNumberSign) {
    EXPECT_TRUE(isLink("a#b"));
    EXPECT_FALSE(isLink("a#b#"));
}

TEST(NSURLTest, TakesAPercentSignBeforeTwoHexadecimalDigits) {
    EXPECT_TRUE(isLink("%20"));
    EXPECT_TRUE(isLink("x%aFy"));
    EXPECT_FALSE(isLink("%"));
    EXPECT_FALSE(isLink("%2"));
    EXPECT_FALSE(isLink("%2g"));
    EXPECT_FALSE(isLink("%%20"));
}

TEST(NSURLTest, TakesLinksThatNoParserWould) {
    EXPECT_TRUE(isLink("http://a_b:c@d:e/"));
    EXPECT_TRUE(isLink("x-apple-calevent://CAL:UID:RID=1"));
}

} // namespace
} // namespace quorvel::platform
