#include "shells/widget/notices.h"

#include <gmock/gmock.h>

#include <limits>

#include "freedesktop/dates/clocks.h"
#include "freedesktop/dates/icu_date_services.h"
#include "freedesktop/dates/instant_text.h"
#include "platform/ui/ui_window.h"
#include "shells/headless/recording_host.h"
#include "shells/widget/hosted_widget.h"
#include "tests/shells/widget/shell_fixture.h"

namespace quorvel::shells {
namespace {

using freedesktop::CalendarProblem;

// "Nothing until ..." of a local time in Berlin.
std::string untilText(const char* now, std::int64_t days, const char* locale = "en_US") {
    const auto zone = freedesktop::namedTimeZone("Europe/Berlin");
    freedesktop::AdjustableClock clock;
    clock.setNow(*freedesktop::parseInstant(now, *zone));
    const freedesktop::IcuDateServices dates(clock, zone, locale);
    return nothingPlannedText(dates, clock.now(), days);
}

TEST(NothingPlanned, NamesTheLastDay) {
    EXPECT_EQ(untilText("2026-03-10T10:00", 1), "Nothing until Wednesday");
    EXPECT_EQ(untilText("2026-03-10T10:00", 2), "Nothing until Thursday");
    EXPECT_EQ(untilText("2026-03-10T10:00", 6), "Nothing until Monday");
    EXPECT_EQ(untilText("2026-03-10T10:00", 7), "Nothing until March 17");
    EXPECT_EQ(untilText("2026-03-10T10:00", 400), "Nothing until April 14, 2027");
}

TEST(NothingPlanned, KnowsTodayAndThePast) {
    EXPECT_EQ(untilText("2026-03-10T10:00", 0), "Nothing today");
    EXPECT_EQ(untilText("2026-03-10T10:00", -3), "Nothing planned");
}

TEST(NothingPlanned, IsInTheUsersLanguage) {
    EXPECT_EQ(untilText("2026-03-10T10:00", 2, "de_DE"), "Nothing until Donnerstag");
    EXPECT_EQ(untilText("2026-03-10T10:00", 2, "ja_JP"), "Nothing until \u6728\u66dc\u65e5");
    EXPECT_EQ(untilText("2026-03-10T10:00", 9, "de_DE"), "Nothing until 19. M\u00e4rz");
}

TEST(NothingPlanned, AChangeOfTheClocksMovesNoDay) {
    EXPECT_EQ(untilText("2026-03-27T23:59", 2), "Nothing until Sunday");
    EXPECT_EQ(untilText("2026-03-28T00:00", 1), "Nothing until Sunday");
    EXPECT_EQ(untilText("2026-10-24T23:59", 1), "Nothing until Sunday");
    EXPECT_EQ(untilText("2026-10-25T00:00", 1), "Nothing until Monday");
}

TEST(NothingPlanned, HostileNumbersAreBounded) {
    EXPECT_EQ(untilText("2026-03-10T10:00", std::numeric_limits<std::int64_t>::max()),
              untilText("2026-03-10T10:00", std::numeric_limits<std::int32_t>::max()));
    EXPECT_EQ(untilText("2026-03-10T10:00", std::numeric_limits<std::int64_t>::min()),
              "Nothing planned");
}

TEST(Unreadable, IsAShortNameAndAReason) {
    EXPECT_EQ(unreadableNotice({}), std::nullopt);
    const CalendarProblem denied{"work.ics", 0, "it cannot be read: Permission denied"};
    EXPECT_EQ(unreadableNotice({denied}),
              (ProblemNotice{"work.ics", "cannot be read: Permission denied"}));
    EXPECT_EQ(unreadableNotice({{"calendars", 0, "there is no such file or folder"}}),
              (ProblemNotice{"calendars", "there is no such file or folder"}));
    EXPECT_EQ(unreadableNotice({{"b.ics", 1, "no calendar"}, denied, denied}),
              (ProblemNotice{"b.ics and 2 more", "no calendar"}));
    EXPECT_EQ(unreadableNotice({{"the calendar 'a/b' of a server", 0, "it is odd"}}),
              (ProblemNotice{"the calendar 'a/b' of a server", "is odd"}));
    EXPECT_EQ(unreadableNotice({{"", 0, ""}}), ProblemNotice());
}

TEST(Notices, CanBeReadAloud) {
    EXPECT_EQ(textOf({}), "");
    EXPECT_EQ(textOf({"Nothing today", std::nullopt}), "Nothing today");
    EXPECT_EQ(textOf({std::nullopt, ProblemNotice{"a.ics", "is odd"}}), "a.ics: is odd");
    EXPECT_EQ(textOf({"Nothing today", ProblemNotice{"a.ics", "is odd"}}),
              "Nothing today. a.ics: is odd");
}

TEST(NoCalendars, AreMissingOrCannotBeRead) {
    EXPECT_EQ(noCalendarsText({false, false, {}}), "There are no calendars yet");
    EXPECT_EQ(noCalendarsText({false, false, {{"a.ics", 0, "it is odd"}}}),
              "The calendars cannot be read");
}

class NoticesTest : public ShellFixture {
protected:
    Notices notices(const CalendarState& calendars) {
        return noticesOf(widget, calendars, memory.dateServices, memory.clock.now());
    }
    headless::RecordingHost host;
    std::shared_ptr<platform::UIWindow> window =
        std::make_shared<platform::UIWindow>(platform::CGRectMake(0, 0, 320, 300), memory.screen);
    HostedWidget widget{bundle, notificationController, memory.platform(), host, *window};
};

TEST_F(NoticesTest, FollowTheWidgetAndTheCalendars) {
    setSettings({{"daysToDisplay", {std::int64_t{4}}}});
    widget.view();
    widget.present();
    EXPECT_EQ(notices({}), (Notices{"Nothing until Friday", std::nullopt}));
    EXPECT_EQ(notices({true, true, {}}), Notices{});
    EXPECT_EQ(notices({false, true, {}}), (Notices{"There are no calendars yet", std::nullopt}));
    addEvents(1);
    widget.present();
    EXPECT_EQ(notices({}), Notices{});
    EXPECT_EQ(notices({true, true, {{"a.ics", 0, "it is odd"}}}),
              (Notices{std::nullopt, ProblemNotice{"a.ics", "is odd"}}));
}

TEST_F(NoticesTest, AWidgetWithoutAListIsNotEmpty) {
    HostedWidget legacy(bundle, legacyController, memory.platform(), host, *window);
    legacy.loadPlaceholderView();
    EXPECT_EQ(noticesOf(legacy, {}, memory.dateServices, memory.clock.now()), Notices{});
}

} // namespace
} // namespace quorvel::shells
