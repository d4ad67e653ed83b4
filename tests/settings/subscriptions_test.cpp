// Subscribing to a calendar on the web in the window, and ending the subscription.
#include <fstream>
#include <iterator>
#include <optional>

#include <gmock/gmock.h>

#include "tests/freedesktop/network/web_server.h"
#include "tests/settings/settings_fixture.h"

namespace quorvel::window {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing_network::answer;
using testing_network::answering;
using testing_network::TestAuthority;
using testing_network::WebServer;

const std::string entryName = "Subscribe to a calendar on the web";
const std::string removeName = "Unsubscribe from “Team”";

class SettingsSubscriptionsTest : public SettingsTest {
protected:
    static void SetUpTestSuite() {
        SettingsTest::SetUpTestSuite();
        s_authority.emplace();
    }
    static void TearDownTestSuite() {
        s_authority.reset();
        SettingsTest::TearDownTestSuite();
    }

    SettingsSubscriptionsTest() {
        m_environment["QUORVEL_CERTIFICATE_AUTHORITIES"] = s_authority->file();
        std::ofstream(path("calendars/Home.ics")) << calendar("Home");
    }
    ~SettingsSubscriptionsTest() override { endSettings(); } // before its server

    static std::string calendar(const std::string& name) {
        return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nX-WR-CALNAME:" + name + "\r\nEND:VCALENDAR\r\n";
    }
    void serveTeam() { m_server.on("/team", answering(answer(calendar("Team")))); }
    // Types into the widget that has the focus.
    void type(const std::string& address) const { input({"type", "--delay", "20", address}); }
    void subscribeTo(const std::string& target) const {
        focus(ATSPI_ROLE_TEXT, entryName);
        type(m_server.url(target));
        key("Return");
    }
    std::filesystem::path listFile() const {
        return path("preferences/org.quorvel.quorvel.subscriptions.plist");
    }
    std::string list() const {
        std::ifstream file(listFile());
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }
    std::string typedAddress() const {
        const Accessible entry = control(ATSPI_ROLE_TEXT, entryName);
        const freedesktop::ObjectHandle<AtspiText> text(
            entry ? atspi_accessible_get_text_iface(entry.get()) : nullptr);
        const freedesktop::TextHandle typed(
            text ? atspi_text_get_text(text.get(), 0,
                                       atspi_text_get_character_count(text.get(), nullptr), nullptr)
                 : nullptr);
        return typed ? typed.get() : "(no text)";
    }
    std::string descriptionOfEntry() const {
        const Accessible entry = control(ATSPI_ROLE_TEXT, entryName);
        atspi_accessible_clear_cache(entry.get());
        const freedesktop::TextHandle text(atspi_accessible_get_description(entry.get(), nullptr));
        return text ? text.get() : "";
    }
    bool disappears(AtspiRole role, const std::string& name) const {
        return becomesTrue(20, [&] { return !isThere(role, name); });
    }
    void focusMainWindow() const { input({"windowfocus", m_settingsWindow}); }

