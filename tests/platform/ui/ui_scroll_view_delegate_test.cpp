// Delegates that change the views while they are notified of a drag or a motion.
#include <functional>
#include <memory>
#include <utility>

#include <gtest/gtest.h>

#include "tests/platform/ui/fingers.h"

namespace quorvel::platform {
namespace {

class ActingDelegate : public UIScrollViewDelegate {
public:
    std::function<void()> atScroll = [] {};
    std::function<void()> atBegin = [] {};
    std::function<void()> atEnd = [] {};
    std::function<void()> atRest = [] {};
    int ends = 0;
    int rests = 0;

    void scrollViewDidScroll(UIScrollView*) override {
        std::exchange(atScroll, [] {})();
    }
    void scrollViewWillBeginDragging(UIScrollView*) override {
        std::exchange(atBegin, [] {})();
    }
    void scrollViewDidEndDragging(UIScrollView*, bool) override {
        ++ends;
        std::exchange(atEnd, [] {})();
    }
    void scrollViewDidEndDecelerating(UIScrollView*) override {
        ++rests;
        std::exchange(atRest, [] {})();
    }
};

class ActingDelegateTest : public FingerTest {
protected:
    ActingDelegateTest() { row->setDelegate(acting); }

    void pull() {
        down(50, 30);
        move(300, 30);
        up(300, 30);
    }

    std::shared_ptr<ActingDelegate> acting = std::make_shared<ActingDelegate>();
};

TEST_F(ActingDelegateTest, MayTakeTheRowAwayAtTheBeginning) {
    acting->atBegin = [&] { row->removeFromSuperview(); };
    pull();
    EXPECT_EQ(acting->ends, 0);
    EXPECT_EQ(row->contentOffset(), CGPoint{});
    EXPECT_FALSE(row->isDragging());
}

TEST_F(ActingDelegateTest, MayDestroyTheRowAtTheBeginning) {
    const std::weak_ptr<UIScrollView> gone = row;
    acting->atBegin = [&] { std::exchange(row, nullptr)->removeFromSuperview(); };
    pull();
    EXPECT_EQ(acting->ends, 0);
    EXPECT_TRUE(gone.expired());
}

TEST_F(ActingDelegateTest, MayDestroyTheRowWhileItScrolls) {
    const std::weak_ptr<UIScrollView> gone = row;
    acting->atScroll = [&] { std::exchange(row, nullptr)->removeFromSuperview(); };
    pull();
    EXPECT_EQ(acting->ends, 0);
    EXPECT_TRUE(gone.expired());
}

TEST_F(ActingDelegateTest, MayDestroyTheRowAtTheEnd) {
    const std::weak_ptr<UIScrollView> gone = row;
    acting->atEnd = [&] { std::exchange(row, nullptr)->removeFromSuperview(); };
    pull();
    EXPECT_EQ(acting->ends, 1);
    EXPECT_TRUE(gone.expired());
    EXPECT_FALSE(window->advance(10));
    EXPECT_EQ(acting->rests, 0);
}

TEST_F(ActingDelegateTest, ARowTakenAwayAtTheEndRestsInside) {
    acting->atEnd = [&] { row->removeFromSuperview(); };
    pull();
    EXPECT_EQ(row->contentOffset(), CGPoint{});
    EXPECT_FALSE(row->isDecelerating());
}

TEST_F(ActingDelegateTest, ARowHiddenAtTheEndRestsInside) {
    acting->atEnd = [&] { list->setHidden(true); };
    pull();
    EXPECT_EQ(row->contentOffset(), CGPoint{});
    EXPECT_FALSE(window->isMoving());
}

TEST_F(ActingDelegateTest, MayDestroyTheRowWhereItComesToRest) {
    const std::weak_ptr<UIScrollView> gone = row;
    acting->atRest = [&] { std::exchange(row, nullptr)->removeFromSuperview(); };
    pull();
    EXPECT_FALSE(window->advance(10));
    EXPECT_EQ(acting->rests, 1);
    EXPECT_TRUE(gone.expired());
}

TEST_F(ActingDelegateTest, MayBeDestroyedAtTheEnd) {
    acting->atEnd = [&] { acting.reset(); };
    pull();
    EXPECT_FALSE(window->advance(10));
    EXPECT_EQ(row->contentOffset(), CGPoint{});
}

TEST_F(ActingDelegateTest, MayCancelTheFinger) {
    acting->atBegin = [&] { window->cancelFinger(1); };
    pull();
    EXPECT_EQ(acting->ends, 0);
    EXPECT_FALSE(row->isDragging());
    acting->atScroll = [&] { window->cancelFinger(6); };
    down(50, 30, 6);
    move(300, 30, 6);
    up(300, 30, 6);
    EXPECT_EQ(acting->ends, 0);
    EXPECT_FALSE(row->isDragging());
    EXPECT_FALSE(window->advance(20));
    EXPECT_EQ(row->contentOffset(), CGPoint{});
}

TEST_F(ActingDelegateTest, MayDestroyTheWindow) {
    acting->atEnd = [&] { window.reset(); };
    pull();
    EXPECT_EQ(acting->ends, 1);
    EXPECT_EQ(row->contentOffset(), CGPoint{});
    EXPECT_FALSE(row->isDecelerating());
}

TEST_F(ActingDelegateTest, MayDestroyTheWindowWithAllBelowWhileItMoves) {
    pull();
    list.reset();
    row.reset();
    acting->atScroll = [&] { window.reset(); };
    EXPECT_TRUE(window->advance(2.01));
    EXPECT_EQ(window, nullptr);
    EXPECT_EQ(acting->rests, 0);
}

TEST_F(ActingDelegateTest, MayDragTheRowAgainAtTheEnd) {
    acting->atEnd = [&] { EXPECT_TRUE(row->dragTo({-40, 0}, 2)); };
    pull();
    EXPECT_EQ(acting->ends, 2);
    EXPECT_DOUBLE_EQ(row->contentOffset().x, -40);
    window->advance(2.1);
    EXPECT_NEAR(row->contentOffset().x, -29.430355, 1e-6); // 80/e
    EXPECT_FALSE(window->advance(10));
    EXPECT_EQ(acting->rests, 1);
}

TEST_F(ActingDelegateTest, MayPutTheContentSomewhereElseAtTheEnd) {
    acting->atEnd = [&] { row->setContentOffset({0, 0}); };
    pull();
    EXPECT_EQ(row->contentOffset(), CGPoint{});
    EXPECT_FALSE(window->isMoving());
    acting->atEnd = [&] { row->setContentOffset({-20, 0}); };
    down(50, 30, 3);
    move(300, 30, 4);
    up(300, 30, 5);
    window->advance(5.1);
    EXPECT_NEAR(row->contentOffset().x, -14.715178, 1e-6); // 40/e: from there, at rest
}

TEST_F(ActingDelegateTest, MayTakeAnotherMovingViewAway) {
    list->setContentSize({320, 10000});
    fling();
    const auto other = std::make_shared<UIScrollView>(CGRectMake(0, 300, 320, 60));
    other->setAlwaysBounceHorizontal(true);
    other->setContentSize({320, 60});
    window->addSubview(other);
    other->dragTo({-80, 0}, 0.1);
    row->dragTo({-80, 0}, 0.1);
    acting->atScroll = [&] { other->removeFromSuperview(); };
    window->advance(0.2);
    window->advance(0.3);
    EXPECT_EQ(other->contentOffset(), CGPoint{});
    EXPECT_TRUE(list->isDecelerating());
    EXPECT_TRUE(row->isDecelerating());
}

} // namespace
} // namespace quorvel::platform
