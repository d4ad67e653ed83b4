// Fingers on a window: whom a touch is told to, what a drag moves, and how it goes on afterwards.
#include "platform/ui/ui_touch.h"

#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/memory/fixed_screen.h"
#include "platform/ui/ui_event.h"
#include "platform/ui/ui_scroll_view.h"
#include "platform/ui/ui_table_view.h"
#include "platform/ui/ui_window.h"

namespace quorvel::platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TouchedView : public UIView {
public:
    using UIView::UIView;
    std::vector<std::pair<std::string, UITouchPhase>> messages;
    std::shared_ptr<UITouch> touch;

    void touchesBegan(const UITouchSet& touches, UIEvent& event) override {
        note("began", touches);
        UIView::touchesBegan(touches, event);
    }
    void touchesMoved(const UITouchSet& touches, UIEvent& event) override {
        note("moved", touches);
        UIView::touchesMoved(touches, event);
    }
    void touchesEnded(const UITouchSet& touches, UIEvent& event) override {
        note("ended", touches);
        UIView::touchesEnded(touches, event);
    }
    void touchesCancelled(const UITouchSet& touches, UIEvent& event) override {
        note("cancelled", touches);
        UIView::touchesCancelled(touches, event);
    }

private:
    void note(const char* message, const UITouchSet& touches) {
        ASSERT_EQ(touches.size(), 1U);
        touch = touches.front();
        messages.emplace_back(message, touch->phase());
    }
};

class RecordingDelegate : public UIScrollViewDelegate {
public:
    int begun = 0;
    int stopped = 0;
    std::vector<std::pair<CGPoint, bool>> ends;

    void scrollViewWillBeginDragging(UIScrollView*) override { ++begun; }
    void scrollViewDidEndDragging(UIScrollView* view, bool willDecelerate) override {
        ends.emplace_back(view->contentOffset(), willDecelerate);
    }
    void scrollViewDidEndDecelerating(UIScrollView*) override { ++stopped; }
};

// A row that bounces sideways in a list of 1,000 points, in a window of 320 by 400.
class UITouchTest : public testing::Test {
protected:
    UITouchTest() {
        window->addSubview(list);
        list->setContentSize({320, 1000});
        list->setDelegate(listDelegate);
        list->addSubview(row);
        row->setContentSize({320, 60});
        row->setAlwaysBounceHorizontal(true);
        row->setDelegate(rowDelegate);
    }

    void down(CGFloat x, CGFloat y, double time = 0) { send(UITouchPhase::began, x, y, time); }
    void move(CGFloat x, CGFloat y, double time = 1) { send(UITouchPhase::moved, x, y, time); }
    void up(CGFloat x, CGFloat y, double time = 2) { send(UITouchPhase::ended, x, y, time); }
    void send(UITouchPhase phase, CGFloat x, CGFloat y, double time, std::int64_t finger = 1) {
        window->sendFinger({finger, phase, {x, y}, time});
    }

    memory::FixedScreen screen;
    std::shared_ptr<UIWindow> window =
        std::make_shared<UIWindow>(CGRectMake(0, 0, 320, 400), screen);
    std::shared_ptr<UIScrollView> list = std::make_shared<UIScrollView>(CGRectMake(0, 0, 320, 400));
    std::shared_ptr<UIScrollView> row = std::make_shared<UIScrollView>(CGRectMake(0, 0, 320, 60));
    std::shared_ptr<RecordingDelegate> listDelegate = std::make_shared<RecordingDelegate>();
    std::shared_ptr<RecordingDelegate> rowDelegate = std::make_shared<RecordingDelegate>();
};

TEST_F(UITouchTest, ReachesTheDeepestViewAndThoseAbove) {
    const auto inner = std::make_shared<TouchedView>(CGRectMake(10, 10, 100, 30));
    const auto outer = std::make_shared<TouchedView>(CGRectMake(0, 100, 320, 100));
    list->addSubview(outer);
    outer->addSubview(inner);
    down(20, 115);
    EXPECT_EQ(inner->touch->view(), inner);
    EXPECT_EQ(inner->touch->window(), window);
    EXPECT_EQ(inner->touch->tapCount(), 1);
    EXPECT_EQ(inner->touch->locationInView(inner.get()), (CGPoint{10, 5}));
    move(25, 117, 0.5);
    EXPECT_EQ(inner->touch->previousLocationInView(nullptr), (CGPoint{20, 115}));
    EXPECT_EQ(inner->touch->locationInView(nullptr), (CGPoint{25, 117}));
    EXPECT_DOUBLE_EQ(inner->touch->timestamp(), 0.5);
    up(25, 117);
    const auto expected = ElementsAre(std::pair("began", UITouchPhase::began),
                                      std::pair("moved", UITouchPhase::moved),
                                      std::pair("ended", UITouchPhase::ended));
    EXPECT_THAT(inner->messages, expected);
    EXPECT_THAT(outer->messages, expected);
}

