// The list of calendars, and which of them are shown.
#include "shells/settings/calendar_choice.h"

#include <gmock/gmock.h>

namespace quorvel::settings_pages {
namespace {

using freedesktop::CalendarSelection;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(CalendarChoice, ReadsTheList) {
    const auto calendars = parseCalendarList(
        R"([{"identifier":"a","title":"Ä","color":"#010203FF","selected":true,"store":"files"},
            {"identifier":"b","title":"B","color":null,"selected":false}])");
    ASSERT_TRUE(calendars);
    ASSERT_EQ(calendars->size(), 2U);
    const ListedCalendar& first = calendars->at(0);
    EXPECT_EQ(first.identifier, "a");
    EXPECT_EQ(first.title, "Ä");
    EXPECT_EQ(first.colour, "#010203FF");
    EXPECT_EQ(first.origin, "files");
    EXPECT_TRUE(first.isShown);
    EXPECT_EQ(calendars->at(1).colour, "");
    EXPECT_FALSE(calendars->at(1).isShown);
}

TEST(CalendarChoice, OtherDocumentsAreErrors) {
    for (const char* document : {"", "[", "{}", "[1]", "[{\"title\":\"without identifier\"}]"}) {
        EXPECT_FALSE(parseCalendarList(document)) << document;
    }
    const auto none = parseCalendarList("[]");
    ASSERT_TRUE(none);
    EXPECT_THAT(*none, IsEmpty());
}

TEST(CalendarChoice, SwitchesOneCalendar) {
    CalendarSelection selection{false, {"a"}};
    selection = withCalendar(selection, "b", true);
    EXPECT_THAT(selection.identifiers, ElementsAre("a", "b"));
    selection = withCalendar(selection, "b", true);
    EXPECT_THAT(selection.identifiers, ElementsAre("a", "b"));
    selection = withCalendar(selection, "a", false);
    EXPECT_THAT(selection.identifiers, ElementsAre("b"));
    EXPECT_FALSE(selection.followsDesktop);
}

TEST(CalendarChoice, TheOwnListBeginsWithWhatIsShown) {
    const std::vector<ListedCalendar> calendars{{"a", "", "", "", true}, {"b", "", "", "", false}};
    const CalendarSelection selection = withOwnList({true, {"gone"}}, calendars);
    EXPECT_FALSE(selection.followsDesktop);
    EXPECT_THAT(selection.identifiers, ElementsAre("gone", "a"));
}

TEST(CalendarChoice, AnEarlierListOfTheUserStays) {
    const std::vector<ListedCalendar> calendars{{"a", "", "", "", true}, {"b", "", "", "", false}};
    const CalendarSelection selection = withOwnList({true, {"b"}}, calendars);
    EXPECT_THAT(selection.identifiers, ElementsAre("b"));
}

} // namespace
} // namespace quorvel::settings_pages
