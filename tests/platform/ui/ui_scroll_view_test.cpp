#include "platform/ui/ui_scroll_view.h"

#include <cmath>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/memory/recording_context.h"
#include "tests/platform/ui/fingers.h"

namespace quorvel::platform {
namespace {

using testing::ElementsAre;

class CountingDelegate : public UIScrollViewDelegate {
public:
    void scrollViewDidScroll(UIScrollView* view) override {
        ++scrolls;
        lastOffset = view->contentOffset();
    }
    int scrolls = 0;
    CGPoint lastOffset;
};

TEST(UIScrollViewTest, StartsAsThePlatformDoes) {
    const UIScrollView view(CGRectMake(1, 2, 3, 4));
    EXPECT_TRUE(view.isScrollEnabled());
    EXPECT_TRUE(view.bounces());
    EXPECT_FALSE(view.alwaysBounceHorizontal());
    EXPECT_FALSE(view.alwaysBounceVertical());
    EXPECT_TRUE(view.clipsToBounds());
    EXPECT_TRUE(view.isUserInteractionEnabled());
    EXPECT_EQ(view.contentOffset(), CGPoint{});
    EXPECT_EQ(view.contentSize(), CGSize{});
    EXPECT_EQ(view.className(), "UIScrollView");
}

TEST(UIScrollViewTest, TheOffsetIsTheOriginOfTheBounds) {
    const auto view = std::make_shared<UIScrollView>(CGRectMake(10, 10, 100, 100));
    const auto content = std::make_shared<UIView>(CGRectMake(0, 50, 20, 20));
    view->addSubview(content);
    view->setContentOffset({-30, 40});
    EXPECT_EQ(view->bounds(), CGRectMake(-30, 40, 100, 100));
    EXPECT_EQ(view->frame(), CGRectMake(10, 10, 100, 100));
    EXPECT_EQ(view->hitTest({1, 55}), content);

    memory::RecordingContext context;
    content->setBackgroundColor(UIColor::redColor());
    view->render(context);
    EXPECT_EQ(
        context.operations,
        (std::vector<std::string>{"saveGState", "translateCTM 30 -40", "clipToRect -30 40 100 100",
                                  "saveGState", "translateCTM 0 50", "setFillColor 1 0 0 1",
                                  "fillRect 0 0 20 20", "restoreGState", "restoreGState"}));
}

TEST(UIScrollViewTest, ReportsARealChangeToItsDelegate) {
    UIScrollView view;
    auto delegate = std::make_shared<CountingDelegate>();
    view.setDelegate(delegate);
    EXPECT_EQ(view.delegate(), delegate);
    view.setContentOffset({0, 5});
    view.setContentOffset({0, 5});
    EXPECT_EQ(delegate->scrolls, 1);
    EXPECT_EQ(delegate->lastOffset, (CGPoint{0, 5}));
    view.setContentOffset({0, std::nan("")});
    EXPECT_EQ(view.contentOffset(), (CGPoint{0, 5}));
    EXPECT_EQ(delegate->scrolls, 1);
    delegate.reset();
    view.setContentOffset({0, 6});
    EXPECT_EQ(view.delegate(), nullptr);
    EXPECT_EQ(view.contentOffset(), (CGPoint{0, 6}));
}

// Drags by a call instead of a finger.

using ProgrammaticDragTest = FingerTest;

TEST_F(ProgrammaticDragTest, DragsToAnOffsetLikeAFinger) {
    EXPECT_TRUE(row->dragTo({-80.5, 0}, 1));
    EXPECT_EQ(rowDelegate->begun, 1);
    EXPECT_THAT(rowDelegate->ends, ElementsAre(std::pair(CGPoint{-80.5, 0}, true)));
    EXPECT_FALSE(window->advance(3));
    EXPECT_DOUBLE_EQ(row->contentOffset().x, 0);
}

TEST_F(ProgrammaticDragTest, DragsNothingThatAFingerCouldNot) {
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

TEST_F(ProgrammaticDragTest, ShowsARectangleWithTheShortestScroll) {
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

} // namespace
} // namespace quorvel::platform
