// How content moves after the finger has lifted.
#include "platform/ui/ui_window.h"

#include <limits>
#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "tests/platform/ui/fingers.h"

namespace quorvel::platform {
namespace {

using testing::ElementsAre;

using MotionTest = FingerTest;

TEST_F(MotionTest, SpringsBackAfterTheLift) {
    down(50, 30);
    move(60 + wayOfEighty, 30);
    up(60 + wayOfEighty, 30, 2);
    EXPECT_NEAR(row->contentOffset().x, -80, 1e-9); // nothing moves before the next frame
    EXPECT_TRUE(window->isMoving());
    EXPECT_TRUE(row->isDecelerating());
    EXPECT_TRUE(window->advance(2.1));
    EXPECT_NEAR(row->contentOffset().x, -58.860711, 1e-6); // 160/e
    EXPECT_EQ(rowDelegate->stopped, 0);
    EXPECT_FALSE(window->advance(3));
    EXPECT_EQ(row->contentOffset(), CGPoint{});
    EXPECT_EQ(rowDelegate->stopped, 1);
    EXPECT_FALSE(window->isMoving());
    EXPECT_FALSE(window->advance(4));
    EXPECT_EQ(rowDelegate->stopped, 1);
    EXPECT_EQ(rowDelegate->ends.size(), 1U);
}

TEST_F(MotionTest, FlingsWithTheSpeedOfTheLastMoment) {
    list->setContentSize({320, 10000});
    fling();
    EXPECT_THAT(listDelegate->ends, ElementsAre(std::pair(CGPoint{0, 90}, true)));
    EXPECT_TRUE(window->advance(0.1));
    EXPECT_DOUBLE_EQ(list->contentOffset().y, 90);
    EXPECT_TRUE(window->advance(0.6));
    EXPECT_NEAR(list->contentOffset().y, 405.612, 1e-3); // 90 + 499 * (1 - 0.998^500)
    EXPECT_FALSE(window->advance(10));
    EXPECT_NEAR(list->contentOffset().y, 589, 1e-6);
    EXPECT_EQ(listDelegate->stopped, 1);
}

TEST_F(MotionTest, AFingerThatRestedFlingsNothing) {
    list->setContentSize({320, 10000});
    down(50, 300);
    move(50, 200, 0.1);
    up(50, 200, 0.3);
    EXPECT_THAT(listDelegate->ends, ElementsAre(std::pair(CGPoint{0, 90}, false)));
    EXPECT_FALSE(window->isMoving());
    EXPECT_FALSE(window->advance(10));
    EXPECT_DOUBLE_EQ(list->contentOffset().y, 90);
    EXPECT_EQ(listDelegate->stopped, 0);
}

TEST_F(MotionTest, TheContentPastItsEdgeIsSlowerThanTheFinger) {
    down(50, 30);
    move(50, 80, 0.9);
    move(50, 130, 1); // 90 points past the top: 400 * (1 - 1/1.12375)
    up(50, 130, 1);
    // 500 points a second, times 0.55 / 1.12375^2, outwards.
    const double speed = -500 * 0.435530;
    const double offset = -44.048943;
    window->advance(1.1);
    EXPECT_NEAR(list->contentOffset().y, (offset + (speed + 10 * offset) * 0.1) * 0.367879, 1e-3);
}

TEST_F(MotionTest, TheAxesMoveIndependently) {
    list->setContentSize({10000, 400});
    list->setAlwaysBounceVertical(true);
    list->setContentOffset({1000, 0});
    down(300, 100);
    move(250, 150, 0.95);
    move(200, 200, 1);
    up(200, 200, 1);
    window->advance(1.5);
    EXPECT_GT(list->contentOffset().x, 1100);
    EXPECT_LT(list->contentOffset().y, 0);
    window->advance(2.5); // the spring is at rest, the deceleration is not
    EXPECT_TRUE(window->isMoving());
    EXPECT_DOUBLE_EQ(list->contentOffset().y, 0);
    EXPECT_FALSE(window->advance(10));
    EXPECT_NEAR(list->contentOffset().x, 1100 + 499, 1e-6); // 1,000 points a second
    EXPECT_EQ(listDelegate->stopped, 1);
}

// Where the content stands at each thirtieth of a second of the four after a gesture, whose last
// report has the time 1.
using Gesture = UIScrollView& (*)(FingerStage&);
std::vector<CGPoint> offsetsAfter(Gesture gesture, int framesPerSecond) {
    FingerStage stage;
    const UIScrollView& moving = gesture(stage);
    const int framesPerOffset = framesPerSecond / 30;
    std::vector<CGPoint> offsets;
    for (int frame = 0; frame <= 4 * framesPerSecond; ++frame) {
        stage.window->advance(1 + static_cast<double>(frame) / framesPerSecond);
        if (frame % framesPerOffset == 0) {
            offsets.push_back(moving.contentOffset());
        }
    }
    return offsets;
}

struct NamedGesture {
    const char* name;
    Gesture gesture;
    CGPoint end; // of the content
};

void PrintTo(const NamedGesture& gesture, std::ostream* out) {
    *out << gesture.name;
}

class FrameRateTest : public testing::TestWithParam<NamedGesture> {};

TEST_P(FrameRateTest, ChangesNothing) {
    const auto slow = offsetsAfter(GetParam().gesture, 30);
    ASSERT_EQ(slow.size(), 121U);
    EXPECT_NE(slow[1], slow[0]);
    EXPECT_NEAR(slow.back().x, GetParam().end.x, 1e-5);
    EXPECT_NEAR(slow.back().y, GetParam().end.y, 1e-5);
    EXPECT_EQ(offsetsAfter(GetParam().gesture, 60), slow);
    EXPECT_EQ(offsetsAfter(GetParam().gesture, 120), slow);
}

UIScrollView& flingWithin(FingerStage& stage, CGFloat contentHeight) {
    stage.list->setContentSize({320, contentHeight});
    stage.fling(0.9);
    return *stage.list;
}

constexpr NamedGesture gestures[] = {
    {"Fling",
     [](FingerStage& stage) -> UIScrollView& { return flingWithin(stage, 10000); },
     {0, 589}},
    {"FlingOverAnEdge",
     [](FingerStage& stage) -> UIScrollView& { return flingWithin(stage, 700); },
     {0, 300}},
    {"FlingToAnEdgeWithoutBounces",
     [](FingerStage& stage) -> UIScrollView& {
         stage.list->setBounces(false);
         return flingWithin(stage, 700);
     },
     {0, 300}},
    {"SpringBack",
     [](FingerStage& stage) -> UIScrollView& {
         stage.row->dragTo({-100, 0}, 1);
         return *stage.row;
     },
     {0, 0}},
    {"FlingIntoTheViewFromPastItsEdge",
     [](FingerStage& stage) -> UIScrollView& {
         stage.list->setContentSize({320, 10000});
         stage.list->setContentOffset({0, -10});
         stage.down(50, 300, 0.99);
         stage.up(50, 274, 1); // of the 18.648 points to the edge 2.648 are left
         return *stage.list;
     },
     {0, 693.957007}}, // 0.499 of the speed at the edge

};

INSTANTIATE_TEST_SUITE_P(Gestures, FrameRateTest, testing::ValuesIn(gestures),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_F(MotionTest, GoesOnIntoTheListFromPastItsEdge) {
    list->setContentSize({320, 10000});
    list->setContentOffset({0, -50});
    down(50, 300, 0);
    for (int i = 1; i <= 10; ++i) {
        move(50, 300 - 4 * i, 0.01 * i);
    }
    up(50, 260, 0.1);
    ASSERT_LT(list->contentOffset().y, 0);
    EXPECT_FALSE(window->advance(10));
    EXPECT_DOUBLE_EQ(list->contentOffset().y, 0); // slowly
    list->setContentOffset({0, -10});
    down(50, 300, 20);
    move(50, 274, 20.01); // 16 of the 18.648 points to the edge
    up(50, 274, 20.01);
    ASSERT_LT(list->contentOffset().y, 0);
    EXPECT_FALSE(window->advance(30));
    EXPECT_NEAR(list->contentOffset().y, 693.957, 1e-3); // 0.499 of 1,390.7 at the edge
}

// Caught.

TEST_F(MotionTest, IsStoppedByANewFinger) {
    list->setContentSize({320, 10000});
    fling();
    window->advance(0.2);
    const CGPoint caught = list->contentOffset();
    down(50, 300, 0.2);
    EXPECT_FALSE(window->isMoving());
    window->advance(0.3);
    EXPECT_EQ(list->contentOffset(), caught);
    up(50, 300, 0.4);
    EXPECT_FALSE(window->isMoving());
    EXPECT_EQ(listDelegate->stopped, 0);
}

TEST_F(MotionTest, IsNotStoppedByAFingerElsewhere) {
    row->dragTo({-80, 0}, 0);
    down(50, 200, 0.05);
    EXPECT_TRUE(row->isDecelerating());
    window->advance(0.1);
    EXPECT_NEAR(row->contentOffset().x, -58.860711, 1e-6);
}

TEST_F(MotionTest, CaughtPastAnEdgeGoesOnWithTheFingerFromThere) {
    row->dragTo({-100, 0}, 0);
    window->advance(0.1);
    const CGFloat caught = row->contentOffset().x;
    EXPECT_NEAR(caught, -73.575888, 1e-6); // 200/e
    down(50, 30, 0.1);
    move(60.001, 30, 0.2);
    EXPECT_NEAR(row->contentOffset().x, caught, 0.001); // no jump
    // The finger that holds 73.58 is 173.715913 past the edge; 20.223481 more are 193.94.
    move(60 + wayOfEighty - 173.715913, 30, 0.3);
    EXPECT_NEAR(row->contentOffset().x, -80, 1e-6);
}

TEST_F(MotionTest, CaughtPastAnEdgeByATapSpringsBackAgain) {
    row->dragTo({-80, 0}, 0);
    window->advance(0.1);
    down(50, 30, 0.1);
    EXPECT_FALSE(row->isDecelerating());
    window->advance(0.2);
    EXPECT_NEAR(row->contentOffset().x, -58.860711, 1e-6);
    up(50, 30, 0.3);
    EXPECT_TRUE(row->isDecelerating());
    window->advance(2);
    EXPECT_EQ(row->contentOffset(), CGPoint{});
    EXPECT_EQ(rowDelegate->begun, 1);
    EXPECT_EQ(rowDelegate->stopped, 1);
}

TEST_F(MotionTest, CaughtPastAnEdgeSpringsBackWhereAnotherViewIsDragged) {
    row->dragTo({-80, 0}, 0);
    window->advance(0.1);
    down(50, 30, 0.1);
    move(50, 5, 0.2);
    EXPECT_EQ(window->draggedScrollView(), list);
    EXPECT_TRUE(row->isDecelerating());
    window->advance(2);
    EXPECT_EQ(row->contentOffset(), CGPoint{});
    EXPECT_TRUE(list->isDragging());
}

// Where no finger pulls it, for the band is never longer than the view.
TEST_F(MotionTest, CaughtFarPastAnEdgeGoesOnWithTheFingerFromThere) {
    row->dragTo({-400, 0}, 0);
    window->advance(0.01);
    const CGFloat caught = row->contentOffset().x;
    EXPECT_NEAR(caught, -398.128, 1e-3); // 440 * e^-0.1
    down(300, 30, 0.01);
    move(289.999, 30, 0.02);
    EXPECT_NEAR(row->contentOffset().x, caught, 0.001);
    move(240, 30, 0.03);
    EXPECT_GT(row->contentOffset().x, caught + 5); // it does come along
    const CGFloat distanceToEdge = -2 * caught / 0.55;
    move(290 - distanceToEdge, 30, 0.04);
    EXPECT_NEAR(row->contentOffset().x, 0, 1e-9);
    move(290 - distanceToEdge - wayOfEighty, 30, 0.05);
    EXPECT_GT(row->contentOffset().x, 80); // as long as this drag goes on, the band is a longer one
    up(290 - distanceToEdge - wayOfEighty, 30, 0.5);
    EXPECT_FALSE(window->advance(5));
    EXPECT_EQ(row->contentOffset(), CGPoint{});
    down(50, 30, 6);
    move(60 + wayOfEighty, 30, 7);
    EXPECT_NEAR(row->contentOffset().x, -80, 1e-9);
}

TEST_F(MotionTest, CaughtAtAnyDistanceDoesNotJump) {
    double time = 1;
    for (const CGFloat pulled : {-1.0, -159.0, -161.0, -319.9, -320.0, -1000.0, 200.0, 640.0}) {
        row->dragTo({pulled, 0}, time);
        down(50, 30, time);
        move(60.001, 30, time + 1);
        EXPECT_NEAR(row->contentOffset().x, pulled, 0.001);
        up(60.001, 30, time + 2);
        EXPECT_FALSE(window->advance(time + 20));
        EXPECT_EQ(row->contentOffset(), CGPoint{});
        time += 30;
    }
}

TEST_F(MotionTest, CaughtPastAnEdgeRestsInsideWhereTheViewLeaves) {
    row->dragTo({-80, 0}, 0);
    window->advance(0.1);
    down(50, 30, 0.1);
    row->removeFromSuperview();
    EXPECT_EQ(row->contentOffset(), CGPoint{});
}

// Changes on the way.

TEST_F(MotionTest, EndsInsideEdgesThatChange) {
    list->setContentSize({320, 10000});
    fling();
    window->advance(0.3);
    list->setContentSize({320, 450});
    window->advance(0.31);
    EXPECT_FALSE(window->advance(5));
    EXPECT_DOUBLE_EQ(list->contentOffset().y, 50);
    fling(10);
    list->setFrame(CGRectMake(0, 0, 320, 440));
    EXPECT_FALSE(window->advance(20));
    EXPECT_DOUBLE_EQ(list->contentOffset().y, 10);
}

TEST_F(MotionTest, ContinuesWithItsSpeedWhereTheContentGrows) {
    list->setContentSize({320, 600});
    fling(); // from 90, to 200 at the most
    window->advance(0.15);
    list->setContentSize({320, 10000});
    EXPECT_FALSE(window->advance(10) && window->advance(20));
    window->advance(20);
    EXPECT_NEAR(list->contentOffset().y, 589, 1e-6);
}

TEST_F(MotionTest, EndsAtOnceWhereTheOffsetIsSet) {
    list->setContentSize({320, 10000});
    fling();
    list->setContentOffset({0, 42});
    EXPECT_FALSE(window->isMoving());
    EXPECT_FALSE(window->advance(1));
    EXPECT_DOUBLE_EQ(list->contentOffset().y, 42);
    EXPECT_EQ(listDelegate->stopped, 0);
}

TEST_F(MotionTest, EndsAtOnceWhereTheViewLeavesTheWindow) {
    row->dragTo({-80, 0}, 3);
    const int scrolled = rowDelegate->scrolled;
    list->removeFromSuperview();
    EXPECT_EQ(row->contentOffset(), CGPoint{});
    EXPECT_FALSE(window->isMoving());
    EXPECT_FALSE(window->advance(4));
    EXPECT_EQ(rowDelegate->scrolled, scrolled);
    EXPECT_EQ(rowDelegate->stopped, 0);
}

TEST_F(MotionTest, IsTheNewWindowsWhereTheViewHasGoneToOne) {
    const auto other = std::make_shared<UIWindow>(CGRectMake(0, 0, 320, 400), screen);
    row->dragTo({-80, 0}, 3);
    other->addSubview(row);
    EXPECT_EQ(row->contentOffset(), CGPoint{});
    row->dragTo({-80, 0}, 5);
    EXPECT_FALSE(window->isMoving());
    EXPECT_FALSE(window->advance(100));
    EXPECT_EQ(row->contentOffset(), (CGPoint{-80, 0}));
    EXPECT_TRUE(other->advance(5.1));
    EXPECT_NEAR(row->contentOffset().x, -58.860711, 1e-6);
}

TEST_F(MotionTest, EndsAtOnceWhereTheViewOrOneAboveIsHidden) {
    double time = 1;
    for (const auto& hidden : std::vector<std::shared_ptr<UIView>>{row, list, window}) {
        row->dragTo({-80, 0}, time++);
        const int scrolled = rowDelegate->scrolled;
        hidden->setHidden(true);
        EXPECT_EQ(row->contentOffset(), CGPoint{});
        EXPECT_FALSE(window->isMoving());
        EXPECT_EQ(rowDelegate->scrolled, scrolled);
        hidden->setHidden(false);
    }
    EXPECT_FALSE(window->advance(time));
    EXPECT_EQ(rowDelegate->stopped, 0);
}

TEST_F(MotionTest, CaughtPastAnEdgeRestsInsideWhereTheViewIsHidden) {
    row->dragTo({-80, 0}, 0);
    window->advance(0.1);
    down(50, 30, 0.1);
    list->setHidden(true);
    EXPECT_EQ(row->contentOffset(), CGPoint{});
    up(50, 30, 0.2);
    EXPECT_FALSE(window->isMoving());
}

TEST_F(MotionTest, DoesNotMoveViewsWhoseMotionHasEnded) {
    row->dragTo({-80, 0}, 1);
    window->advance(10);
    row->setContentOffset({-30, 0});
    list->removeFromSuperview();
    EXPECT_EQ(row->contentOffset(), (CGPoint{-30, 0}));
}

TEST_F(MotionTest, LeavesNothingPulledWhenTheWindowIsDestroyed) {
    row->dragTo({-80, 0}, 3);
    window.reset();
    EXPECT_EQ(row->contentOffset(), CGPoint{});
    EXPECT_FALSE(row->isDecelerating());
    EXPECT_EQ(rowDelegate->stopped, 0);
}

TEST_F(MotionTest, NanAndTimesThatDecreaseMoveNothing) {
    row->dragTo({-80, 0}, 1);
    window->advance(1.1);
    const CGPoint there = row->contentOffset();
    EXPECT_TRUE(window->advance(1.05));
    EXPECT_EQ(row->contentOffset(), there);
    EXPECT_TRUE(window->advance(std::numeric_limits<double>::quiet_NaN()));
    EXPECT_TRUE(window->advance(std::numeric_limits<double>::infinity()));
    EXPECT_EQ(row->contentOffset(), there);
    EXPECT_TRUE(window->advance(1.2));
    EXPECT_NEAR(row->contentOffset().x, -32.480468, 1e-6); // 240/e^2
}

TEST_F(MotionTest, EndsInOneStepWhereTheTimeIsFarAhead) {
    row->dragTo({-80, 0}, 1);
    EXPECT_FALSE(window->advance(1e300));
    EXPECT_EQ(row->contentOffset(), CGPoint{});
    EXPECT_EQ(rowDelegate->stopped, 1);
    EXPECT_FALSE(window->advance(1));
    EXPECT_FALSE(window->advance(-std::numeric_limits<double>::infinity()));
}

TEST_F(MotionTest, WaitsForItsBeginning) {
    row->dragTo({-80, 0}, 5);
    EXPECT_TRUE(window->advance(1));
    EXPECT_DOUBLE_EQ(row->contentOffset().x, -80);
}

} // namespace
} // namespace quorvel::platform
