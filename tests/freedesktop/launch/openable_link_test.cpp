#include "freedesktop/launch/openable_link.h"

#include <gtest/gtest.h>

namespace quorvel::freedesktop {
namespace {

TEST(OpenableLinkTest, AcceptsOnlyTheSchemesOfTheWidget) {
    EXPECT_TRUE(checkLink("x-apple-calevent://office/42?o=1.0"));
    EXPECT_TRUE(checkLink("fantastical2://show?date=2014-3-7"));
    for (const char* link :
         {"", "x-apple-calevent", "http://example.org/", "file:///etc/passwd", "javascript:1",
          "X-APPLE-CALEVENT://a/b", " fantastical2://show", "fantastical2x://show"}) {
        EXPECT_FALSE(checkLink(link)) << link;
    }
}

TEST(OpenableLinkTest, RefusesForbiddenCharacters) {
    for (const char* tail : {"a b", "a\nb", "a\tb", "a\x7F", "caf\xC3\xA9"}) {
        EXPECT_FALSE(checkLink(std::string("x-apple-calevent://") + tail)) << tail;
    }
    EXPECT_TRUE(checkLink("x-apple-calevent://a/$(reboot);'b'"));
}

TEST(OpenableLinkTest, RefusesLongLinks) {
    const std::string start = "x-apple-calevent://a/";
    EXPECT_TRUE(checkLink(start + std::string(32768 - start.size(), 'x')));
    EXPECT_EQ(checkLink(start + std::string(32769 - start.size(), 'x')).error().what,
              "it is too long");
    EXPECT_EQ(checkLink(start + std::string(1 << 20, 'x')).error().what, "it is too long");
}

TEST(DesktopEntryNameTest, AcceptsTheIdentifierWithAndWithoutItsSuffix) {
    EXPECT_EQ(desktopEntryName("org.example.App"), "org.example.App.desktop");
    EXPECT_EQ(desktopEntryName("org.example.App.desktop"), "org.example.App.desktop");
}

TEST(DesktopEntryNameTest, RefusesInvalidIdentifiers) {
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
