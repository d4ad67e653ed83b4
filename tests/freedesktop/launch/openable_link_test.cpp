#include "freedesktop/launch/openable_link.h"

#include <gtest/gtest.h>

namespace quorvel::freedesktop {
namespace {

TEST(OpenableLinkTest, TakesTheWidgetsOwnSchemesAlone) {
    EXPECT_EQ(problemWithLink("x-apple-calevent://office/42?o=1.0"), std::nullopt);
    EXPECT_EQ(problemWithLink("fantastical2://show?date=2014-3-7"), std::nullopt);
    for (const char* link :
         {"", "x-apple-calevent", "http://example.org/", "file:///etc/passwd", "javascript:1",
          "X-APPLE-CALEVENT://a/b", " fantastical2://show", "fantastical2x://show"}) {
        EXPECT_NE(problemWithLink(link), std::nullopt) << link;
    }
}

TEST(OpenableLinkTest, RefusesWhatNoLinkMayHold) {
    for (const char* tail : {"a b", "a\nb", "a\tb", "a\x7F", "caf\xC3\xA9"}) {
        EXPECT_NE(problemWithLink(std::string("x-apple-calevent://") + tail), std::nullopt) << tail;
    }
    EXPECT_EQ(problemWithLink("x-apple-calevent://a/$(reboot);'b'"), std::nullopt);
}

TEST(OpenableLinkTest, RefusesWhatIsTooLong) {
    const std::string start = "x-apple-calevent://a/";
    EXPECT_EQ(problemWithLink(start + std::string(32768 - start.size(), 'x')), std::nullopt);
    EXPECT_EQ(problemWithLink(start + std::string(32769 - start.size(), 'x')), "it is too long");
    EXPECT_EQ(problemWithLink(start + std::string(1 << 20, 'x')), "it is too long");
}

TEST(DesktopEntryNameTest, TakesTheIdentifierWithAndWithoutItsEnding) {
    EXPECT_EQ(desktopEntryName("org.example.App"), "org.example.App.desktop");
    EXPECT_EQ(desktopEntryName("org.example.App.desktop"), "org.example.App.desktop");
}

TEST(DesktopEntryNameTest, RefusesWhatCanBeNoIdentifier) {
    for (const char* identifier : {"", ".desktop", "../app", "a/b", "a b", "a;b", "$(a)", "a\nb",
                                   ".hidden", "caf\xC3\xA9"}) {
        EXPECT_EQ(desktopEntryName(identifier), std::nullopt) << identifier;
    }
    EXPECT_NE(desktopEntryName(std::string(247, 'a')), std::nullopt);
    EXPECT_EQ(desktopEntryName(std::string(248, 'a')), std::nullopt);
    EXPECT_EQ(desktopEntryName(std::string(1 << 20, 'a')), std::nullopt);
}

} // namespace
} // namespace quorvel::freedesktop
