// The rows as a screen reader receives them, over the accessibility bus of a private session.
#include <memory>
#include <optional>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "tests/window/accessible_tree.h"
#include "tests/window/window_fixture.h"

namespace quorvel::window {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

using freedesktop::ObjectHandle;

class AccessibilityTest : public WindowTest {
protected:
    static void SetUpTestSuite() { s_session.emplace(); }
    static void TearDownTestSuite() { s_session.reset(); }

    AccessibilityTest() { m_environment.erase("NO_AT_BRIDGE"); }
    void showList(int rowCount) {
        show();
        ASSERT_TRUE(becomesTrue(20, [&] {
            const Accessible desktop(atspi_get_desktop(0));
            m_list = findRole(desktop.get(), ATSPI_ROLE_LIST);
            return m_list && childCount(m_list.get()) == rowCount;
        }));
    }
    std::vector<std::string> names() const { return namesIn(m_list.get()); }

    static inline std::optional<AccessibilitySession> s_session;
    Accessible m_list;
};

TEST_F(AccessibilityTest, TheBusBelongsToTheTest) {
    EXPECT_THAT(AccessibilitySession::busAddress(), HasSubstr(s_session->folder().path().string()));
}

TEST_F(AccessibilityTest, ReadsTheRowsAndRunsTheirAction) {
    writeThreeEvents();
    showList(3);
    EXPECT_THAT(names(), ElementsAre("Breakfast, 11:00 AM", "Lunch, 12:00 PM", "Tea, 2:00 PM"));
    const Accessible second = childAt(m_list.get(), 1);
    ASSERT_TRUE(second);
    EXPECT_EQ(atspi_accessible_get_role(second.get(), nullptr), ATSPI_ROLE_LIST_ITEM);
    AtspiAction* action = atspi_accessible_get_action_iface(second.get());
    ASSERT_NE(action, nullptr);
    EXPECT_EQ(atspi_action_get_n_actions(action, nullptr), 1);
    EXPECT_TRUE(atspi_action_do_action(action, 0, nullptr));
    g_object_unref(action);
    ASSERT_TRUE(opensLinks(1));
    EXPECT_THAT(opened(), ElementsAre(EndsWith("/second?o=794836800.0")));
}

TEST_F(AccessibilityTest, NamesTheListItsActionAndTheButtons) {
    writeThreeEvents();
    showList(3);
    EXPECT_EQ(nameOf(m_list.get()), "Events");
    const Accessible row = childAt(m_list.get(), 0);
    const ObjectHandle<AtspiAction> action(atspi_accessible_get_action_iface(row.get()));
    ASSERT_TRUE(action);
    const freedesktop::TextHandle description(
        atspi_action_get_action_description(action.get(), 0, nullptr));
    ASSERT_TRUE(description);
    EXPECT_STREQ(description.get(), "Does what a pull of the row does");
    const Accessible desktop(atspi_get_desktop(0));
    const Accessible menu = findRole(desktop.get(), ATSPI_ROLE_TOGGLE_BUTTON);
    ASSERT_TRUE(menu);
    EXPECT_EQ(nameOf(menu.get()), "Menu");
    const Accessible close = findRole(desktop.get(), ATSPI_ROLE_PUSH_BUTTON);
    ASSERT_TRUE(close);
    EXPECT_EQ(nameOf(close.get()), "Close");
}

TEST_F(AccessibilityTest, TheMenuHasNamedItems) {
    writeThreeEvents();
    showList(3);
    key("F10");
    Accessible item;
    EXPECT_TRUE(becomesTrue(10, [&] {
        const Accessible desktop(atspi_get_desktop(0));
        item = findRole(desktop.get(), ATSPI_ROLE_MENU_ITEM);
        return item != nullptr;
    }));
    ASSERT_TRUE(item);
    EXPECT_EQ(nameOf(item.get()), "Settings");
}

TEST_F(AccessibilityTest, DescribesAnEmptyAgenda) {
    writeCalendar("");
    showList(0);
    const freedesktop::TextHandle description(
        atspi_accessible_get_description(m_list.get(), nullptr));
    ASSERT_TRUE(description);
    EXPECT_THAT(description.get(), HasSubstr("Nothing until"));
}

TEST_F(AccessibilityTest, ReceivesChangedRows) {
    writeThreeEvents();
    showList(3);
    const Accessible old = childAt(m_list.get(), 0);
    writeCalendar(event("a", "Alone", "20260310T110000Z", "20260310T120000Z"));
    EXPECT_TRUE(becomesTrue(10, [&] { return childCount(m_list.get()) == 1; }));
    EXPECT_THAT(names(), ElementsAre("Alone, 11:00 AM"));
    EXPECT_TRUE(hasState(old.get(), ATSPI_STATE_DEFUNCT));
}

TEST_F(AccessibilityTest, KeysMoveTheFocusOverTheRows) {
    writeThreeEvents();
    showList(3);
    EXPECT_TRUE(hasState(m_list.get(), ATSPI_STATE_MANAGES_DESCENDANTS));
    const auto hasFocus = [&](int row) {
        const Accessible item = childAt(m_list.get(), row);
        return hasState(item.get(), ATSPI_STATE_FOCUSED);
    };
    EXPECT_FALSE(hasFocus(0));
    key("Down");
    EXPECT_TRUE(becomesTrue(5, [&] { return hasFocus(0); }));
    key("Down");
    EXPECT_TRUE(becomesTrue(5, [&] { return hasFocus(1); }));
    EXPECT_FALSE(hasFocus(0));
}

// The window and the command `agenda` have the same rows with the same texts.
TEST_F(AccessibilityTest, ShowsWhatTheAgendaCommandPrints) {
    writeSettings("<key>displayLocation</key><true/>");
    const std::string end = "END:VEVENT\r\n";
    std::string party = event("party", "Party", "20260311T190000Z", "20260311T230000Z");
    party.insert(party.size() - end.size(), "LOCATION:Café Sol\r\n");
    writeCalendar(event("walk", "Walk", "20260310T080000Z", "20260310T113000Z") + party +
                  event("fair", "Fair", "20260310", "20260312"));
    const auto printedRows = nlohmann::json::parse(printed("agenda", {"--json"}));
    ASSERT_EQ(printedRows.size(), 3U);
    std::vector<std::string> expected;
    for (const auto& row : printedRows) {
        std::string name = row.at("title").get<std::string>();
        if (row.at("location").is_string()) {
            name += ", " + row.at("location").get<std::string>();
        }
        expected.push_back(name + ", " + row.at("caption").get<std::string>());
    }
    showList(3);
    EXPECT_EQ(names(), expected);
    EXPECT_THAT(names(), Contains("Party, Café Sol, Tomorrow, 7:00 PM"));
}

// Whether an object with that name is below another one.
bool hasObjectNamed(AtspiAccessible* below, const std::string& name) {
    for (int i = 0; below != nullptr && i < childCount(below); ++i) {
        const Accessible child = childAt(below, i);
        if (child && (nameOf(child.get()) == name || hasObjectNamed(child.get(), name))) {
            return true;
        }
    }
    return false;
}

TEST_F(AccessibilityTest, NamesAreInTheLanguageOfTheUser) {
    m_environment["LOCPATH"] = QUORVEL_TEST_LOCALES;
    const std::pair<const char*, const char*> menus[] = {{"de_DE", "Menü"}, {"ar_EG", "القائمة"}};
    for (const auto& [locale, menu] : menus) {
        show({"--locale", locale});
        EXPECT_TRUE(becomesTrue(20, [name = menu] {
            const Accessible desktop(atspi_get_desktop(0));
            return hasObjectNamed(desktop.get(), name);
        })) << locale;
        endProgram();
    }
}

} // namespace
} // namespace quorvel::window