    static inline std::optional<TestAuthority> s_authority;
    WebServer m_server{s_authority->issue("IP:127.0.0.1")};
};

TEST_F(SettingsSubscriptionsTest, ACalendarIsAddedAndRemoved) {
    serveTeam();
    openSettings();
    subscribeTo("/team");
    ASSERT_TRUE(appears(ATSPI_ROLE_CHECK_BOX, "Team"));
    EXPECT_THAT(list(), HasSubstr(m_server.url("/team")));
    EXPECT_EQ(typedAddress(), "");
    EXPECT_TRUE(isThere(ATSPI_ROLE_LIST_ITEM, "Subscribed to 'Team'."));
    EXPECT_FALSE(isThere(ATSPI_ROLE_PUSH_BUTTON, "Unsubscribe from “Home”"));

    openDialog([this] { press(removeName); });
    EXPECT_TRUE(appears(ATSPI_ROLE_PUSH_BUTTON, "Unsubscribe"));
    key("Escape");
    EXPECT_TRUE(disappears(ATSPI_ROLE_PUSH_BUTTON, "Unsubscribe"));
    EXPECT_THAT(list(), HasSubstr("/team"));

    focusMainWindow();
    openDialog([this] { press(removeName); });
    press("Unsubscribe");
    EXPECT_TRUE(disappears(ATSPI_ROLE_CHECK_BOX, "Team"));
    EXPECT_THAT(list(), Not(HasSubstr("/team")));
    EXPECT_TRUE(isThere(ATSPI_ROLE_CHECK_BOX, "Home"));
}

TEST_F(SettingsSubscriptionsTest, AnErrorIsShownAndTheAddressStays) {
    openSettings();
    subscribeTo("/team");
    ASSERT_TRUE(appears(ATSPI_ROLE_LIST_ITEM, "The calendar was not added"));
    const std::string missing =
        "the calendar at 127.0.0.1 was not added (the server has no such calendar (status 404))";
    EXPECT_TRUE(isThere(ATSPI_ROLE_LABEL, missing));
    EXPECT_EQ(descriptionOfEntry(), missing);
    EXPECT_EQ(typedAddress(), m_server.url("/team"));
    EXPECT_EQ(list(), "");

    m_server.on("/team", answering(answer("<html>Sign in</html>")));
    key("Return");
    const std::string page = "the calendar at 127.0.0.1 was not added (the server sends a web page "
                             "instead of a calendar): give the address of the calendar itself, "
                             "which often ends in .ics";
    EXPECT_TRUE(appears(ATSPI_ROLE_LABEL, page));

    serveTeam();
    key("Return");
    EXPECT_TRUE(appears(ATSPI_ROLE_CHECK_BOX, "Team"));
    EXPECT_FALSE(isThere(ATSPI_ROLE_LIST_ITEM, "The calendar was not added"));
    EXPECT_EQ(descriptionOfEntry(), "");
}

TEST_F(SettingsSubscriptionsTest, AnAddressThatIsNoneIsRefused) {
    openSettings();
    focus(ATSPI_ROLE_TEXT, entryName);
    type("team.ics");
    press("Subscribe");
    EXPECT_TRUE(appears(ATSPI_ROLE_LABEL,
                        "this is not the address of a calendar on a server: give one that begins "
                        "with 'https:' or 'webcal:'"));
    EXPECT_EQ(m_server.connections(), 0);
}

TEST_F(SettingsSubscriptionsTest, ACalendarThatWasNeverFetchedCanBeRemoved) {
    m_server.on("/team", answering(answer("", "", "503 Later")));
    openSettings();
    subscribeTo("/team");
    ASSERT_TRUE(appears(ATSPI_ROLE_LIST_ITEM, "127.0.0.1"));
    EXPECT_TRUE(isThere(ATSPI_ROLE_LABEL, "127.0.0.1, not fetched yet"));
    EXPECT_TRUE(isThere(ATSPI_ROLE_LABEL, "127.0.0.1: the server has an error (status 503): it "
                                          "will be fetched later"));
    openDialog([this] { press("Unsubscribe from “127.0.0.1”"); });
    press("Unsubscribe");
    EXPECT_TRUE(disappears(ATSPI_ROLE_LIST_ITEM, "127.0.0.1"));
    EXPECT_THAT(list(), Not(HasSubstr("/team")));
}

TEST_F(SettingsSubscriptionsTest, AFailureToUnsubscribeIsShownInTheRow) {
    serveTeam();
    printed("settings", {"calendars", "--subscribe", m_server.url("/team")});
    openSettingsOnAFullDisk();
    ASSERT_TRUE(appears(ATSPI_ROLE_PUSH_BUTTON, removeName));
    openDialog([this] { press(removeName); });
    press("Unsubscribe");
    EXPECT_TRUE(appears(ATSPI_ROLE_LABEL,
                        "The subscription has not ended: " + listFile().string() +
                            ": it cannot be written (File too large): nothing was changed; check "
                            "the permissions and the space of its folder"));
    EXPECT_THAT(list(), HasSubstr("/team"));
    focusMainWindow();
    EXPECT_TRUE(becomesSensitive(ATSPI_ROLE_PUSH_BUTTON, removeName, true));
}

TEST_F(SettingsSubscriptionsTest, TheWindowStaysResponsiveMeanwhile) {
    m_server.on("/team", [](const auto&, testing_network::Connection& connection) {
        connection.waitForClose();
    });
    openSettings();
    subscribeTo("/team");
    EXPECT_TRUE(appears(ATSPI_ROLE_LIST_ITEM, "The calendar is being fetched…"));
    EXPECT_TRUE(becomesTrue(20, [&] { return m_server.connections() == 1; }));
    toggle("Show locations");
    EXPECT_TRUE(contentBecomes("displayLocation"));
    EXPECT_TRUE(isThere(ATSPI_ROLE_LIST_ITEM, "The calendar is being fetched…"));
}

TEST_F(SettingsSubscriptionsTest, TheFirstPageLeadsToTheEntry) {
    std::filesystem::remove(path("calendars/Home.ics"));
    serveTeam();
    openSettings();
    ASSERT_TRUE(appears(ATSPI_ROLE_PUSH_BUTTON, "Go to the Settings"));
    activate(ATSPI_ROLE_LIST_ITEM, "A calendar on the web");
    const Accessible entry = control(ATSPI_ROLE_TEXT, entryName);
    ASSERT_TRUE(becomesTrue(20, [&] { return hasState(entry.get(), ATSPI_STATE_FOCUSED); }));
    type(m_server.url("/team"));
    key("Return");
    EXPECT_TRUE(appears(ATSPI_ROLE_CHECK_BOX, "Team"));
}

TEST_F(SettingsSubscriptionsTest, TheHelpLeadsToTheEntry) {
    openSettings();
    const std::size_t windows = m_display->windows().size();
    openDialog([this] { activate(ATSPI_ROLE_LIST_ITEM, "How to Add Calendars"); });
    const Accessible desktop(atspi_get_desktop(0));
    const Accessible help = findNamed(desktop.get(), ATSPI_ROLE_FRAME, "How to Add Calendars");
    const Accessible kind = findNamed(help.get(), ATSPI_ROLE_LIST_ITEM, "A calendar on the web");
    ASSERT_TRUE(kind);
    for (int i = 0; i < 20 && !hasState(kind.get(), ATSPI_STATE_FOCUSED); ++i) {
        key("Tab");
        rest(0.1);
    }
    key("Return");
    EXPECT_TRUE(becomesTrue(20, [&] { return m_display->windows().size() == windows; }));
    focusMainWindow();
    const Accessible entry = control(ATSPI_ROLE_TEXT, entryName);
    EXPECT_TRUE(becomesTrue(20, [&] { return hasState(entry.get(), ATSPI_STATE_FOCUSED); }));
}

} // namespace
} // namespace quorvel::window
