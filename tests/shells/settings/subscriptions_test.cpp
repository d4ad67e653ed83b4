// Subscriptions in the list of calendars.
#include "shells/settings/subscriptions.h"

#include <gmock/gmock.h>

#include "tests/freedesktop/session/session_testing.h"

namespace quorvel::settings_pages {
namespace {

using namespace testing_session;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(Subscriptions, MarksCalendarsAndAppendsThoseThatWereNeverFetched) {
    const std::vector<ListedCalendar> calendars = withSubscriptions(
        {{"file", "Home", "", "", false}, {"team", "Team", "", "example.org", false}},
        {{"new", "Holidays", "example.net"}, {"team", "Team", "example.org"}});
    ASSERT_EQ(calendars.size(), 3U);
    EXPECT_EQ(calendars[0].subscription, SubscriptionState::none);
    EXPECT_EQ(calendars[1].subscription, SubscriptionState::fetched);
    EXPECT_FALSE(calendars[1].isShown);
    EXPECT_EQ(calendars[2].subscription, SubscriptionState::neverFetched);
    EXPECT_EQ(calendars[2].identifier, "new");
    EXPECT_EQ(calendars[2].title, "Holidays");
    EXPECT_EQ(calendars[2].origin, "example.net");
    EXPECT_TRUE(calendars[2].isShown);
}

TEST(Subscriptions, ReadsTheListOfTheUser) {
    const TemporaryFolder folder;
    const EnvironmentVariable cache("XDG_CACHE_HOME", (folder / "cache").c_str());
    EXPECT_THAT(readSubscriptionList(folder.path()), IsEmpty());
    const std::string list = folder / "org.quorvel.quorvel.subscriptions.plist";
    write(list, "<plist version=\"1.0\"><array>"
                "<dict><key>url</key><string>https://example.org/a.ics</string>"
                "<key>title</key><string>Team</string></dict>"
                "<dict><key>url</key><string>https://example.org/b.ics</string></dict>"
                "</array></plist>");
    const std::vector<ListedSubscription> subscriptions = readSubscriptionList(folder.path());
    ASSERT_EQ(subscriptions.size(), 2U);
    EXPECT_EQ(subscriptions[0].title, "Team");
    EXPECT_EQ(subscriptions[0].host, "example.org");
    EXPECT_EQ(subscriptions[1].title, "example.org");
    EXPECT_NE(subscriptions[0].identifier, subscriptions[1].identifier);
    write(list, "torn");
    EXPECT_THAT(readSubscriptionList(folder.path()), IsEmpty());
}

TEST(Subscriptions, TheAddressIsNoArgument) {
    EXPECT_THAT(
        subscribeCommand("quorvel", "/p"),
        ElementsAre("quorvel", "settings", "calendars", "--preferences", "/p", "--subscribe", "-"));
    EXPECT_THAT(unsubscribeCommand("quorvel", "/p", "example.org-1"),
                ElementsAre("quorvel", "settings", "calendars", "--preferences", "/p",
                            "--unsubscribe", "example.org-1"));
}

} // namespace
} // namespace quorvel::settings_pages