TEST_F(UITouchTest, PassesOverViewsThatTakeNone) {
    const auto below = std::make_shared<TouchedView>(CGRectMake(0, 0, 320, 400));
    window->addSubview(below);
    const auto cover = [&] {
        const auto view = std::make_shared<UIView>(CGRectMake(0, 0, 320, 400));
        window->addSubview(view);
        return view;
    };
    cover()->setHidden(true);
    cover()->setAlpha(0.005);
    cover()->setUserInteractionEnabled(false);
    down(5, 5);
    EXPECT_EQ(below->touch->view(), below);
}

TEST_F(UITouchTest, GoesOnWhileAScrollViewMovesWithIt) {
    const auto view = std::make_shared<TouchedView>(CGRectMake(0, 0, 320, 60));
    row->addSubview(view);
    down(50, 30);
    move(100, 30);
    EXPECT_EQ(window->draggedScrollView(), row);
    up(100, 30);
    EXPECT_THAT(view->messages, ElementsAre(std::pair("began", UITouchPhase::began),
                                            std::pair("moved", UITouchPhase::moved),
                                            std::pair("ended", UITouchPhase::ended)));
}

TEST_F(UITouchTest, DoesNotDragWithinTheSlop) {
    down(50, 30);
    move(60, 30);
    move(40, 40);
    EXPECT_EQ(window->draggedScrollView(), nullptr);
    up(40, 40);
    EXPECT_EQ(rowDelegate->begun, 0);
    EXPECT_EQ(listDelegate->begun, 0);
}

TEST_F(UITouchTest, PullsARowSideways) {
    down(50, 30);
    move(50 + 10 + 193.939394, 38);
    EXPECT_NEAR(row->contentOffset().x, -80, 1e-6);
    EXPECT_DOUBLE_EQ(row->contentOffset().y, 0);
    EXPECT_DOUBLE_EQ(list->contentOffset().y, 0);
    up(50 + 10 + 193.939394, 38);
    ASSERT_EQ(rowDelegate->ends.size(), 1U);
    EXPECT_NEAR(rowDelegate->ends[0].first.x, -80, 1e-6);
    EXPECT_TRUE(rowDelegate->ends[0].second); // released at rest, but past the edge
    EXPECT_EQ(rowDelegate->begun, 1);
    EXPECT_THAT(listDelegate->ends, IsEmpty());
}

TEST_F(UITouchTest, CountsTheSlopOnceHoweverOftenItIsReported) {
    down(50, 30);
    for (CGFloat x = 51; x <= 150; x += 1) {
        move(x, 30, x / 1000);
    }
    const CGFloat often = row->contentOffset().x;
    up(150, 30);
    row->settle();
    down(50, 30, 10);
    move(150, 30, 11);
    EXPECT_DOUBLE_EQ(row->contentOffset().x, often);
    EXPECT_NEAR(often, -42.8687, 1e-3); // 90 points: 320 * (1 - 1/1.1546875)
}

TEST_F(UITouchTest, ScrollsTheListAlongItsAxis) {
    down(50, 200);
    move(58, 100);
    EXPECT_DOUBLE_EQ(list->contentOffset().y, 90);
    move(200, 50);
    EXPECT_DOUBLE_EQ(list->contentOffset().y, 140);
    EXPECT_DOUBLE_EQ(list->contentOffset().x, 0);
    EXPECT_DOUBLE_EQ(row->contentOffset().x, 0);
    up(200, 50);
    EXPECT_THAT(listDelegate->ends, ElementsAre(std::pair(CGPoint{0, 140}, false)));
}

TEST_F(UITouchTest, TheAxisDecidesOnceForAll) {
    down(50, 30);
    move(50, 15); // down the row, which cannot move so: the list it is
    EXPECT_EQ(window->draggedScrollView(), list);
    move(250, 15);
    EXPECT_EQ(window->draggedScrollView(), list);
    EXPECT_DOUBLE_EQ(row->contentOffset().x, 0);
    up(250, 15);
    down(50, 30, 3);
    move(80, 30, 3.1);
    EXPECT_EQ(window->draggedScrollView(), row);
    move(80, 300, 3.2);
    EXPECT_DOUBLE_EQ(list->contentOffset().y, 5);
}

