// Fingers on a table whose rows can be pulled sideways.
#include "platform/ui/ui_table_view.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/memory/fixed_screen.h"
#include "platform/ui/ui_window.h"

namespace quorvel::platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Rows of 60 points, each with a scroll view that notifies the source of the end of a drag.
class RowSource : public UITableViewDataSource,
                  public UIScrollViewDelegate,
                  public std::enable_shared_from_this<RowSource> {
public:
    NSInteger rows = 20;
    std::vector<std::int64_t> actions;
    std::function<void()> atScroll = [] {};

    NSInteger numberOfRowsInSection(UITableView*, NSInteger) override { return rows; }
    std::shared_ptr<UITableViewCell> cellForRowAtIndexPath(UITableView* table,
                                                           const NSIndexPath& path) override {
        auto cell = table->dequeueReusableCellWithIdentifier("row");
        if (!cell) {
            cell = std::make_shared<UITableViewCell>(UITableViewCellStyle::defaultStyle, "row");
            const auto scroll = std::make_shared<UIScrollView>(CGRectMake(0, 0, 320, 44));
            scroll->setContentSize({320, 44});
            scroll->setAlwaysBounceHorizontal(true);
            scroll->setDelegate(weak_from_this());
            cell->contentView()->addSubview(scroll);
        }
        cell->contentView()->subviews()[0]->setTag(path.row);
        return cell;
    }
    void scrollViewDidScroll(UIScrollView*) override { atScroll(); }
    void scrollViewDidEndDragging(UIScrollView* view, bool) override {
        actions.push_back(view->tag());
    }
};

class TouchedTableTest : public testing::Test {
protected:
    TouchedTableTest() {
        window->addSubview(table);
        table->setDataSource(source);
        window->layoutIfNeeded();
    }
    UIScrollView& scrollOfRow(NSInteger row) {
        return dynamic_cast<UIScrollView&>(
            *table->cellForRowAtIndexPath({0, row})->contentView()->subviews()[0]);
    }
    void send(UITouchPhase phase, CGFloat x, CGFloat y, double time) {
        window->sendFinger({1, phase, {x, y}, time});
    }
    void pullAllVisibleRows() {
        for (NSInteger row = 0; row < 5; ++row) {
            ASSERT_TRUE(scrollOfRow(row).dragTo({-60, 0}, 0));
        }
    }
    void expectNoRowPulled() {
        for (const auto& cell : table->visibleCells()) {
            const auto scroll =
                std::dynamic_pointer_cast<UIScrollView>(cell->contentView()->subviews()[0]);
            EXPECT_DOUBLE_EQ(scroll->contentOffset().x, 0);
            EXPECT_FALSE(scroll->isDecelerating());
        }
    }

    memory::FixedScreen screen;
    std::shared_ptr<UIWindow> window =
        std::make_shared<UIWindow>(CGRectMake(0, 0, 320, 220), screen);
    std::shared_ptr<UITableView> table =
        std::make_shared<UITableView>(CGRectMake(0, 0, 320, 220), UITableViewStyle::plain);
    std::shared_ptr<RowSource> source = std::make_shared<RowSource>();
};

TEST_F(TouchedTableTest, AReloadTakesTheRowFromTheFinger) {
    send(UITouchPhase::began, 50, 70, 0);
    send(UITouchPhase::moved, 300, 70, 1);
    EXPECT_LT(scrollOfRow(1).contentOffset().x, -80);
    table->reloadData();
    window->layoutIfNeeded();
    EXPECT_DOUBLE_EQ(scrollOfRow(1).contentOffset().x, 0);
    send(UITouchPhase::moved, 310, 70, 1.5);
    send(UITouchPhase::ended, 310, 70, 2);
    EXPECT_THAT(source->actions, IsEmpty());
    expectNoRowPulled();
}

TEST_F(TouchedTableTest, ARowThatIsScrolledAwayTakesNoPullAlong) {
    scrollOfRow(0).dragTo({-100, 0}, 0);
    EXPECT_THAT(source->actions, ElementsAre(0));
    table->setContentOffset({0, 400});
    window->layoutIfNeeded();
    expectNoRowPulled();
}

// Otherwise a delegate could lay the table out again while its rows are changing.
TEST_F(TouchedTableTest, EndsThePullsOfRecycledRowsWithoutAMessage) {
    pullAllVisibleRows();
    int notifications = 0;
    source->atScroll = [&] {
        ++notifications;
        table->reloadData();
        table->layoutIfNeeded();
    };
    table->setContentOffset({0, 400});
    window->layoutIfNeeded();
    expectNoRowPulled();
    table->setContentOffset({0, 0});
    window->layoutIfNeeded();
    source->atScroll = [] {};
    pullAllVisibleRows();
    source->atScroll = [&] { ++notifications; };
    table->reloadData();
    window->layoutIfNeeded();
    expectNoRowPulled();
    EXPECT_EQ(notifications, 0);
    EXPECT_FALSE(window->isMoving());
}

TEST_F(TouchedTableTest, ADelegateMayReloadTheTableWhileARowIsPulled) {
    source->atScroll = [&] {
        table->reloadData();
        table->layoutIfNeeded();
    };
    send(UITouchPhase::began, 50, 70, 0);
    send(UITouchPhase::moved, 300, 70, 1);
    EXPECT_EQ(window->draggedScrollView(), nullptr);
    send(UITouchPhase::ended, 310, 70, 2);
    EXPECT_THAT(source->actions, IsEmpty());
    EXPECT_FALSE(window->isMoving());
    expectNoRowPulled();
}

TEST_F(TouchedTableTest, ADelegateMayReloadTheTableWhileARowSpringsBack) {
    pullAllVisibleRows();
    source->atScroll = [&] {
        table->reloadData();
        table->layoutIfNeeded();
    };
    EXPECT_FALSE(window->advance(0.1));
    expectNoRowPulled();
}

TEST_F(TouchedTableTest, ScrollsThroughItsRows) {
    send(UITouchPhase::began, 50, 200, 0);
    send(UITouchPhase::moved, 50, 100, 1);
    window->layoutIfNeeded();
    EXPECT_DOUBLE_EQ(table->contentOffset().y, 90);
    EXPECT_EQ(table->cellForRowAtIndexPath({0, 0}), nullptr); // 44 points high
    EXPECT_NE(table->cellForRowAtIndexPath({0, 7}), nullptr);
    send(UITouchPhase::ended, 50, 100, 2);
    EXPECT_THAT(source->actions, IsEmpty());
}

} // namespace
} // namespace quorvel::platform
