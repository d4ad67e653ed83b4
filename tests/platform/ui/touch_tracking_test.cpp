// Which scroll view follows a finger, and how far.
#include "platform/ui/touch_tracking.h"

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "tests/platform/ui/fingers.h"

namespace quorvel::platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using DragTest = FingerTest;

TEST_F(DragTest, DoesNotBeginWithinTheSlop) {
    down(50, 30);
    move(60, 30);
    move(40, 40);
    EXPECT_EQ(window->draggedScrollView(), nullptr);
    up(40, 40);
    EXPECT_EQ(rowDelegate->begun, 0);
    EXPECT_EQ(listDelegate->begun, 0);
    EXPECT_THAT(rowDelegate->ends, IsEmpty());
    EXPECT_THAT(listDelegate->ends, IsEmpty());
}

TEST_F(DragTest, PullsARowSideways) {
    down(50, 30);
    move(60.001, 38);
    EXPECT_NEAR(row->contentOffset().x, -0.00055, 1e-6); // no jump
    move(60 + wayOfEighty, 38);
    EXPECT_NEAR(row->contentOffset().x, -80, 1e-9);
    EXPECT_DOUBLE_EQ(row->contentOffset().y, 0);
    EXPECT_DOUBLE_EQ(list->contentOffset().y, 0);
    EXPECT_TRUE(row->isDragging());
    EXPECT_FALSE(list->isDragging());
    up(60 + wayOfEighty, 38);
    EXPECT_FALSE(row->isDragging());
    EXPECT_EQ(rowDelegate->begun, 1);
    ASSERT_EQ(rowDelegate->ends.size(), 1U);
    EXPECT_NEAR(rowDelegate->ends[0].first.x, -80, 1e-9);
    EXPECT_TRUE(rowDelegate->ends[0].second); // released at rest, but past the edge
    EXPECT_THAT(listDelegate->ends, IsEmpty());
}

TEST_F(DragTest, PullsToTheLeftAsWell) {
    down(300, 30);
    move(290 - wayOfEighty, 30);
    EXPECT_NEAR(row->contentOffset().x, 80, 1e-9);
}

TEST_F(DragTest, CountsTheSlopOnce) {
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
    EXPECT_NEAR(often, -42.868742, 1e-6); // 90 points: 320 * (1 - 1/1.1546875)
}

