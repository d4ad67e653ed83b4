#include "platform/sbui_widget_view_controller.h"

#include <gtest/gtest.h>

#include "platform/ui/ui_view.h"

namespace quorvel::platform {
namespace {

class CountingController : public _SBUIWidgetViewController {
public:
    void viewDidLoad() override { ++loads; }
    int loads = 0;
};

TEST(SBUIWidgetViewControllerTest, MakesItsViewOnceAtFirstUse) {
    CountingController controller;
    EXPECT_FALSE(controller.isViewLoaded());
    const auto view = controller.view();
    ASSERT_TRUE(view);
    EXPECT_EQ(view->frame(), CGRect{});
    EXPECT_EQ(controller.view(), view);
    EXPECT_EQ(controller.loads, 1);
    EXPECT_TRUE(controller.isViewLoaded());
}

TEST(SBUIWidgetViewControllerTest, AViewThatIsSetIsNotLoaded) {
    CountingController controller;
    const auto view = std::make_shared<UIView>();
    controller.setView(view);
    EXPECT_EQ(controller.view(), view);
    EXPECT_EQ(controller.loads, 0);
}

} // namespace
} // namespace quorvel::platform