TEST_F(UITouchTest, NothingDragsWhereNoneCanMove) {
    down(50, 200); // below the row: the list does not move sideways
    move(150, 200);
    EXPECT_EQ(window->draggedScrollView(), nullptr);
    move(150, 100); // nor is it asked again
    EXPECT_DOUBLE_EQ(list->contentOffset().y, 0);
}

TEST_F(UITouchTest, AViewThatDoesNotScrollLeavesTheDragToTheNextOne) {
    row->setScrollEnabled(false);
    down(50, 30);
    move(250, 30);
    EXPECT_EQ(window->draggedScrollView(), nullptr);
    up(250, 30);
    list->setAlwaysBounceHorizontal(true);
    down(50, 30, 3);
    move(250, 30, 4);
    EXPECT_EQ(window->draggedScrollView(), list);
}

TEST_F(UITouchTest, IgnoresASecondFinger) {
    down(50, 30);
    send(UITouchPhase::began, 50, 200, 0.1, 2);
    send(UITouchPhase::moved, 50, 100, 0.2, 2);
    EXPECT_EQ(window->draggedScrollView(), nullptr);
    move(100, 30, 0.3);
    send(UITouchPhase::ended, 50, 100, 0.4, 2);
    EXPECT_EQ(window->draggedScrollView(), row);
    EXPECT_TRUE(window->isFingerDown());
}

TEST_F(UITouchTest, ACancelledDragEndsWithoutAWord) {
    down(50, 30);
    move(300, 30);
    EXPECT_LT(row->contentOffset().x, -80);
    window->cancelFinger(1.5);
    EXPECT_THAT(rowDelegate->ends, IsEmpty());
    EXPECT_FALSE(window->isFingerDown());
    EXPECT_TRUE(row->isDecelerating());
    up(300, 30); // of a finger that is no longer known
    EXPECT_THAT(rowDelegate->ends, IsEmpty());
    EXPECT_FALSE(window->advance(3));
    EXPECT_DOUBLE_EQ(row->contentOffset().x, 0);
}

TEST_F(UITouchTest, ACancelledTouchTellsItsView) {
    const auto view = std::make_shared<TouchedView>(CGRectMake(0, 0, 320, 400));
    window->addSubview(view);
    down(5, 5);
    send(UITouchPhase::cancelled, 5, 5, 1);
    EXPECT_EQ(view->messages.back(), std::pair(std::string("cancelled"), UITouchPhase::cancelled));
}

TEST_F(UITouchTest, SpringsBackAfterTheLift) {
    down(50, 30);
    move(50 + 10 + 193.939394, 30);
    up(50 + 10 + 193.939394, 30, 2);
    EXPECT_TRUE(window->isMoving());
    EXPECT_TRUE(window->advance(2.1));
    EXPECT_NEAR(row->contentOffset().x, -58.861, 1e-3); // 160 / e
    EXPECT_EQ(rowDelegate->stopped, 0);
    EXPECT_FALSE(window->advance(3));
    EXPECT_DOUBLE_EQ(row->contentOffset().x, 0);
    EXPECT_EQ(rowDelegate->stopped, 1);
    EXPECT_FALSE(window->isMoving());
    EXPECT_EQ(rowDelegate->ends.size(), 1U);
}

// The list, flung upwards at 1,000 points a second.
void fling(const std::shared_ptr<UIWindow>& window) {
    for (int i = 0; i <= 10; ++i) {
        const auto phase = i == 0 ? UITouchPhase::began : UITouchPhase::moved;
        window->sendFinger({1, phase, {50, 300.0 - 10 * i}, 0.01 * i});
    }
    window->sendFinger({1, UITouchPhase::ended, {50, 200}, 0.1});
}

TEST_F(UITouchTest, FlingsWithTheSpeedOfTheLastMoment) {
    list->setContentSize({320, 10000});
    fling(window);
    EXPECT_THAT(listDelegate->ends, ElementsAre(std::pair(CGPoint{0, 90}, true)));
    EXPECT_FALSE(window->advance(10));
    EXPECT_NEAR(list->contentOffset().y, 90 + 499, 1e-6);
}

TEST_F(UITouchTest, AFingerThatRestedFlingsNothing) {
    list->setContentSize({320, 10000});
    down(50, 300);
    move(50, 200, 0.1);
    up(50, 200, 0.3);
    EXPECT_THAT(listDelegate->ends, ElementsAre(std::pair(CGPoint{0, 90}, false)));
    EXPECT_FALSE(window->isMoving());
}

