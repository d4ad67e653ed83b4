// A web server with a calendar, and the programs that read it, in a private home folder.
#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "freedesktop/calendars/subscriptions/subscription_cache.h"
#include "tests/app/command_fixture.h"
#include "tests/freedesktop/network/web_server.h"

namespace quorvel::app {

class ServerTest : public CommandTest {
protected:
    static void SetUpTestSuite() { authority = new testing_network::TestAuthority(); }
    static void TearDownTestSuite() { delete std::exchange(authority, nullptr); }

    ServerTest() { m_environment["QUORVEL_CERTIFICATE_AUTHORITIES"] = authority->file(); }

    // A calendar with that name and these complete VEVENTs.
    static std::string calendarText(const std::string& name, const std::string& events = {}) {
        return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nX-WR-CALNAME:" + name + "\r\n" + events +
               "END:VCALENDAR\r\n";
    }
    freedesktop::SubscriptionCache cache() const {
        return freedesktop::SubscriptionCache(path("home/.cache/quorvel/subscriptions").string());
    }
    std::string copy(const std::string& url) const {
        std::ostringstream text;
        text << std::ifstream(cache().calendarFile(url)).rdbuf();
        return text.str();
    }
    // As if all that has happened to the copy had happened earlier.
    void makeOlder(const std::string& url, std::int64_t seconds) const {
        freedesktop::CopyState state = cache().readState(url);
        state.triedAt -= seconds;
        state.confirmedAt -= seconds;
        ASSERT_TRUE(cache().writeState(url, state));
    }

    static inline testing_network::TestAuthority* authority = nullptr;
    static constexpr const char* names = "IP:127.0.0.1,IP:127.0.0.2";
    testing_network::WebServer server{authority->issue(names)};
};

} // namespace quorvel::app
