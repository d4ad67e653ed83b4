#include "shells/widget/hosted_widget.h"

#include <gmock/gmock.h>

#include "platform/key_value_coding.h"
#include "platform/ui/ui_table_view.h"
#include "shells/headless/recording_host.h"
#include "shells/headless/recording_window.h"
#include "tests/shells/widget/shell_fixture.h"

namespace quorvel::shells {
namespace {

using namespace platform;
using testing::ElementsAre;
using testing::IsEmpty;

class HostedWidgetTest : public ShellFixture {
protected:
    std::unique_ptr<HostedWidget> makeWidget(std::string_view controller) {
        return std::make_unique<HostedWidget>(bundle, controller, memory.platform(), host, *window);
    }
    // With a laid-out view of that size.
    std::unique_ptr<HostedWidget> makeShownWidget(std::string_view controller, CGSize size) {
        auto widget = makeWidget(controller);
        widget->loadFullView();
        widget->resizeView(size);
        window->layoutIfNeeded();
        return widget;
    }

    headless::RecordingHost host;
    std::shared_ptr<headless::RecordingWindow> window =
        std::make_shared<headless::RecordingWindow>(CGRectMake(0, 0, 320, 480), memory.screen);
};

TEST_F(HostedWidgetTest, AnEmptyNameIsThePrincipalClass) {
    EXPECT_EQ(makeWidget("")->controllerName(), bundle.principalClass());
    EXPECT_EQ(makeWidget(legacyController)->controllerName(), legacyController);
}

TEST_F(HostedWidgetTest, KnowsWhichControllerIsForOlderHosts) {
    EXPECT_FALSE(makeWidget(notificationController)->isLegacy());
    EXPECT_FALSE(makeWidget("QuorvelViewControllerNewToday")->isLegacy());
    EXPECT_TRUE(makeWidget(legacyController)->isLegacy());
}

TEST_F(HostedWidgetTest, TheFirstUseMakesTheViewInTheContainer) {
    for (const char* controller : {notificationController, legacyController}) {
        const auto widget = makeWidget(controller);
        EXPECT_FALSE(widget->hasView());
        EXPECT_EQ(widget->table(), nullptr);
        EXPECT_THAT(window->subviews(), IsEmpty());
        UIView& view = widget->view();
        EXPECT_TRUE(widget->hasView());
        EXPECT_EQ(view.className(), "QuorvelView");
        EXPECT_EQ(view.window(), window.get());
        EXPECT_EQ(&widget->view(), &view);
        EXPECT_EQ(window->subviews().size(), 1U);
    }
}

TEST_F(HostedWidgetTest, RemovesOnlyItsOwnViewFromTheContainer) {
    const auto other = std::make_shared<UIView>();
    window->addSubview(other);
    auto widget = makeWidget(notificationController);
    widget->view();
    EXPECT_EQ(window->subviews().size(), 2U);
    widget.reset();
    EXPECT_THAT(window->subviews(), ElementsAre(other));
}

TEST_F(HostedWidgetTest, OperationsOfLegacyControllersDoNothingToOthers) {
    addEvents(1);
    const auto widget = makeWidget(notificationController);
    widget->loadFullView();
    widget->loadPlaceholderView();
    EXPECT_FALSE(widget->hasView());
    const UIView& view = widget->view();
    widget->unloadView();
    EXPECT_EQ(view.superview(), window.get());
    EXPECT_EQ(widget->launchURLForTapLocation({60, 20}), std::nullopt);
    EXPECT_THAT(window->takeTouchMessages(), IsEmpty());
}

TEST_F(HostedWidgetTest, TheHeightOfALegacyControllerMakesNoView) {
    const auto widget = makeWidget(legacyController);
    EXPECT_EQ(widget->preferredViewSize(), (CGSize{0, 70}));
    widget->present();
    widget->dismiss();
    EXPECT_FALSE(widget->hasView());
    widget->resizeView({250, 100});
    EXPECT_EQ(widget->preferredViewSize(), (CGSize{250, 70}));
}

TEST_F(HostedWidgetTest, TheNextUseAfterUnloadingMakesAnotherView) {
    addEvents(2);
    const auto widget = makeShownWidget(legacyController, {320, 70});
    EXPECT_EQ(widget->items().size(), 2U);
    const std::weak_ptr<UIView> old = widget->view().weak_from_this();
    widget->unloadView();
    EXPECT_FALSE(widget->hasView());
    EXPECT_TRUE(old.expired());
    EXPECT_THAT(window->subviews(), IsEmpty());
    EXPECT_THAT(widget->items(), IsEmpty()) << "the next view is not loaded";
    EXPECT_EQ(widget->view().frame(), CGRectMake(0, 0, 0, 70));
    widget->loadFullView();
    EXPECT_EQ(widget->items().size(), 2U);
}

TEST_F(HostedWidgetTest, PresentingReloadsAndReportsToTheHost) {
    addEvents(1);
    const auto widget = makeWidget(notificationController);
    widget->view();
    host.takeMessages();
    addEvents(2);
    widget->present();
    EXPECT_EQ(widget->items().size(), 3U);
    EXPECT_FALSE(host.takeMessages().empty());
    EXPECT_EQ(widget->preferredViewSize().width, 320);
}

TEST_F(HostedWidgetTest, VisibleRowsHaveScrollViews) {
    addEvents(10);
    const auto widget = makeShownWidget(notificationController, {320, 100});
    EXPECT_EQ(widget->table()->numberOfRowsInSection(0), 10);
    ASSERT_NE(widget->rowScrollView(0), nullptr);
    EXPECT_EQ(widget->rowScrollView(1)->tag(), 1);
    EXPECT_EQ(widget->rowScrollView(9), nullptr);
    EXPECT_EQ(widget->rowScrollView(10), nullptr);
    EXPECT_EQ(widget->rowScrollView(SIZE_MAX), nullptr);
}

TEST_F(HostedWidgetTest, APullRunsTheActionFromMoreThanEightyPointsOn) {
    addEvents(2);
    for (const char* controller : {notificationController, legacyController}) {
        const auto widget = makeShownWidget(controller, {320, 70});
        EXPECT_TRUE(widget->pullRow(1, 80, 0));
        EXPECT_THAT(takeOpened(), IsEmpty());
        EXPECT_TRUE(widget->pullRow(1, 80.5, 5));
        EXPECT_THAT(takeOpened(), ElementsAre(linkOfRow(1)));
        EXPECT_TRUE(widget->pullRow(0, -100, 10));
        EXPECT_THAT(takeOpened(), IsEmpty());
    }
}

TEST_F(HostedWidgetTest, RowsThatDoNotExistOrCannotBeDraggedAreNotPulled) {
    const auto empty = makeWidget(notificationController);
    EXPECT_FALSE(empty->pullRow(0, 90, 0)) << "no view";
    empty->view();
    window->layoutIfNeeded();
    EXPECT_FALSE(empty->pullRow(0, 90, 0)) << "no rows";

    EKEvent unlinked = event("unlinked", at(0, 11));
    unlinked.persistentEvent.eventIdentifier = "home:not a link";
    memory.calendarStores.addEvent(unlinked);
    addEvents(1);
    const auto widget = makeShownWidget(notificationController, {320, 300});
    EXPECT_FALSE(widget->pullRow(0, 90, 0));
    EXPECT_FALSE(widget->pullRow(2, 90, 0));
    EXPECT_FALSE(widget->pullRow(SIZE_MAX, 90, 0));
    EXPECT_THAT(takeOpened(), IsEmpty());
    EXPECT_TRUE(widget->pullRow(1, 90, 0));

    setSettings({{"swipeAction", {std::int64_t{0}}}});
    const auto withoutAction = makeShownWidget(notificationController, {320, 300});
    EXPECT_FALSE(withoutAction->pullRow(1, 90, 0));
}

TEST_F(HostedWidgetTest, APullScrollsToARowThatIsNotVisible) {
    addEvents(20);
    const auto widget = makeShownWidget(notificationController, {320, 100});
    UITableView& table = *widget->table();
    table.setContentOffset({0, 10});
    window->layoutIfNeeded();
    EXPECT_TRUE(widget->pullRow(0, 90, 0)) << "partly visible";
    EXPECT_EQ(table.contentOffset(), (CGPoint{0, 10}));
    EXPECT_TRUE(widget->pullRow(19, 90, 5));
    EXPECT_EQ(table.contentOffset().y + 100, CGRectGetMaxY(table.rectForRowAtIndexPath({0, 19})));
    EXPECT_TRUE(widget->pullRow(3, 90, 10));
    EXPECT_EQ(table.contentOffset().y, table.rectForRowAtIndexPath({0, 3}).origin.y);
    EXPECT_THAT(takeOpened(), ElementsAre(linkOfRow(0), linkOfRow(19), linkOfRow(3)));
}

TEST_F(HostedWidgetTest, TheLegacyControllerDeliversATapItself) {
    addEvents(1);
    const auto widget = makeShownWidget(legacyController, {320, 70});
    EXPECT_EQ(widget->launchURLForTapLocation({60, 20}), std::nullopt);
    const auto messages = window->takeTouchMessages();
    ASSERT_EQ(messages.size(), 2U);
    EXPECT_EQ(messages[0].message, "touchesBegan");
    EXPECT_EQ(messages[0].phase, UITouchPhase::began);
    EXPECT_EQ(messages[1].message, "touchesEnded");
    EXPECT_EQ(messages[1].phase, UITouchPhase::ended);
    EXPECT_EQ(messages[0].view, "UIScrollView");
    EXPECT_EQ(messages[1].view, "UIScrollView");
    EXPECT_THAT(takeOpened(), IsEmpty());
}

} // namespace
} // namespace quorvel::shells
