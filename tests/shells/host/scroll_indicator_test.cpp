#include "shells/host/scroll_indicator.h"

#include <gtest/gtest.h>

namespace quorvel::shells {
namespace {

using platform::CGRect;
using platform::CGRectMake;

ScrollPosition listAt(double offset) {
    return {CGRectMake(0, 0, 320, 300), 1200, offset};
}

TEST(ScrollIndicator, ItsBarShowsTheVisiblePart) {
    const auto top = scrollIndicatorFrame(listAt(0));
    ASSERT_TRUE(top);
    EXPECT_EQ(*top, CGRectMake(313, 3, 4, 294.0 / 4));
    const auto bottom = scrollIndicatorFrame(listAt(900));
    ASSERT_TRUE(bottom);
    EXPECT_DOUBLE_EQ(CGRectGetMaxY(*bottom), 297);
}

TEST(ScrollIndicator, ItsBarStaysInTheListPastItsEdges) {
    EXPECT_EQ(scrollIndicatorFrame(listAt(-50)), scrollIndicatorFrame(listAt(0)));
    EXPECT_EQ(scrollIndicatorFrame(listAt(5000)), scrollIndicatorFrame(listAt(900)));
}

TEST(ScrollIndicator, ALongListHasAShortBarThatCanBeSeen) {
    const auto frame = scrollIndicatorFrame({CGRectMake(0, 20, 320, 300), 1e9, 1e9});
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->size.height, 24);
    EXPECT_DOUBLE_EQ(CGRectGetMaxY(*frame), 317);
}

TEST(ScrollIndicator, AListThatFitsHasNone) {
    EXPECT_FALSE(scrollIndicatorFrame({CGRectMake(0, 0, 320, 300), 300, 0}));
    EXPECT_FALSE(scrollIndicatorFrame({CGRectMake(0, 0, 320, 20), 300, 0})) << "no place for it";
    EXPECT_FALSE(scrollIndicatorFrame({}));
}

TEST(ScrollIndicator, AppearsWithAScrollAndFades) {
    ScrollIndicator indicator;
    indicator.update(listAt(0), 1);
    EXPECT_FALSE(indicator.isVisible(1));
    indicator.update(listAt(10), 2);
    EXPECT_EQ(indicator.opacity(2), 1);
    EXPECT_EQ(indicator.opacity(2.7), 1);
    EXPECT_NEAR(indicator.opacity(2.95), 0.5, 1e-9);
    EXPECT_FALSE(indicator.isVisible(3.2));
    indicator.update(listAt(10), 4);
    EXPECT_FALSE(indicator.isVisible(4)) << "nothing has scrolled";
}

TEST(ScrollIndicator, AnotherListIsNoScroll) {
    ScrollIndicator indicator;
    indicator.update(listAt(10), 1);
    ScrollPosition longer = listAt(0);
    longer.contentHeight = 1300;
    indicator.update(longer, 2);
    EXPECT_FALSE(indicator.isVisible(2));
}

} // namespace
} // namespace quorvel::shells
