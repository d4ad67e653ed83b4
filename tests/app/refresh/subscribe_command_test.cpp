// Subscribing to calendars and unsubscribing, also with passwords.
#include <fstream>
#include <memory>

#include <sys/stat.h>

#include "freedesktop/calendars/subscriptions/copied_sources.h"
#include "freedesktop/calendars/subscriptions/subscription_list.h"
#include "tests/app/refresh/secret_service.h"
#include "tests/app/refresh/server_fixture.h"

namespace quorvel::app {
namespace {

namespace fs = std::filesystem;

using freedesktop::readSubscriptions;
using freedesktop::Subscription;
using testing_network::answer;
using testing_network::answering;
using testing_network::Connection;
using testing_network::Request;

const std::string lunch = event("1", "Lunch", "DTSTART:20260310T120000Z\r\nDTEND:20260310T130000Z");

class SubscribeCommandTest : public ServerTest {
protected:
    void SetUp() override {
        server.on("/team", answering(answer(calendarText("Team", lunch))));
        url = server.url("/team");
    }
    RunResult settings(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(),
                         {"settings", "calendars", "--preferences", preferences()});
        return run(arguments);
    }
    RunResult subscribe(const std::string& address,
                        const std::vector<std::string>& further = {}) const {
        std::vector<std::string> arguments{"--subscribe", address};
        arguments.insert(arguments.end(), further.begin(), further.end());
        return settings(arguments);
    }
    std::vector<Subscription> list() const { return *readSubscriptions(preferences()); }
    std::string agenda() const {
        return run({"agenda", "--preferences", preferences(), "--now", "2026-03-10T10:00:00Z"})
            .output;
    }
    // Each file below the test's folder that contains the text.
    std::vector<std::string> filesWith(const std::string& text) const {
        std::vector<std::string> found;
        for (const std::string& name : files()) {
            std::ifstream file(path(name), std::ios::binary);
            const std::string content{std::istreambuf_iterator<char>(file), {}};
            if (content.find(text) != std::string::npos) {
                found.push_back(name);
            }
        }
        return found;
    }
    std::string url;
};

bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST_F(SubscribeCommandTest, CalendarIsFetchedAndShown) {
    const RunResult result = subscribe("webcal" + url.substr(5));
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output, "Subscribed to 'Team'.\n");
    ASSERT_EQ(result.status, 0);
    EXPECT_EQ(list(),
              (std::vector<Subscription>{{url, "127.0.0.1", std::nullopt, std::nullopt, false}}));
    EXPECT_TRUE(contains(agenda(), "Lunch"));
    EXPECT_EQ(server.requests().size(), 1U);
    EXPECT_TRUE(contains(settings({}).output, "Team"));
}

TEST_F(SubscribeCommandTest, AddressMayComeFromStandardInput) {
    m_standardInput = write("input", url + "\nanother line\n").string();
    EXPECT_EQ(subscribe("-").output, "Subscribed to 'Team'.\n");
    ASSERT_EQ(list().size(), 1U);
    EXPECT_EQ(list().at(0).url, url);
    m_standardInput = write("input", "\n").string();
    const RunResult empty = subscribe("-");
    EXPECT_EQ(empty.status, 2);
    EXPECT_EQ(empty.errors, "quorvel: this is not the address of a calendar on a server: give one "
                            "that begins with 'https:' or 'webcal:'\n");
    m_standardInput = write("input", "https://example.org/" + std::string(100000, 'a')).string();
    EXPECT_EQ(subscribe("-").status, 2);
    EXPECT_EQ(list().size(), 1U);
}

TEST_F(SubscribeCommandTest, TitleReplacesTheCalendarsOwn) {
    EXPECT_EQ(subscribe(url, {"--title", "Käse & Co"}).output, "Subscribed to 'Käse & Co'.\n");
    EXPECT_TRUE(contains(settings({}).output, "Käse & Co"));
    EXPECT_EQ(subscribe(url, {"--title", "Other"}).output, "Subscribed to 'Other'.\n");
    EXPECT_EQ(subscribe(url).output, "Subscribed to 'Other'.\n");
    EXPECT_EQ(list().size(), 1U);
}