TEST_F(UITouchTest, MovesTheSameAtAnyFrameRate) {
    list->setContentSize({320, 700}); // the fling goes over the edge and springs back
    std::vector<CGFloat> slow;
    fling(window);
    for (int frame = 1; frame <= 60; ++frame) {
        window->advance(0.1 + frame / 30.0);
        slow.push_back(list->contentOffset().y);
    }
    list->setContentOffset({0, 0});
    std::vector<CGFloat> fast;
    const double later = 100;
    for (int i = 0; i <= 10; ++i) {
        const auto phase = i == 0 ? UITouchPhase::began : UITouchPhase::moved;
        window->sendFinger({1, phase, {50, 300.0 - 10 * i}, later + 0.01 * i});
    }
    window->sendFinger({1, UITouchPhase::ended, {50, 200}, later + 0.1});
    CGFloat farthest = 0;
    for (int frame = 1; frame <= 240; ++frame) {
        window->advance(later + 0.1 + frame / 120.0);
        farthest = std::max(farthest, list->contentOffset().y);
        if (frame % 4 == 0) {
            fast.push_back(list->contentOffset().y);
        }
    }
    ASSERT_EQ(slow.size(), fast.size());
    for (std::size_t i = 0; i < slow.size(); ++i) {
        EXPECT_NEAR(slow[i], fast[i], 1e-6);
    }
    EXPECT_GT(farthest, 300);
    EXPECT_DOUBLE_EQ(slow.back(), 300);
}

TEST_F(UITouchTest, ANewFingerStopsTheMotion) {
    list->setContentSize({320, 10000});
    fling(window);
    window->advance(0.2);
    const CGPoint caught = list->contentOffset();
    down(50, 300, 0.2);
    EXPECT_FALSE(window->isMoving());
    window->advance(0.3);
    EXPECT_EQ(list->contentOffset(), caught);
    up(50, 300, 0.4);
    EXPECT_FALSE(window->isMoving());
}

TEST_F(UITouchTest, ARowCaughtPastItsEdgeGoesOnFromThereOrSpringsBack) {
    row->dragTo({-80, 0}, 0);
    window->advance(0.1);
    const CGFloat caught = row->contentOffset().x;
    down(50, 30, 0.1);
    move(60.001, 30, 0.2);
    EXPECT_NEAR(row->contentOffset().x, caught, 0.01); // no jump
    send(UITouchPhase::cancelled, 60.001, 30, 0.3);
    down(50, 30, 0.3);
    EXPECT_FALSE(row->isDecelerating());
    up(50, 30, 0.4); // a mere tap
    EXPECT_TRUE(row->isDecelerating());
    window->advance(2);
    EXPECT_DOUBLE_EQ(row->contentOffset().x, 0);
}

TEST_F(UITouchTest, KeepsInsideWithoutBounces) {
    list->setBounces(false);
    down(50, 200);
    move(50, 350);
    EXPECT_DOUBLE_EQ(list->contentOffset().y, 0);
    up(50, 350);
    EXPECT_FALSE(window->isMoving());
}

TEST_F(UITouchTest, EndsInsideEdgesThatChangeOnTheWay) {
    list->setContentSize({320, 10000});
    fling(window);
    window->advance(0.3);
    list->setContentSize({320, 450});
    window->advance(0.31);
    EXPECT_FALSE(window->advance(5));
    EXPECT_DOUBLE_EQ(list->contentOffset().y, 50);
}

TEST_F(UITouchTest, DragsToAPlaceAsAFingerWould) {
    EXPECT_TRUE(row->dragTo({-80.5, 0}, 1));
    EXPECT_EQ(rowDelegate->begun, 1);
    EXPECT_THAT(rowDelegate->ends, ElementsAre(std::pair(CGPoint{-80.5, 0}, true)));
    EXPECT_FALSE(window->advance(3));
    EXPECT_DOUBLE_EQ(row->contentOffset().x, 0);
}

TEST_F(UITouchTest, DragsNothingThatAFingerCouldNot) {
    EXPECT_FALSE(row->dragTo({0, -80}, 1));
    EXPECT_FALSE(row->dragTo({std::nan(""), 0}, 1));
    row->setScrollEnabled(false);
    EXPECT_FALSE(row->dragTo({-90, 0}, 1));
    row->setScrollEnabled(true);
    row->setUserInteractionEnabled(false);
    EXPECT_FALSE(row->dragTo({-90, 0}, 1));
    row->setUserInteractionEnabled(true);
    list->setHidden(true);
    EXPECT_FALSE(row->dragTo({-90, 0}, 1));
    list->setHidden(false);
    list->removeFromSuperview();
    EXPECT_FALSE(row->dragTo({-90, 0}, 1));
    EXPECT_EQ(rowDelegate->begun, 0);
}

