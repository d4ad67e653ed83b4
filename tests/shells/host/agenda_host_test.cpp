#include "shells/host/agenda_host.h"

#include <gmock/gmock.h>

#include <limits>

#include "platform/ui/ui_label.h"
#include "tests/shells/host/host_fixture.h"

namespace quorvel::shells {
namespace {

using namespace platform;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* todayController = "QuorvelViewControllerNewToday";

class AgendaHostTest : public HostFixture {
protected:
    static CGSize sizeOfWidget(AgendaHost& host) { return tableOf(host).bounds().size; }
    static UILabel& lineOf(AgendaHost& host) {
        return dynamic_cast<UILabel&>(*host.window().subviews().at(1));
    }
    CGPoint middleOfRow(AgendaHost& host, std::size_t row) const {
        const CGRect frame = host.rows().rowFrame(row);
        return {frame.origin.x + frame.size.width / 2, frame.origin.y + frame.size.height / 2};
    }
};

// Appearance.

TEST_F(AgendaHostTest, AnAppearanceTakesEffectWithoutAPresentation) {
    addEvents(2);
    const auto host = makeShownHost();
    EXPECT_EQ(host->window().labelColors().title, host->appearance().title);
    const int appearances = observer.appearances;
    const auto light = standardAppearance(AppearanceKind::light);
    host->setAppearance(light);
    EXPECT_EQ(host->window().labelColors().caption, light.caption);
    EXPECT_FALSE(tableOf(*host).paintsTrailingSeparators());
    EXPECT_EQ(observer.presentations, 1);
    EXPECT_EQ(observer.appearances, appearances + 1);
}

TEST_F(AgendaHostTest, ALegacyWidgetKeepsTheAppearanceWhenItIsLoadedAgain) {
    addEvents(2);
    const auto host = makeShownHost(legacyController);
    host->present();
    EXPECT_FALSE(tableOf(*host).paintsTrailingSeparators());
}

// Sizes.

TEST_F(AgendaHostTest, TheWidgetHasItsPreferredSize) {
    addEvents(5);
    const auto host = makeShownHost();
    const CGFloat height = heightOfRows(*host);
    EXPECT_GT(height, 0);
    EXPECT_EQ(host->wantedSize(), (CGSize{320, std::ceil(height)}));
    EXPECT_EQ(sizeOfWidget(*host), (CGSize{320, height}));
    EXPECT_EQ(observer.sizes, 1);
    EXPECT_EQ(observer.presentations, 1);
}

TEST_F(AgendaHostTest, EveryPresentationUpdatesTheSize) {
    addEvents(2);
    const auto host = makeShownHost();
    const CGFloat before = host->wantedSize().height;
    addEvents(3);
    host->present();
    EXPECT_GT(host->wantedSize().height, before);
    EXPECT_EQ(sizeOfWidget(*host).height, heightOfRows(*host));
    EXPECT_EQ(observer.sizes, 2);
    host->present();
    EXPECT_EQ(observer.sizes, 2) << "the same size is not reported";
    EXPECT_EQ(observer.presentations, 3);
}

// Without events, the widget's preferred size is its greatest height.
TEST_F(AgendaHostTest, AnInvalidSizeIsRequestedAgain) {
    const auto host = makeShownHost();
    EXPECT_EQ(host->wantedSize(), (CGSize{320, 300}));
    EXPECT_EQ(sizeOfWidget(*host), (CGSize{320, 300}));
    setSettings({{"maxHeight", {std::int64_t{123}}}});
    host->present();
    EXPECT_EQ(host->wantedSize(), (CGSize{320, 123}));
    setSettings({{"maxHeight", {std::int64_t{0}}}});
    host->present();
    EXPECT_EQ(host->wantedSize(), (CGSize{320, 44})) << "the line about the empty agenda";
}

TEST_F(AgendaHostTest, ALimitedWidgetScrollsItself) {
    setSettings({{"maxHeight", {std::int64_t{100}}}, {"limitMaxHeight", {true}}});
    addEvents(10);
    const auto host = makeShownHost();
    EXPECT_EQ(host->wantedSize(), (CGSize{320, 100}));
    EXPECT_TRUE(tableOf(*host).canMoveVertically());
    EXPECT_FALSE(scrollerOf(*host).canMoveVertically());
}

TEST_F(AgendaHostTest, TheTodayWidgetIsNeverResized) {
    addEvents(20);
    const auto host = makeShownHost(todayController);
    EXPECT_EQ(host->wantedSize(), (CGSize{320, 270}));
    addEvents(5);
    host->present();
    EXPECT_EQ(host->wantedSize(), (CGSize{320, 270}));
    EXPECT_EQ(sizeOfWidget(*host), (CGSize{320, 270}));
    EXPECT_EQ(host->rows().rowCount(), 25U);
}

TEST_F(AgendaHostTest, TheUsersWidthCounts) {
    addEvents(1);
    width = 411.5;
    const auto host = makeShownHost();
    EXPECT_EQ(host->wantedSize().width, 412);
    EXPECT_EQ(sizeOfWidget(*host).width, 412);
    host->setAreaSize({500, 300});
    EXPECT_EQ(sizeOfWidget(*host), (CGSize{500, heightOfRows(*host)}));
    host->present();
    EXPECT_EQ(host->wantedSize().width, 500) << "a window that was widened stays wide";
}

TEST_F(AgendaHostTest, AWidgetHigherThanTheScreenScrolls) {
    addEvents(30);
    const auto host = makeHost(notificationController);
    host->setGreatestHeight(200);
    host->present();
    EXPECT_EQ(host->wantedSize(), (CGSize{320, 200}));
    host->setAreaSize(host->wantedSize());
    EXPECT_EQ(sizeOfWidget(*host).height, heightOfRows(*host)) << "its preferred height";
    EXPECT_TRUE(scrollerOf(*host).canMoveVertically());
    EXPECT_EQ(scrollerOf(*host).contentSize(), (CGSize{320, heightOfRows(*host)}));

    host->setGreatestHeight(250);
    EXPECT_EQ(host->wantedSize().height, 250);
    EXPECT_EQ(observer.sizes, 2);
}

TEST_F(AgendaHostTest, TheOffsetStaysWithinFewerRows) {
    addEvents(30);
    const auto host = makeHost(notificationController);
    host->setGreatestHeight(200);
    host->present();
    host->setAreaSize({320, 200});
    scrollerOf(*host).setContentOffset({0, 300});
    memory.clock.setNow(at(0, 13, 10)); // 11 of them are over
    host->present();
    const UIScrollView& scroller = scrollerOf(*host);
    EXPECT_EQ(scroller.contentOffset().y, std::min(300.0, scroller.contentSize().height - 200));
    memory.clock.setNow(at(0, 13, 28)); // at most two remain
    host->present();
    EXPECT_EQ(scrollerOf(*host).contentOffset().y, 0);
}

TEST_F(AgendaHostTest, AnAreaLargerThanTheWidgetStaysEmptyBelow) {
    addEvents(2);
    const auto host = makeShownHost();
    host->setAreaSize({320, 700});
    EXPECT_EQ(sizeOfWidget(*host).height, heightOfRows(*host));
    EXPECT_EQ(host->window().frame(), CGRectMake(0, 0, 320, 700));
    EXPECT_FALSE(host->isOnRow({100, 699}));
}

TEST_F(AgendaHostTest, HostileSizesAreLimited) {
    addEvents(1);
    width = 99999;
    const auto host = makeShownHost();
    EXPECT_EQ(host->wantedSize().width, std::numeric_limits<std::int16_t>::max());
    for (const char* height : {"1e300", "-50"}) {
        setSettings({{"maxHeight", {std::string(height)}}});
        memory.clock.setNow(at(5, 0)); // no events
        host->present();
        EXPECT_GE(host->wantedSize().height, 1);
        EXPECT_LE(host->wantedSize().height, std::numeric_limits<std::int16_t>::max());
        memory.clock.setNow(at(0, 10));
        host->present();
        EXPECT_EQ(host->wantedSize().height, std::ceil(heightOfRows(*host)));
    }
}

// The controller for older hosts.

TEST_F(AgendaHostTest, TheLegacyWidgetHasItsPictureAndItsRows) {
    addEvents(3);
    const auto host = makeShownHost(legacyController);
    EXPECT_EQ(host->wantedSize(), (CGSize{320, 70}));
    EXPECT_EQ(sizeOfWidget(*host), (CGSize{320, 70}));
    EXPECT_EQ(host->rows().rowCount(), 3U);
    addEvents(1);
    host->present();
    EXPECT_EQ(host->rows().rowCount(), 4U);
    EXPECT_EQ(viewsOf<UITableView>(*host).size(), 1U) << "the old view was removed";
    EXPECT_EQ(sizeOfWidget(*host), (CGSize{320, 70}));
}

TEST_F(AgendaHostTest, ATapOpensNothing) {
    addEvents(1);
    for (const char* controller : {legacyController, notificationController}) {
        const auto host = makeShownHost(controller);
        host->tap({60, 20});
        host->tap({60, 5000});
        EXPECT_THAT(takeOpened(), IsEmpty());
    }
}

// Missing calendars.

TEST_F(AgendaHostTest, ALineReportsThatThereAreNoCalendars) {
    calendarState.hasReadable = false;
    const auto host = makeShownHost();
    EXPECT_FALSE(host->hasCalendars());
    EXPECT_EQ(lineOf(*host).text(), "There are no calendars yet");
    EXPECT_FALSE(lineOf(*host).isHidden());
    EXPECT_EQ(host->wantedSize(), (CGSize{320, 44})) << "the line alone";
    EXPECT_TRUE(scrollerOf(*host).isHidden());
    calendarState.hasReadable = true;
    host->present();
    EXPECT_FALSE(scrollerOf(*host).isHidden());
    EXPECT_EQ(host->wantedSize(), (CGSize{320, 300})) << "requested again, as there are no events";
    EXPECT_TRUE(host->hasCalendars());
    EXPECT_EQ(lineOf(*host).text(), "Nothing until Wednesday");
}

// Notices.

TEST_F(AgendaHostTest, AnEmptyAgendaHasALine) {
    const auto host = makeShownHost();
    EXPECT_TRUE(host->hasCalendars());
    EXPECT_EQ(host->rows().rowCount(), 0U);
    EXPECT_EQ(host->notices().line, "Nothing until Wednesday");
    EXPECT_FALSE(lineOf(*host).isHidden());
    EXPECT_EQ(lineOf(*host).textColor(), host->appearance().caption);
    const CGRect frame = lineOf(*host).frame();
    EXPECT_NEAR(frame.origin.x + frame.size.width / 2, 160, 1e-9);
    EXPECT_EQ(frame.origin.y, 0);
    EXPECT_EQ(frame.size.height, 300);
    addEvents(1);
    host->present();
    EXPECT_EQ(host->notices(), Notices{});
    EXPECT_TRUE(lineOf(*host).isHidden());
}

TEST_F(AgendaHostTest, ALineHasRoomWhereTheWidgetHasNone) {
    setSettings({{"maxHeight", {std::int64_t{0}}}});
    const auto host = makeShownHost();
    EXPECT_EQ(host->wantedSize(), (CGSize{320, 44}));
    EXPECT_EQ(sizeOfWidget(*host).height, 0) << "the widget's own size";
}

TEST_F(AgendaHostTest, WhatCannotBeReadIsMarkedBelowTheRows) {
    addEvents(2);
    const auto host = makeShownHost();
    const CGSize size = host->wantedSize();
    const CGFloat rows = heightOfRows(*host);
    calendarState.unreadable = {{"work.ics", 0, "it cannot be read: Permission denied"}};
    host->present();
    EXPECT_EQ(host->notices().problem,
              (ProblemNotice{"work.ics", "cannot be read: Permission denied"}));
    EXPECT_GT(host->wantedSize().height, size.height + 14);
    EXPECT_EQ(sizeOfWidget(*host).height, rows);
    host->setAreaSize(host->wantedSize());
    const UIView& problem = *host->window().subviews().at(2);
    EXPECT_FALSE(problem.isHidden());
    EXPECT_EQ(CGRectGetMinY(problem.frame()), CGRectGetMaxY(scrollerOf(*host).frame()));
    EXPECT_EQ(CGRectGetMaxY(problem.frame()), host->wantedSize().height);
    calendarState.unreadable.clear();
    host->present();
    EXPECT_EQ(host->wantedSize(), size);
    EXPECT_TRUE(problem.isHidden());
}

TEST_F(AgendaHostTest, CalendarsThatCannotBeReadAreNotMissing) {
    calendarState.hasReadable = false;
    const auto host = makeShownHost();
    EXPECT_FALSE(host->hasCalendars());
    EXPECT_EQ(host->notices(), (Notices{"There are no calendars yet", std::nullopt}));
    calendarState.unreadable = {{"a.ics", 0, "the file is empty"}, {"b.ics", 0, "too"}};
    host->present();
    EXPECT_EQ(host->notices(), (Notices{"The calendars cannot be read",
                                        ProblemNotice{"a.ics and 1 more", "the file is empty"}}));
}

TEST_F(AgendaHostTest, WhatIsNotReadYetIsNotEmpty) {
    calendarState.isLate = true;
    const auto host = makeShownHost();
    EXPECT_EQ(host->notices().line, std::nullopt);
    calendarState.isLate = false;
    host->present();
    EXPECT_EQ(host->notices().line, "Nothing until Wednesday");
}

// Input.

TEST_F(AgendaHostTest, APulledRowOpensItsEventAndMoves) {
    addEvents(3);
    const auto host = makeShownHost();
    const CGPoint row = middleOfRow(*host, 1);
    EXPECT_TRUE(host->isOnRow(row));
    EXPECT_TRUE(host->canDragHorizontally(row));
    EXPECT_FALSE(host->canDragVertically(row));
    const int before = observer.appearances;
    host->sendFinger({1, UITouchPhase::began, row, 1.0});
    EXPECT_EQ(observer.fingers, 1);
    host->sendFinger({1, UITouchPhase::moved, {row.x + 5, row.y}, 1.1});
    EXPECT_EQ(observer.appearances, before) << "nothing has moved yet";
    host->sendFinger({1, UITouchPhase::moved, {row.x + 250, row.y}, 1.2});
    EXPECT_EQ(observer.appearances, before + 1);
    EXPECT_THAT(takeOpened(), IsEmpty());
    host->sendFinger({1, UITouchPhase::ended, {row.x + 250, row.y}, 2.2});
    EXPECT_THAT(takeOpened(), ElementsAre(linkOfRow(1)));
    EXPECT_EQ(observer.fingers, 2);
    EXPECT_TRUE(host->window().isMoving());
    host->advance(2.3);
    EXPECT_GT(observer.appearances, before + 2);
    host->advance(12);
    EXPECT_FALSE(host->window().isMoving());
    const int atRest = observer.appearances;
    host->advance(13);
    EXPECT_EQ(observer.appearances, atRest);
}

TEST_F(AgendaHostTest, ACancelledFingerOpensNothing) {
    addEvents(1);
    const auto host = makeShownHost();
    const CGPoint row = middleOfRow(*host, 0);
    host->sendFinger({1, UITouchPhase::began, row, 1.0});
    host->sendFinger({1, UITouchPhase::moved, {row.x + 300, row.y}, 1.2});
    host->cancelFinger(1.3);
    EXPECT_EQ(observer.fingers, 2);
    EXPECT_FALSE(host->window().isFingerDown());
    host->cancelFinger(1.4);
    EXPECT_EQ(observer.fingers, 2);
    EXPECT_THAT(takeOpened(), IsEmpty());
}

TEST_F(AgendaHostTest, TheWheelScrollsTheInnermostViewThatCanMove) {
    setSettings({{"maxHeight", {std::int64_t{150}}}, {"limitMaxHeight", {true}}});
    addEvents(10);
    const auto host = makeHost(notificationController);
    host->setGreatestHeight(100);
    host->present();
    host->setAreaSize({320, 100});
    UITableView& table = tableOf(*host);
    UIScrollView& scroller = scrollerOf(*host);
    EXPECT_FALSE(host->scrollVertically({100, 50}, -57)) << "both are at the top";
    EXPECT_TRUE(host->scrollVertically({100, 50}, 57));
    EXPECT_EQ(table.contentOffset().y, 57);
    EXPECT_TRUE(host->scrollVertically({100, 50}, 5000));
    EXPECT_EQ(table.contentOffset().y, heightOfRows(*host) - 150) << "its edge";
    EXPECT_EQ(scroller.contentOffset().y, 0);
    EXPECT_TRUE(host->scrollVertically({100, 50}, 57));
    EXPECT_EQ(scroller.contentOffset().y, 50);
    EXPECT_FALSE(host->scrollVertically({100, 50}, 57));
    EXPECT_FALSE(host->scrollVertically({1000, 50}, -57)) << "outside all views";
}

TEST_F(AgendaHostTest, NotifiesNobodyWithoutAnObserver) {
    addEvents(1);
    const auto host = makeHost(notificationController);
    host->setObserver(nullptr);
    host->present();
    EXPECT_EQ(observer.appearances + observer.sizes + observer.presentations, 0);
}

} // namespace
} // namespace quorvel::shells