TEST_F(SubscribeCommandTest, ColourReplacesTheCalendarsOwn) {
    server.on("/team", answering(answer(calendarText("Team", "COLOR:#102030\r\n"))));
    ASSERT_EQ(subscribe(url).status, 0);
    EXPECT_TRUE(contains(settings({}).output, "#102030FF"));
    ASSERT_EQ(subscribe(url, {"--colour", "#336699"}).status, 0);
    EXPECT_EQ(list().at(0).colour, "#336699");
    EXPECT_TRUE(contains(settings({}).output, "#336699FF"));
    EXPECT_TRUE(contains(run({"calendars", "--preferences", preferences()}).output, "#336699FF"));
    ASSERT_EQ(subscribe(url, {"--title", "Renamed"}).status, 0);
    EXPECT_EQ(list().at(0).colour, "#336699") << "only what is named changes";
    ASSERT_EQ(subscribe(url, {"--colour", "teal"}).status, 0);
    EXPECT_EQ(list().at(0).colour, "#008080");
    EXPECT_EQ(list().at(0).title, "Renamed");
}

TEST_F(SubscribeCommandTest, WrongColourIsRefused) {
    for (const char* colour : {"", "blurple", "#12345", "#33669980", "336699"}) {
        const RunResult result = subscribe(url, {"--colour", colour});
        EXPECT_EQ(result.status, 2) << colour;
        EXPECT_EQ(result.errors, std::string("quorvel: '") + colour +
                                     "' is no colour: write #RRGGBB or a common name\n");
    }
    EXPECT_TRUE(list().empty());
    EXPECT_EQ(server.connections(), 0);
}

TEST_F(SubscribeCommandTest, HostileTitleDoesNotReachTheTerminal) {
    server.on("/team", answering(answer(calendarText("A\x1b[31mB"))));
    EXPECT_EQ(subscribe(url).output, "Subscribed to 'A [31mB'.\n");
    const RunResult title = subscribe(url, {"--title", "A\x1b[31mB"});
    EXPECT_EQ(title.status, 2);
    EXPECT_EQ(title.errors, "quorvel: the title or the name contains a control character: see "
                            "'quorvel settings --help'\n");
}

