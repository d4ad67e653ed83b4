#include "shells/widget/notice_views.h"

#include <gmock/gmock.h>

#include "platform/memory/fixed_screen.h"
#include "platform/memory/fixed_width_text_measurer.h"
#include "platform/memory/recording_context.h"
#include "platform/ui/ui_label.h"
#include "platform/ui/ui_window.h"
#include "shells/widget/appearance.h"

namespace quorvel::shells {
namespace {

using namespace platform;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;

class NoticeViewsTest : public testing::Test {
protected:
    void layOut(CGFloat width, CGFloat height) {
        notices->layOut(CGRectMake(0, 0, width, height));
        window->layoutIfNeeded();
    }
    std::vector<std::string> painted() {
        memory::RecordingContext context;
        window->render(context);
        return context.operations;
    }

    memory::FixedScreen screen;
    memory::FixedWidthTextMeasurer measurer;
    std::shared_ptr<UIWindow> window =
        std::make_shared<UIWindow>(CGRectMake(0, 0, 320, 200), screen);
    std::unique_ptr<NoticeViews> notices = std::make_unique<NoticeViews>(measurer, *window);
};

TEST_F(NoticeViewsTest, WithoutNoticesNothingIsPaintedOrTakesRoom) {
    layOut(320, 200);
    EXPECT_EQ(notices->lineHeight(), 0);
    EXPECT_EQ(notices->problemHeight(), 0);
    EXPECT_THAT(painted(), Not(Contains(HasSubstr("drawText"))));
    EXPECT_THAT(painted(), Not(Contains(HasSubstr("fill"))));
}

TEST_F(NoticeViewsTest, TheLineStandsInTheMiddle) {
    notices->show({"Nothing today", std::nullopt});
    const Appearance light = standardAppearance(AppearanceKind::light);
    notices->setAppearance(light);
    layOut(320, 200);
    const CGSize size = measurer.sizeWithFont("Nothing today", UIFont::systemFontOfSize(14));
    ASSERT_GT(size.width, 0);
    const CGRect frame = window->subviews().at(0)->frame();
    EXPECT_EQ(frame, CGRectMake((320 - size.width) / 2, 0, size.width, 200));
    EXPECT_GE(notices->lineHeight(), 44);
    EXPECT_EQ(notices->problemHeight(), 0);
    EXPECT_EQ(dynamic_cast<UILabel&>(*window->subviews().at(0)).textColor(), light.caption);
}

TEST_F(NoticeViewsTest, ALineThatIsTooLongIsCutInsideTheMargins) {
    notices->show({std::string(1000, 'x'), std::nullopt});
    layOut(320, 44);
    EXPECT_EQ(window->subviews().at(0)->frame(), CGRectMake(12, 0, 296, 44));
    layOut(10, 0);
    EXPECT_EQ(window->subviews().at(0)->frame().size, (CGSize{0, 0}));
}

TEST_F(NoticeViewsTest, TheProblemStandsAtTheBottom) {
    notices->show({std::nullopt, ProblemNotice{"a.ics", "is odd"}});
    layOut(320, 200);
    const CGFloat height = notices->problemHeight();
    EXPECT_GE(height, 40);
    EXPECT_EQ(window->subviews().at(1)->frame(), CGRectMake(0, 200 - height, 320, height));
    EXPECT_THAT(painted(), Contains(HasSubstr("drawText \"a.ics\" 12")));
    EXPECT_THAT(painted(), Contains(HasSubstr("drawText \"is odd\" 12")));
    EXPECT_THAT(painted(), Contains("fillHairline 0 0 320 1"));
    EXPECT_THAT(painted(), Contains(HasSubstr("fillEllipseInRect")));
    notices->show({"Nothing today", ProblemNotice{"a.ics", "is odd"}});
    layOut(320, 200);
    EXPECT_EQ(window->subviews().at(0)->frame().size.height, 200 - height);
    EXPECT_THAT(painted(), Not(Contains(HasSubstr("fillHairline")))) << "there are no rows";
}

TEST_F(NoticeViewsTest, NoticesTakeNoTouches) {
    notices->show({"Nothing today", ProblemNotice{"a.ics", "is odd"}});
    layOut(320, 200);
    for (const CGFloat y : {10.0, 100.0, 190.0}) {
        EXPECT_EQ(window->hitTest({160, y}), window);
    }
}

TEST_F(NoticeViewsTest, TheViewsGoWithTheObject) {
    EXPECT_EQ(window->subviews().size(), 2U);
    notices.reset();
    EXPECT_TRUE(window->subviews().empty());
}

} // namespace
} // namespace quorvel::shells
