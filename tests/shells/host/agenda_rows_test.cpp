#include "shells/host/agenda_rows.h"

#include <gmock/gmock.h>

#include "platform/ui/ui_scroll_view.h"
#include "tests/shells/host/host_fixture.h"

namespace quorvel::shells {
namespace {

using namespace platform;
using testing::ElementsAre;
using testing::IsEmpty;

class AgendaRowsTest : public HostFixture {
protected:
    // 30 rows of which the area shows a few.
    std::unique_ptr<AgendaHost> makeScrolledHost() {
        addEvents(30);
        auto host = makeHost(notificationController);
        host->setGreatestHeight(120);
        host->present();
        host->setAreaSize({320, 120});
        return host;
    }
};

TEST_F(AgendaRowsTest, RowsHaveNamesAndFrames) {
    memory.dateServices.useTwentyFourHourClock();
    addEvents(2);
    const auto host = makeShownHost();
    const AgendaRows& rows = host->rows();
    EXPECT_EQ(rows.rowCount(), 2U);
    EXPECT_EQ(rows.rowName(0), "e0, 12:00");
    EXPECT_EQ(rows.rowName(1), "e1, 12:01");
    EXPECT_TRUE(rows.rowHasAction(1));
    const CGFloat height = tableOf(*host).rowHeights().at(0);
    EXPECT_EQ(rows.rowFrame(0), CGRectMake(0, 0, 320, height));
    EXPECT_EQ(rows.rowFrame(1), CGRectMake(0, height, 320, height));
}

TEST_F(AgendaRowsTest, ARowThatDoesNotExistIsEmpty) {
    addEvents(2);
    const auto host = makeShownHost();
    AgendaRows& rows = host->rows();
    for (const std::size_t row : {std::size_t{2}, SIZE_MAX}) {
        EXPECT_EQ(rows.rowName(row), "");
        EXPECT_FALSE(rows.rowHasAction(row));
        EXPECT_FALSE(rows.runRowAction(row));
        EXPECT_EQ(rows.rowFrame(row), CGRect{});
        EXPECT_FALSE(rows.focusRow(row));
    }
    EXPECT_EQ(rows.focusedRow(), std::nullopt);
    EXPECT_THAT(takeOpened(), IsEmpty());
}

TEST_F(AgendaRowsTest, RunningARowPullsIt) {
    addEvents(2);
    const auto host = makeShownHost();
    const int before = observer.appearances;
    EXPECT_TRUE(host->rows().runRowAction(1));
    EXPECT_THAT(takeOpened(), ElementsAre(linkOfRow(1)));
    EXPECT_TRUE(host->window().isMoving()) << "the row springs back";
    EXPECT_EQ(observer.appearances, before + 1);
    host->advance(time + 10);
    EXPECT_FALSE(host->window().isMoving());
}

TEST_F(AgendaRowsTest, ARowWithoutAnActionIsNotPulled) {
    EKEvent unlinked = event("unlinked", at(0, 11));
    unlinked.persistentEvent.eventIdentifier = "home:not a link";
    memory.calendarStores.addEvent(unlinked);
    const auto host = makeShownHost();
    EXPECT_FALSE(host->rows().rowHasAction(0));
    EXPECT_FALSE(host->rows().runRowAction(0));
    EXPECT_FALSE(host->window().isMoving());
    setSettings({{"swipeAction", {std::int64_t{0}}}});
    const auto still = makeShownHost();
    EXPECT_FALSE(still->rows().runRowAction(0));
}

TEST_F(AgendaRowsTest, TheFocusScrollsToARow) {
    const auto host = makeScrolledHost();
    AgendaRows& rows = host->rows();
    EXPECT_EQ(rows.focusedRow(), std::nullopt);
    EXPECT_TRUE(rows.focusRow(0));
    EXPECT_EQ(scrollerOf(*host).contentOffset().y, 0);
    EXPECT_TRUE(rows.focusRow(29));
    EXPECT_EQ(rows.focusedRow(), 29U);
    EXPECT_EQ(CGRectGetMaxY(rows.rowFrame(29)), 120);
    EXPECT_LT(rows.rowFrame(0).origin.y, 0) << "a frame may be outside the area";
    EXPECT_TRUE(rows.focusRow(5));
    EXPECT_EQ(rows.rowFrame(5).origin.y, 0);
    EXPECT_EQ(observer.focusMoves, 3);
    EXPECT_TRUE(rows.focusRow(5));
    EXPECT_EQ(observer.focusMoves, 3) << "the row has the focus already";
    rows.dropFocus();
    EXPECT_EQ(rows.focusedRow(), std::nullopt);
    EXPECT_EQ(observer.focusMoves, 4);
}

TEST_F(AgendaRowsTest, TheFocusScrollsALimitedListToo) {
    setSettings({{"maxHeight", {std::int64_t{100}}}, {"limitMaxHeight", {true}}});
    addEvents(30);
    const auto host = makeShownHost();
    EXPECT_TRUE(host->rows().focusRow(20));
    EXPECT_GT(tableOf(*host).contentOffset().y, 0);
    EXPECT_EQ(CGRectGetMaxY(host->rows().rowFrame(20)), 100);
}

TEST_F(AgendaRowsTest, APageIsTheCompletelyVisibleRows) {
    const auto host = makeScrolledHost();
    const CGFloat height = tableOf(*host).rowHeights().at(0);
    const auto whole = static_cast<std::size_t>(120 / height);
    EXPECT_EQ(host->rows().pageLength(), whole);
    scrollerOf(*host).setContentOffset({0, height * 10.5});
    EXPECT_EQ(host->rows().pageLength(), static_cast<std::size_t>(120 / height - 0.5));
    host->setAreaSize({320, height / 2});
    EXPECT_EQ(host->rows().pageLength(), 1U);
}

TEST_F(AgendaRowsTest, LosesTheFocusWithTheFocusedRow) {
    addEvents(3);
    const auto host = makeShownHost();
    host->rows().focusRow(2);
    host->present();
    EXPECT_EQ(host->rows().focusedRow(), 2U);
    memory.clock.setNow(at(0, 13, 1)); // two of them are over
    host->present();
    EXPECT_EQ(host->rows().rowCount(), 1U);
    EXPECT_EQ(host->rows().focusedRow(), std::nullopt);
    EXPECT_EQ(observer.focusMoves, 2);
}

} // namespace
} // namespace quorvel::shells