TEST_F(SubscribeCommandTest, PreferencesFolderIsMadeForTheUserAlone) {
    fs::remove(preferences());
    ASSERT_EQ(subscribe(url).status, 0);
    struct stat status {};
    const std::string file = preferences() + "/org.quorvel.quorvel.subscriptions.plist";
    ASSERT_EQ(stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(SubscribeCommandTest, WhatIsNoCalendarIsNotSubscribedTo) {
    server.on("/page", answering(answer("<html>Sign in</html>")));
    const RunResult page = subscribe(server.url("/page"));
    EXPECT_EQ(page.status, 1);
    EXPECT_EQ(page.output, "");
    EXPECT_EQ(
        page.errors,
        "quorvel: the calendar at 127.0.0.1 was not added (the server sends a web page "
        "instead of a calendar): give the address of the calendar itself, which often ends in "
        ".ics\n");
    EXPECT_EQ(subscribe(server.url("/missing")).errors,
              "quorvel: the calendar at 127.0.0.1 was not added (the server has no such calendar "
              "(status 404))\n");
    EXPECT_TRUE(list().empty());
    EXPECT_FALSE(fs::exists(cache().folderOf(server.url("/page"))));
}

TEST_F(SubscribeCommandTest, ServerThatIsDownIsReadLater) {
    server.on("/team", answering(answer("", "", "503 Later")));
    const RunResult result = subscribe(url, {"--title", "Team"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "Subscribed to 'Team'.\n");
    EXPECT_EQ(result.errors,
              "quorvel: Team: the server has an error (status 503): it will be fetched later\n");
    EXPECT_EQ(list().size(), 1U);
}

TEST_F(SubscribeCommandTest, FailingCalendarStaysSubscribedTo) {
    ASSERT_EQ(subscribe(url).status, 0);
    server.on("/team", answering(answer("", "", "404 Not Found")));
    const RunResult again = subscribe(url, {"--title", "Renamed"});
    EXPECT_EQ(again.status, 0);
    EXPECT_EQ(again.errors, "quorvel: Renamed: the server has no such calendar (status 404)\n");
    EXPECT_EQ(list().at(0).title, "Renamed");
    EXPECT_TRUE(contains(agenda(), "Lunch"));
}

TEST_F(SubscribeCommandTest, NewCalendarIsAmongTheChosenOnes) {
    writeSelection({"somewhere"});
    writeSettings("<key>onlySelectedCalendars</key><false/>");
    ASSERT_EQ(subscribe(url).status, 0);
    EXPECT_TRUE(contains(agenda(), "Lunch"));
    ASSERT_EQ(settings({"--unsubscribe", "team"}).status, 0);
    EXPECT_TRUE(filesWith("127.0.0.1-").empty());
}

TEST_F(SubscribeCommandTest, UnsubscribingRemovesTheCopy) {
    ASSERT_EQ(subscribe(url).status, 0);
    server.on("/other", answering(answer(calendarText("Other"))));
    ASSERT_EQ(subscribe(server.url("/other")).status, 0);
    const RunResult result = settings({"--unsubscribe", "TEAM"});
    EXPECT_EQ(result.output, "Unsubscribed from 'Team'.\n");
    EXPECT_EQ(result.errors, "");
    EXPECT_FALSE(fs::exists(cache().folderOf(url)));
    ASSERT_EQ(list().size(), 1U);
    EXPECT_EQ(settings({"--unsubscribe", server.url("/other")}).output,
              "Unsubscribed from 'Other'.\n");
    EXPECT_TRUE(list().empty());
}

TEST_F(SubscribeCommandTest, IdentifierNamesOneOfTwoWithTheSameTitle) {
    server.on("/other", answering(answer(calendarText("Team"))));
    ASSERT_EQ(subscribe(url).status, 0);
    ASSERT_EQ(subscribe(server.url("/other")).status, 0);
    const std::string identifier = freedesktop::calendarIdentifierOf(list().at(0));
    EXPECT_TRUE(contains(settings({}).output, identifier));
    EXPECT_EQ(settings({"--unsubscribe", identifier}).output, "Unsubscribed from 'Team'.\n");
    ASSERT_EQ(list().size(), 1U);
    EXPECT_EQ(list().at(0).url, server.url("/other"));
}

TEST_F(SubscribeCommandTest, UnknownAndAmbiguousNamesAreRefused) {
    ASSERT_EQ(subscribe(url, {"--title", "Team"}).status, 0);
    server.on("/other", answering(answer(calendarText("Team"))));
    ASSERT_EQ(subscribe(server.url("/other")).status, 0);
    const RunResult ambiguous = settings({"--unsubscribe", "Team"});
    EXPECT_EQ(ambiguous.status, 2);
    EXPECT_EQ(ambiguous.errors,
              "quorvel: several subscriptions have the title 'Team': give the address\n");
    EXPECT_EQ(settings({"--unsubscribe", "Nobody"}).errors,
              "quorvel: there is no subscription 'Nobody': 'quorvel settings calendars' lists the "
              "calendars\n");
    EXPECT_EQ(settings({"--unsubscribe", "https://example.org/geheim"}).errors,
              "quorvel: there is no subscription to this address: 'quorvel settings calendars' "
              "lists the calendars\n");
    EXPECT_EQ(list().size(), 2U);
}

TEST_F(SubscribeCommandTest, WrongUsageIsNamed) {
    const auto error = [&](const std::vector<std::string>& arguments) {
        const RunResult result = settings(arguments);
        EXPECT_EQ(result.status, 2);
        return result.errors;
    };
    EXPECT_EQ(error({"--subscribe", "team.ics"}),
              "quorvel: this is not the address of a calendar on a server: give one that begins "
              "with 'https:' or 'webcal:'\n");
    const std::string hint = ": see 'quorvel settings --help'\n";
    EXPECT_EQ(error({"--subscribe", url, "--unsubscribe", url}),
              "quorvel: --subscribe and --unsubscribe exclude each other" + hint);
    EXPECT_EQ(error({"--subscribe", url, "--all"}),
              "quorvel: calendars are subscribed to and chosen one after the other" + hint);
    EXPECT_EQ(error({"--title", "x"}),
              "quorvel: --title, --colour and --user belong to --subscribe" + hint);
    EXPECT_EQ(error({"--colour", "red"}),
              "quorvel: --title, --colour and --user belong to --subscribe" + hint);
    EXPECT_EQ(error({"--subscribe", url, "--password-stdin"}),
              "quorvel: --password-stdin belongs to --user" + hint);
    EXPECT_EQ(run({"settings", "--subscribe", url}).errors,
              "quorvel: subscriptions are calendars, not settings: write 'quorvel settings "
              "calendars'\n");
    EXPECT_EQ(run({"agenda", "--subscribe", url}).status, 2);
    EXPECT_EQ(server.connections(), 0);
}

// Passwords.

class SubscribePasswordTest : public SubscribeCommandTest {
protected:
    void SetUp() override {
        SubscribeCommandTest::SetUp();
        server.on("/team", [](const Request& sent, Connection& connection) {
            const auto found = sent.headers.find("authorization");
            const bool isRight = found != sent.headers.end() &&
                                 found->second == "Basic bWU6Z2VoZWltLTE3"; // me:geheim-17
            connection.send(isRight ? answer(calendarText("Team", lunch))
                                    : answer("", "WWW-Authenticate: Basic realm=\"x\"\r\n",
                                             "401 Unauthorized"));
        });
    }
    RunResult subscribeAs(const std::string& user, const std::string& password) {
        m_standardInput = write("input", password + "\n").string();
        const RunResult result = subscribe(url, {"--user", user, "--password-stdin"});
        fs::remove(path("input"));
        m_standardInput = "/dev/null";
        return result;
    }
    void startService() {
        service = std::make_unique<SecretService>(m_environment, path("service").string());
    }
    std::unique_ptr<SecretService> service;
};

TEST_F(SubscribePasswordTest, MissingPasswordIsNamed) {
    const RunResult result = subscribe(url);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors,
              "quorvel: the calendar at 127.0.0.1 was not added (the server asks for a name and a "
              "password): store them with 'quorvel settings calendars --subscribe ADDRESS --user "
              "NAME'\n");
    EXPECT_TRUE(list().empty());
}

TEST_F(SubscribePasswordTest, IsInTheSecretServiceAloneAndUsedLater) {
    startService();
    const RunResult result = subscribeAs("me", "geheim-17");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output, "Subscribed to 'Team'.\n");
    EXPECT_EQ(service->secretCount(), 1);
    EXPECT_TRUE(list().at(0).hasPassword);
    EXPECT_TRUE(filesWith("geheim-17").empty());
    EXPECT_EQ(run({"calendars", "--refresh", "--preferences", preferences()}).status, 0);
    EXPECT_EQ(server.requests().size(), 4U) << "each time without and with the password";
    EXPECT_TRUE(contains(agenda(), "Lunch"));
    EXPECT_EQ(settings({"--unsubscribe", "Team"}).errors, "");
    EXPECT_EQ(service->secretCount(), 0);
}

TEST_F(SubscribePasswordTest, PasswordFollowsTheAddressOnStandardInput) {
    startService();
    m_standardInput = write("input", url + "\ngeheim-17\n").string();
    const RunResult result = subscribe("-", {"--user", "me", "--password-stdin"});
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output, "Subscribed to 'Team'.\n");
}