TEST_F(UITouchTest, ShowsARectangleWithTheLeastMovement) {
    list->scrollToShow(CGRectMake(0, 500, 320, 60));
    EXPECT_DOUBLE_EQ(list->contentOffset().y, 160);
    list->scrollToShow(CGRectMake(0, 300, 320, 60));
    EXPECT_DOUBLE_EQ(list->contentOffset().y, 160);
    list->scrollToShow(CGRectMake(0, 100, 320, 60));
    EXPECT_DOUBLE_EQ(list->contentOffset().y, 100);
    list->scrollToShow(CGRectMake(0, 200, 320, 700)); // too high: its top
    EXPECT_DOUBLE_EQ(list->contentOffset().y, 200);
    list->scrollToShow(CGRectMake(0, 990, 320, 60));
    EXPECT_DOUBLE_EQ(list->contentOffset().y, 600);
}

TEST_F(UITouchTest, AViewThatLeavesTheWindowIsLetGo) {
    down(50, 30);
    move(300, 30);
    row->removeFromSuperview();
    move(310, 30, 1.5);
    EXPECT_EQ(window->draggedScrollView(), nullptr);
    EXPECT_DOUBLE_EQ(row->contentOffset().x, 0);
    up(310, 30);
    EXPECT_THAT(rowDelegate->ends, IsEmpty());
    list->addSubview(row);
    row->dragTo({-80, 0}, 3);
    row->removeFromSuperview();
    EXPECT_FALSE(window->advance(3.1));
    EXPECT_DOUBLE_EQ(row->contentOffset().x, 0);
}

TEST_F(UITouchTest, IgnoresWhatIsNoNumberAndTimesThatRunBackwards) {
    down(50, 200, 5);
    move(std::numeric_limits<CGFloat>::infinity(), 30, 6);
    move(50, 100, std::nan(""));
    EXPECT_EQ(window->draggedScrollView(), nullptr);
    move(50, 100, 1);
    EXPECT_DOUBLE_EQ(list->contentOffset().y, 90);
    up(50, 100, 0);
    EXPECT_EQ(listDelegate->ends.size(), 1U);
}

TEST_F(UITouchTest, TheSameFingerDownAgainTakesTheFirstTouchAway) {
    down(50, 30);
    move(300, 30);
    down(50, 30, 3);
    EXPECT_THAT(rowDelegate->ends, IsEmpty());
    EXPECT_TRUE(window->isFingerDown());
}

TEST_F(UITouchTest, TheWindowMayGoWithTheFingerDown) {
    down(50, 30);
    move(300, 30);
    window.reset();
    EXPECT_THAT(rowDelegate->ends, IsEmpty());
}

// Takes its row away at the end of a drag.
class RemovingDelegate : public UIScrollViewDelegate {
public:
    void scrollViewDidEndDragging(UIScrollView* view, bool) override {
        view->removeFromSuperview();
    }
};

TEST_F(UITouchTest, ADelegateMayTakeTheRowAway) {
    const auto removing = std::make_shared<RemovingDelegate>();
    row->setDelegate(removing);
    std::weak_ptr<UIScrollView> gone = row;
    down(50, 30);
    move(300, 30);
    row.reset();
    up(300, 30);
    EXPECT_FALSE(window->advance(5));
    EXPECT_TRUE(gone.expired());
}

// Rows of 60 points, each with a scroll view that tells the source at the end of a drag.
class RowSource : public UITableViewDataSource,
                  public UIScrollViewDelegate,
                  public std::enable_shared_from_this<RowSource> {
public:
    NSInteger rows = 20;
    std::vector<std::int64_t> actions;

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
    for (NSInteger row = 0; row < 5; ++row) {
        EXPECT_DOUBLE_EQ(scrollOfRow(row).contentOffset().x, 0);
    }
}

TEST_F(TouchedTableTest, ARowThatIsScrolledAwayTakesNoPullAlong) {
    scrollOfRow(0).dragTo({-100, 0}, 0);
    EXPECT_THAT(source->actions, ElementsAre(0));
    table->setContentOffset({0, 400});
    window->layoutIfNeeded();
    for (const auto& cell : table->visibleCells()) {
        const auto scroll =
            std::dynamic_pointer_cast<UIScrollView>(cell->contentView()->subviews()[0]);
        EXPECT_DOUBLE_EQ(scroll->contentOffset().x, 0);
    }
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
