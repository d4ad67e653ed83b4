// The window and a calendar on a server. Not among the tests for the thread sanitizer: it knows
// nothing of the locks in the TLS library of the test's server.
#include <gtest/gtest.h>

#include "freedesktop/calendars/subscriptions/subscription_cache.h"
#include "tests/freedesktop/network/web_server.h"
#include "tests/window/window_fixture.h"

// That library loses memory when a client goes away. The programs under test are still checked for
// leaks: this is about the test's own process.
extern "C" int __lsan_is_turned_off();
int __lsan_is_turned_off() {
    return 1;
}

namespace quorvel::window {
namespace {

class WindowSubscriptionsTest : public WindowTest {};

TEST_F(WindowSubscriptionsTest, F5FetchesACalendarOnTheWeb) {
    testing_network::TestAuthority authority;
    testing_network::WebServer server(authority.issue("IP:127.0.0.1"));
    const auto serve = [&](const std::string& title) {
        const std::string calendar = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n" +
                                     event("a", title, "20260310T110000Z", "20260310T120000Z") +
                                     "END:VCALENDAR\r\n";
        server.on("/team", testing_network::answering(testing_network::answer(calendar)));
    };
    m_environment["QUORVEL_CERTIFICATE_AUTHORITIES"] = authority.file();
    const std::string url = server.url("/team");
    serve("Before");
    printed("agenda", {"--calendars", url}); // so that the window opens with a copy
    const freedesktop::SubscriptionCache cache(path("cache/quorvel/subscriptions").string());
    freedesktop::CopyState state = cache.readState(url);
    state.triedAt -= 100;
    state.confirmedAt -= 100;
    ASSERT_TRUE(cache.writeState(url, state));
    show({"--calendars", url});
    const Picture before = picture();
    serve("After all");
    rest(1);
    EXPECT_EQ(server.requests().size(), 1U);
    key("F5");
    EXPECT_TRUE(pictureChangesFrom(before, 20));
    EXPECT_EQ(server.requests().size(), 2U);
    key("F5");
    rest(1);
    EXPECT_EQ(server.requests().size(), 2U);
}

} // namespace
} // namespace quorvel::window
