#include "shells/headless/widget_session.h"

#include <gmock/gmock.h>

#include "platform/key_value_coding.h"
#include "platform/ui/ui_scroll_view.h"
#include "platform/ui/ui_table_view.h"
#include "tests/shells/widget/shell_fixture.h"

namespace quorvel::headless {
namespace {

using namespace platform;
using shells::legacyController;
using shells::notificationController;
using testing::ElementsAre;
using testing::IsEmpty;

class WidgetSessionTest : public shells::ShellFixture {
protected:
    std::unique_ptr<WidgetSession> makeSession(std::string_view controller) {
        return std::make_unique<WidgetSession>(bundle, controller, memory.platform());
    }
};

TEST_F(WidgetSessionTest, LoadMakesTheViewInAWindowOfItsSize) {
    addEvents(1);
    const auto session = makeSession(notificationController);
    session->load();
    UIView& view = session->widget().view();
    ASSERT_NE(view.window(), nullptr);
    EXPECT_EQ(view.window()->bounds(), view.frame());
    EXPECT_NE(session->widget().rowScrollView(0), nullptr) << "it is laid out";
    session->resizeView({200, 100});
    EXPECT_EQ(view.frame(), CGRectMake(0, 0, 200, 100));
    EXPECT_EQ(view.window()->bounds(), view.frame());
}

TEST_F(WidgetSessionTest, ALegacyViewWaitsUntilItIsNeeded) {
    const auto session = makeSession(legacyController);
    session->load(400);
    session->layOut();
    session->settle();
    session->pullRow(0, 90);
    EXPECT_FALSE(session->widget().hasView());
    session->makeView();
    EXPECT_EQ(session->widget().view().frame(), CGRectMake(0, 0, 400, 70));
    session->widget().unloadView();
    session->layOut();
    session->settle();
    EXPECT_FALSE(session->widget().hasView());
    session->makeView();
    EXPECT_EQ(session->widget().view().frame(), CGRectMake(0, 0, 400, 70));
}

TEST_F(WidgetSessionTest, ALegacyViewHasItsOwnWidthUntilItIsGivenOne) {
    const auto session = makeSession(legacyController);
    session->load();
    session->resizeView({300, 70});
    session->widget().unloadView();
    session->makeView();
    EXPECT_EQ(session->widget().view().frame(), CGRectMake(0, 0, 0, 70));
    session->resizeView({100, 70});
    EXPECT_EQ(session->widget().view().frame(), CGRectMake(0, 0, 100, 70));
}

TEST_F(WidgetSessionTest, EveryControllerCanLoadRows) {
    addEvents(3);
    for (const char* controller :
         {notificationController, "QuorvelViewControllerNewToday", legacyController}) {
        const auto session = makeSession(controller);
        session->loadWithRows();
        EXPECT_EQ(session->widget().items().size(), 3U);
        ASSERT_TRUE(session->latestQuery());
        EXPECT_EQ(session->latestQuery()->events.size(), 3U);
    }
}

TEST_F(WidgetSessionTest, RecordsLinksOnceAndOpensNone) {
    addEvents(1);
    const auto session = makeSession(notificationController);
    session->load();
    session->pullRow(0, 90);
    EXPECT_THAT(session->takeOpened(), ElementsAre("x-apple-calevent://home/e0?o=43200.0"));
    EXPECT_THAT(session->takeOpened(), IsEmpty());
    EXPECT_THAT(memory.application.opened, IsEmpty());
}

TEST_F(WidgetSessionTest, RecordsApplicationsAndActivatesNone) {
    addEvents(1);
    setSettings({{"swipeAction", {std::int64_t{3}}},
                 {"customLaunchAppBundleID", {std::string("org.example.App")}}});
    const auto session = makeSession(notificationController);
    session->load();
    session->pullRow(0, 90);
    EXPECT_THAT(session->takeActivated(), ElementsAre("org.example.App"));
    EXPECT_THAT(session->takeActivated(), IsEmpty());
    EXPECT_THAT(session->takeOpened(), IsEmpty());
    EXPECT_THAT(memory.homeScreenShell.lookedUp, IsEmpty());
    EXPECT_THAT(memory.homeScreenShell.activated, IsEmpty());
}

TEST_F(WidgetSessionTest, SettleRunsMotionsToTheirEnd) {
    addEvents(1);
    const auto session = makeSession(notificationController);
    session->load();
    session->pullRow(0, 90);
    const auto row = session->widget().rowScrollView(0);
    EXPECT_EQ(row->contentOffset(), (CGPoint{-90, 0}));
    EXPECT_TRUE(row->isDecelerating());
    session->settle();
    EXPECT_EQ(row->contentOffset(), (CGPoint{0, 0}));
    EXPECT_FALSE(row->isDecelerating());
}

TEST_F(WidgetSessionTest, AFingerThatRestsBeforeTheLiftFlingsNothing) {
    addEvents(20);
    const auto session = makeSession(notificationController);
    session->load();
    session->resizeView({320, 100});
    session->drag({60, 90}, {0, -80});
    const UITableView& table = *session->widget().table();
    EXPECT_EQ(table.contentOffset(), (CGPoint{0, 70}));
    session->settle();
    EXPECT_EQ(table.contentOffset(), (CGPoint{0, 70}));
}

TEST_F(WidgetSessionTest, RecordsTheMessagesOfATouchOnce) {
    addEvents(1);
    const auto session = makeSession(notificationController);
    session->load();
    session->drag({60, 20}, {30, 0});
    const auto messages = session->takeTouchMessages();
    ASSERT_EQ(messages.size(), 3U);
    EXPECT_EQ(messages[0].message, "touchesBegan");
    EXPECT_EQ(messages[0].phase, UITouchPhase::began);
    EXPECT_EQ(messages[1].message, "touchesMoved");
    EXPECT_EQ(messages[1].phase, UITouchPhase::moved);
    EXPECT_EQ(messages[2].message, "touchesEnded");
    EXPECT_EQ(messages[2].phase, UITouchPhase::ended);
    for (const TouchMessage& message : messages) {
        EXPECT_EQ(message.view, "UIScrollView");
    }
    EXPECT_THAT(session->takeTouchMessages(), IsEmpty());
}

} // namespace
} // namespace quorvel::headless