TEST_F(SubscribePasswordTest, WrongPasswordIsNotLeftBehind) {
    startService();
    const RunResult result = subscribeAs("me", "geheim-18");
    EXPECT_EQ(result.status, 1);
    EXPECT_FALSE(contains(result.errors, "geheim"));
    EXPECT_EQ(service->secretCount(), 0);
    EXPECT_TRUE(list().empty());
}

TEST_F(SubscribePasswordTest, NewPasswordReplacesTheOld) {
    startService();
    ASSERT_EQ(subscribeAs("me", "geheim-17").status, 0);
    ASSERT_EQ(subscribeAs("you", "other").status, 0) << "it was subscribed to before";
    EXPECT_EQ(service->secretCount(), 1);
    EXPECT_EQ(run({"calendars", "--refresh", "--preferences", preferences()}).status, 1);
    ASSERT_EQ(subscribeAs("me", "geheim-17").status, 0);
    EXPECT_EQ(service->secretCount(), 1);
    EXPECT_EQ(run({"calendars", "--refresh", "--preferences", preferences()}).status, 0);
}

TEST_F(SubscribePasswordTest, MissingServiceIsNamed) {
    const RunResult result = subscribeAs("me", "geheim-17");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "quorvel: there is no session bus, so there is no secret service: try "
                             "again in a desktop session\n"
                             "quorvel: the password could not be stored\n");
    EXPECT_TRUE(list().empty());
    EXPECT_EQ(server.connections(), 0);
}

TEST_F(SubscribePasswordTest, EmptyPasswordIsRefused) {
    const RunResult result = subscribeAs("me", "");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "quorvel: no password was given: try again\n");
}

} // namespace
} // namespace quorvel::app
