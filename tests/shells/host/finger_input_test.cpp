#include "shells/host/finger_input.h"

#include <gmock/gmock.h>

#include "tests/shells/host/host_fixture.h"

namespace quorvel::shells {
namespace {

using namespace platform;
using testing::ElementsAre;
using testing::IsEmpty;

// Points, far more than the 80 that the action of a row needs.
constexpr CGFloat farPull = 290;

class FingerInputTest : public HostFixture {
protected:
    FingerInputTest() {
        addEvents(30);
        host = makeHost(notificationController);
        host->setGreatestHeight(120);
        host->present();
        host->setAreaSize({320, 120});
    }

    CGFloat offset() { return scrollerOf(*host).contentOffset().y; }

    std::unique_ptr<AgendaHost> host;
    const CGPoint inFirstRow{20, 10};
};

TEST_F(FingerInputTest, APressThatIsDraggedFarPullsTheRow) {
    FingerInput input(*host);
    input.press(inFirstRow, 1);
    EXPECT_TRUE(input.isPressed());
    input.drag({farPull, 0}, 1.5);
    EXPECT_NE(host->window().draggedScrollView(), nullptr);
    input.lift({farPull, 0}, 2.5);
    EXPECT_FALSE(input.isPressed());
    EXPECT_THAT(takeOpened(), ElementsAre(linkOfRow(0)));
}

TEST_F(FingerInputTest, TheLiftDecidesTheDistance) {
    FingerInput input(*host);
    input.press(inFirstRow, 1);
    input.drag({farPull, 0}, 1.5);
    input.lift({40, 0}, 2.5);
    EXPECT_THAT(takeOpened(), IsEmpty());
}

TEST_F(FingerInputTest, ACancelledPressOpensNothing) {
    FingerInput input(*host);
    input.press(inFirstRow, 1);
    input.drag({farPull, 0}, 1.5);
    input.cancel(1.6);
    EXPECT_FALSE(input.isPressed());
    input.drag({farPull, 0}, 1.7);
    input.lift({farPull, 0}, 1.8);
    EXPECT_THAT(takeOpened(), IsEmpty());
    EXPECT_FALSE(host->window().isFingerDown());
}

TEST_F(FingerInputTest, ADragIsClaimedAfterEightPointsWhereAViewCanFollow) {
    FingerInput input(*host);
    input.press(inFirstRow, 1);
    input.drag({8, 0}, 1.1);
    EXPECT_FALSE(input.isClaimed());
    input.drag({8.5, 0}, 1.2);
    EXPECT_TRUE(input.isClaimed());
    input.lift({8.5, 0}, 1.3);
    EXPECT_FALSE(input.isClaimed());

    input.press(inFirstRow, 2);
    input.drag({0, 9}, 2.1);
    EXPECT_TRUE(input.isClaimed()) << "the agenda is higher than its area";
    input.cancel(2.2);

    host->setAreaSize({320, 100000});
    input.press(inFirstRow, 3);
    input.drag({0, 9}, 3.1);
    EXPECT_FALSE(input.isClaimed()) << "nothing scrolls";
    input.cancel(3.2);
    input.press({20, 90000}, 4);
    input.drag({50, 0}, 4.1);
    EXPECT_FALSE(input.isClaimed()) << "no row";
    input.cancel(4.2);
}

TEST_F(FingerInputTest, ATouchpadPullsARowAndFlings) {
    FingerInput input(*host);
    input.scroll(inFirstRow, {-farPull / 2, 0}, 1);
    EXPECT_TRUE(input.isScrolling());
    EXPECT_FALSE(input.isPressed());
    input.scroll({300, 300}, {-farPull / 2, 0}, 1.2); // the pointer's location does not matter
    input.endScroll(2);
    EXPECT_FALSE(input.isScrolling());
    EXPECT_THAT(takeOpened(), ElementsAre(linkOfRow(0)));
    host->advance(20);

    input.scroll(inFirstRow, {0, 30}, 30);
    input.scroll(inFirstRow, {0, 30}, 30.02);
    EXPECT_EQ(offset(), 50) << "60 points but the slop";
    input.endScroll(30.03);
    host->advance(40);
    EXPECT_GT(offset(), 300);
    EXPECT_THAT(takeOpened(), IsEmpty());
}

TEST_F(FingerInputTest, APressCancelsAScroll) {
    FingerInput input(*host);
    input.scroll(inFirstRow, {-farPull, 0}, 1);
    input.press(inFirstRow, 1.5);
    EXPECT_FALSE(input.isScrolling());
    EXPECT_TRUE(input.isPressed());
    EXPECT_THAT(takeOpened(), IsEmpty());
    input.scroll(inFirstRow, {0, 50}, 1.6);
    EXPECT_TRUE(input.isPressed()) << "a scroll does not end a press";
    EXPECT_EQ(offset(), 0);
    input.endScroll(1.7);
    EXPECT_TRUE(input.isPressed());
}

TEST_F(FingerInputTest, InputWithoutABeginningIsIgnored) {
    FingerInput input(*host);
    input.drag({300, 0}, 1);
    input.lift({300, 0}, 2);
    input.endScroll(3);
    input.cancel(4);
    EXPECT_FALSE(host->window().isFingerDown());
    EXPECT_EQ(observer.fingers, 0);
}

} // namespace
} // namespace quorvel::shells