TEST_F(DragTest, ScrollsTheListAlongItsAxis) {
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

TEST_F(DragTest, PullsTheListPastItsEdges) {
    down(50, 200);
    move(50, 300); // 90 points: 400 * (1 - 1/1.12375)
    EXPECT_NEAR(list->contentOffset().y, -44.048943, 1e-6);
    up(50, 300);
    window->advance(10);
    list->setContentOffset({0, 600});
    down(50, 300, 11);
    move(50, 200, 12);
    EXPECT_NEAR(list->contentOffset().y, 644.048943, 1e-6);
}

TEST_F(DragTest, MovesTheListWhereBothDistancesAreEqual) {
    down(50, 30);
    move(35, 15);
    EXPECT_EQ(window->draggedScrollView(), list);
    EXPECT_DOUBLE_EQ(list->contentOffset().y, 5);
}

TEST_F(DragTest, IsDecidedOnce) {
    down(50, 30);
    move(50, 15); // up the row, which cannot move so: the list it is
    EXPECT_EQ(window->draggedScrollView(), list);
    move(250, 15);
    EXPECT_EQ(window->draggedScrollView(), list);
    EXPECT_DOUBLE_EQ(row->contentOffset().x, 0);
    up(250, 15);
    down(50, 30, 3);
    move(80, 30, 3.1);
    EXPECT_EQ(window->draggedScrollView(), row);
    move(80, 300, 3.2);
    EXPECT_EQ(window->draggedScrollView(), row);
    EXPECT_DOUBLE_EQ(list->contentOffset().y, 5);
}

TEST_F(DragTest, MovesNothingWhereNoViewCanMove) {
    down(50, 200); // below the row: the list does not move sideways
    move(150, 200);
    EXPECT_EQ(window->draggedScrollView(), nullptr);
    move(150, 100); // and is not decided again
    EXPECT_DOUBLE_EQ(list->contentOffset().y, 0);
    up(150, 100);
    EXPECT_THAT(listDelegate->ends, IsEmpty());
}

TEST_F(DragTest, FollowsOnEveryAxisOnWhichTheViewCanMove) {
    list->setContentSize({1000, 1000});
    down(200, 200);
    move(150, 120);
    EXPECT_EQ(list->contentOffset(), (CGPoint{50, 70})); // the slop is the deciding axis's
}

TEST_F(DragTest, MovesTheNextViewWhereTheInnermostDoesNotScroll) {
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

TEST_F(DragTest, NeedsContentThatIsLargerOrAlwaysBounces) {
    row->setAlwaysBounceHorizontal(false);
    EXPECT_FALSE(row->canMoveHorizontally());
    row->setContentSize({320.5, 60});
    EXPECT_TRUE(row->canMoveHorizontally());
    EXPECT_FALSE(row->canMoveVertically());
    row->setBounces(false);
    EXPECT_TRUE(row->canMoveHorizontally());
    row->setContentSize({320, 60});
    row->setAlwaysBounceHorizontal(true);
    row->setAlwaysBounceVertical(true);
    EXPECT_FALSE(row->canMoveHorizontally());
    EXPECT_FALSE(row->canMoveVertically());
    row->setBounces(true);
    EXPECT_TRUE(row->canMoveVertically());
    row->setScrollEnabled(false);
    EXPECT_FALSE(row->canMoveHorizontally());
}

// A row in a list in a page of 900 points.
class NestedDragTest : public FingerTest {
protected:
    NestedDragTest() {
        page->setContentSize({320, 900});
        window->addSubview(page);
        page->addSubview(list);
    }

    std::shared_ptr<UIScrollView> page = std::make_shared<UIScrollView>(CGRectMake(0, 0, 320, 400));
};

TEST_F(NestedDragTest, TheInnermostThatCanMoveFollows) {
    down(50, 30);
    move(150, 30);
    EXPECT_EQ(window->draggedScrollView(), row);
    up(150, 30);
    down(50, 30, 3);
    move(50, 5, 4);
    EXPECT_EQ(window->draggedScrollView(), list);
    EXPECT_DOUBLE_EQ(list->contentOffset().y, 15);
    EXPECT_DOUBLE_EQ(page->contentOffset().y, 0);
}

TEST_F(NestedDragTest, ThePageFollowsWhereTheListCannot) {
    list->setContentSize({320, 400});
    down(50, 30);
    move(50, 5);
    EXPECT_EQ(window->draggedScrollView(), page);
    EXPECT_DOUBLE_EQ(page->contentOffset().y, 15);
    EXPECT_THAT(listDelegate->ends, IsEmpty());
}

TEST_F(NestedDragTest, TheListFollowsAtItsEdgeToo) {
    down(50, 200);
    move(50, 300); // down at the top: the list's own rubber band
    EXPECT_EQ(window->draggedScrollView(), list);
    EXPECT_DOUBLE_EQ(page->contentOffset().y, 0);
}

TEST_F(DragTest, FollowsTheFirstFingerOnly) {
    down(50, 30);
    send(UITouchPhase::began, 50, 200, 0.1, 2);
    send(UITouchPhase::moved, 50, 100, 0.2, 2);
    EXPECT_EQ(window->draggedScrollView(), nullptr);
    move(100, 30, 0.3);
    const CGPoint pulled = row->contentOffset();
    send(UITouchPhase::moved, 50, 50, 0.35, 2);
    send(UITouchPhase::ended, 50, 100, 0.4, 2);
    EXPECT_EQ(window->draggedScrollView(), row);
    EXPECT_EQ(row->contentOffset(), pulled);
    EXPECT_DOUBLE_EQ(list->contentOffset().y, 0);
    up(100, 30);
    send(UITouchPhase::moved, 50, 10, 3, 2);
    EXPECT_DOUBLE_EQ(list->contentOffset().y, 0);
}

TEST_F(DragTest, MayBeginAndEndWithTheLift) {
    down(50, 30);
    up(60 + wayOfEighty, 30, 0.5);
    EXPECT_EQ(rowDelegate->begun, 1);
    ASSERT_EQ(rowDelegate->ends.size(), 1U);
    EXPECT_NEAR(rowDelegate->ends[0].first.x, -80, 1e-9);
}

TEST_F(DragTest, EndsOnceForEachThatBegan) {
    list->setContentSize({320, 100000});
    for (int i = 0; i < 10; ++i) { // each catches the motion of the one before
        fling(i);
        EXPECT_EQ(listDelegate->begun, i + 1);
        ASSERT_EQ(listDelegate->ends.size(), static_cast<std::size_t>(i + 1));
        EXPECT_EQ(listDelegate->ends.back(), std::pair(list->contentOffset(), true));
        window->advance(i + 0.5);
    }
    EXPECT_EQ(listDelegate->stopped, 0);
    EXPECT_EQ(rowDelegate->begun, 0);
    EXPECT_THAT(rowDelegate->ends, IsEmpty());
}

TEST_F(DragTest, EndsWithoutAMessageWhereItIsCancelled) {
    down(50, 30);
    move(300, 30);
    EXPECT_LT(row->contentOffset().x, -80);
    window->cancelFinger(1.5);
    EXPECT_THAT(rowDelegate->ends, IsEmpty());
    EXPECT_FALSE(window->isFingerDown());
    EXPECT_FALSE(row->isDragging());
    EXPECT_TRUE(row->isDecelerating());
    up(300, 30); // of a finger that is no longer known
    EXPECT_THAT(rowDelegate->ends, IsEmpty());
    EXPECT_FALSE(window->advance(3));
    EXPECT_DOUBLE_EQ(row->contentOffset().x, 0);
    EXPECT_EQ(rowDelegate->stopped, 1);
}

TEST_F(DragTest, StaysWhereItIsCancelledWithinItsEdges) {
    down(50, 200);
    move(50, 100);
    window->cancelFinger(1);
    EXPECT_FALSE(window->isMoving());
    EXPECT_DOUBLE_EQ(list->contentOffset().y, 90);
    EXPECT_THAT(listDelegate->ends, IsEmpty());
}

TEST_F(DragTest, EndsWithoutAMessageWhereTheSameFingerComesDownAgain) {
    down(50, 30);
    move(300, 30);
    down(50, 30, 3);
    EXPECT_THAT(rowDelegate->ends, IsEmpty());
    EXPECT_FALSE(row->isDragging());
    EXPECT_TRUE(window->isFingerDown());
}

TEST_F(DragTest, StaysInsideWithoutBounces) {
    list->setBounces(false);
    down(50, 200);
    move(50, 350);
    EXPECT_DOUBLE_EQ(list->contentOffset().y, 0);
    move(50, 150);
    EXPECT_DOUBLE_EQ(list->contentOffset().y, 60);
    move(50, 350);
    up(50, 350);
    EXPECT_THAT(listDelegate->ends, ElementsAre(std::pair(CGPoint{0, 0}, false)));
    EXPECT_FALSE(window->isMoving());
}

TEST_F(DragTest, StaysInTheViewForAFarAwayFinger) {
    down(50, 30);
    move(1e300, 30);
    EXPECT_DOUBLE_EQ(row->contentOffset().x, -320);
    up(-1e300, 30, 1.0001);
    EXPECT_FALSE(window->advance(1000));
    EXPECT_EQ(row->contentOffset(), CGPoint{});
}

// Views that leave.

TEST_F(DragTest, EndsAtOnceWhereTheViewLeavesTheWindow) {
    down(50, 30);
    move(300, 30);
    const int scrolled = rowDelegate->scrolled;
    row->removeFromSuperview();
    EXPECT_EQ(window->draggedScrollView(), nullptr);
    EXPECT_FALSE(row->isDragging());
    EXPECT_EQ(row->contentOffset(), CGPoint{});
    EXPECT_EQ(rowDelegate->scrolled, scrolled);
    move(310, 30, 1.5);
    up(310, 30);
    EXPECT_THAT(rowDelegate->ends, IsEmpty());
    EXPECT_EQ(row->contentOffset(), CGPoint{});
}

TEST_F(DragTest, EndsAtOnceWhereAViewAboveLeavesTheWindow) {
    down(50, 30);
    move(300, 30);
    list->removeFromSuperview();
    EXPECT_FALSE(row->isDragging());
    EXPECT_EQ(row->contentOffset(), CGPoint{});
    window->addSubview(list);
    move(200, 30, 1.5); // the finger no longer moves it
    EXPECT_EQ(row->contentOffset(), CGPoint{});
}

TEST_F(DragTest, EndsAtOnceWhereTheViewGoesToAnotherWindow) {
    const auto other = std::make_shared<UIWindow>(CGRectMake(0, 0, 320, 400), screen);
    down(50, 30);
    move(300, 30);
    other->addSubview(row);
    EXPECT_FALSE(row->isDragging());
    EXPECT_EQ(row->contentOffset(), CGPoint{});
    EXPECT_EQ(window->draggedScrollView(), nullptr);
}

TEST_F(DragTest, EndsAtOnceWhereTheViewOrOneAboveIsHidden) {
    for (const auto& hidden : std::vector<std::shared_ptr<UIView>>{row, list, window}) {
        down(50, 30);
        move(300, 30);
        EXPECT_TRUE(row->isDragging());
        hidden->setHidden(true);
        EXPECT_EQ(window->draggedScrollView(), nullptr);
        EXPECT_FALSE(row->isDragging());
        EXPECT_EQ(row->contentOffset(), CGPoint{});
        hidden->setHidden(false);
        move(310, 30); // the finger no longer moves it
        up(310, 30);
        EXPECT_EQ(row->contentOffset(), CGPoint{});
    }
    EXPECT_THAT(rowDelegate->ends, IsEmpty());
}

TEST_F(DragTest, GoesOnWhereAnotherViewIsHidden) {
    const auto other = std::make_shared<UIView>(CGRectMake(0, 0, 320, 400));
    list->addSubview(other);
    other->setHidden(true);
    down(50, 30);
    move(60 + wayOfEighty, 30);
    other->setHidden(false);
    other->setHidden(true);
    row->setHidden(false);
    EXPECT_EQ(window->draggedScrollView(), row);
    EXPECT_NEAR(row->contentOffset().x, -80, 1e-9);
}

TEST_F(DragTest, GoesOnWhereTheViewOnlyChangesItsPlaceInTheWindow) {
    down(50, 30);
    move(60 + wayOfEighty, 30);
    list->addSubview(std::make_shared<UIView>());
    list->addSubview(row); // to the front
    EXPECT_EQ(window->draggedScrollView(), row);
    up(60 + wayOfEighty, 30);
    EXPECT_EQ(rowDelegate->ends.size(), 1U);
}

TEST_F(DragTest, DoesNotBeginOnAViewThatHasLeft) {
    down(50, 30);
    row->removeFromSuperview();
    move(300, 30);
    EXPECT_EQ(rowDelegate->begun, 0);
    up(300, 30);
    EXPECT_EQ(row->contentOffset(), CGPoint{});
}

TEST_F(DragTest, LeavesNothingPulledWhenTheWindowIsDestroyed) {
    down(50, 30);
    move(300, 30);
    const int scrolled = rowDelegate->scrolled;
    window.reset();
    EXPECT_THAT(rowDelegate->ends, IsEmpty());
    EXPECT_EQ(rowDelegate->scrolled, scrolled);
    EXPECT_FALSE(row->isDragging());
    EXPECT_EQ(row->contentOffset(), CGPoint{});
}

TEST_F(DragTest, TheWholeTreeMayBeDestroyedWithTheWindow) {
    down(50, 30);
    move(300, 30);
    row.reset();
    list.reset();
    window.reset();
    EXPECT_THAT(rowDelegate->ends, IsEmpty());
}

TEST_F(DragTest, SendsNothingToADestroyedDelegate) {
    down(50, 30);
    move(300, 30);
    rowDelegate.reset();
    up(300, 30);
    EXPECT_FALSE(window->advance(10));
    EXPECT_EQ(row->contentOffset(), CGPoint{});
}

} // namespace
} // namespace quorvel::platform
