// What pulled rows do: the rule, and rows that are really pulled.
#include "agenda/swipe_action.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include "agenda/quorvel_view.h"
#include "platform/date_services.h"
#include "platform/ui/ui_window.h"
#include "tests/agenda/agenda_fixture.h"

namespace quorvel {
namespace {

using namespace platform;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

TEST(PullThreshold, LiesBeyondEightyPoints) {
    EXPECT_FALSE(isPulledFarEnough({-80.0, 0}));
    EXPECT_TRUE(isPulledFarEnough({-80.5, 0}));
    EXPECT_TRUE(isPulledFarEnough({std::nextafter(-80.0, -81.0), 0}));
    EXPECT_FALSE(isPulledFarEnough({0, 0}));
}

TEST(PullThreshold, IsNotReachedToTheLeft) {
    EXPECT_FALSE(isPulledFarEnough({80.5, 0}));
    EXPECT_FALSE(isPulledFarEnough({1e300, 0}));
    EXPECT_FALSE(isPulledFarEnough({std::numeric_limits<double>::quiet_NaN(), 0}));
}

TEST(PullThreshold, HasNothingToDoWithTheVertical) {
    EXPECT_TRUE(isPulledFarEnough({-81, 500}));
    EXPECT_FALSE(isPulledFarEnough({0, -500}));
}

TEST(SwipeActionEffect, NeedsAnActionAndTheApplicationThatItLaunches) {
    const std::string application = "org.example.App";
    EXPECT_FALSE(hasEffect(SwipeAction::none, application));
    EXPECT_TRUE(hasEffect(SwipeAction::openEvent, std::nullopt));
    EXPECT_TRUE(hasEffect(SwipeAction::openDay, std::nullopt));
    EXPECT_TRUE(hasEffect(SwipeAction::launchApplication, application));
    EXPECT_FALSE(hasEffect(SwipeAction::launchApplication, ""));
    EXPECT_FALSE(hasEffect(SwipeAction::launchApplication, std::nullopt));
}

class SwipeActionTest : public AgendaFixture {
protected:
    SwipeActionTest() {
        record.setStartDate(eveningInMarch);
        record.setURL(NSURL::URLWithString("x-apple-calevent://home/a?o=1.0"));
    }

    void run(SwipeAction action) { runSwipeAction(action, record, platform()); }

    // 2014-03-07 18:45 UTC
    static constexpr NSDate eveningInMarch = dateWithTimeIntervalSince1970(1394217900);
    EKEventQRV record;
};

TEST_F(SwipeActionTest, DoesNothing) {
    settings::customLaunchAppBundleID = "org.example.App";
    run(SwipeAction::none);
    EXPECT_THAT(memory.application.opened, IsEmpty());
    EXPECT_THAT(memory.homeScreenShell.lookedUp, IsEmpty());
}

TEST_F(SwipeActionTest, OpensTheEventsLink) {
    run(SwipeAction::openEvent);
    EXPECT_THAT(memory.application.opened, ElementsAre("x-apple-calevent://home/a?o=1.0"));
    record.setURL(std::nullopt);
    run(SwipeAction::openEvent);
    EXPECT_THAT(memory.application.opened, SizeIs(1));
}

TEST_F(SwipeActionTest, OpensTheDayOfTheStart) {
    memory.dateServices.units.clear();
    run(SwipeAction::openDay);
    EXPECT_THAT(memory.application.opened, ElementsAre("fantastical2://show?date=2014-3-7"));
    EXPECT_THAT(memory.dateServices.units,
                ElementsAre(NSYearCalendarUnit | NSMonthCalendarUnit | NSDayCalendarUnit |
                            NSHourCalendarUnit | NSMinuteCalendarUnit));
    record.setStartDate(std::nullopt);
    run(SwipeAction::openDay);
    EXPECT_THAT(memory.application.opened, SizeIs(1));
}

TEST_F(SwipeActionTest, TakesTheDayInTheUsersZone) {
    const auto link = [this](NSDate date) {
        return dayLink(memory.dateServices, date)->absoluteString();
    };
    memory.dateServices.standardOffset = 6 * 3600;
    EXPECT_EQ(link(eveningInMarch), "fantastical2://show?date=2014-3-8");
    memory.dateServices.standardOffset = -12 * 3600;
    EXPECT_EQ(link(NSDate{0}), "fantastical2://show?date=2000-12-31");
    memory.dateServices.standardOffset = 0;
    EXPECT_EQ(link(NSDate{0}), "fantastical2://show?date=2001-1-1");
}

TEST_F(SwipeActionTest, LaunchesTheChosenApplication) {
    settings::customLaunchAppBundleID = "org.example.App";
    memory.homeScreenShell.installed = {"org.example.App"};
    run(SwipeAction::launchApplication);
    EXPECT_THAT(memory.homeScreenShell.lookedUp, ElementsAre("org.example.App"));
    EXPECT_THAT(memory.homeScreenShell.activated, ElementsAre("org.example.App"));
    EXPECT_THAT(memory.application.opened, IsEmpty());
}

TEST_F(SwipeActionTest, LaunchesWithoutALinkOrAStart) {
    settings::customLaunchAppBundleID = "A";
    memory.homeScreenShell.installed = {"A"};
    runSwipeAction(SwipeAction::launchApplication, EKEventQRV(), platform());
    EXPECT_THAT(memory.homeScreenShell.activated, ElementsAre("A"));
}

TEST_F(SwipeActionTest, AsksTheShellForAnApplicationThatIsNotInstalled) {
    settings::customLaunchAppBundleID = "org.example.Missing";
    run(SwipeAction::launchApplication);
    EXPECT_THAT(memory.homeScreenShell.lookedUp, ElementsAre("org.example.Missing"));
    EXPECT_THAT(memory.homeScreenShell.activated, ElementsAre("")); // passed on all the same
}

TEST_F(SwipeActionTest, LaunchesNothingWithoutAnIdentifier) {
    run(SwipeAction::launchApplication); // never loaded
    settings::customLaunchAppBundleID = "";
    run(SwipeAction::launchApplication);
    EXPECT_THAT(memory.homeScreenShell.lookedUp, IsEmpty());
    EXPECT_THAT(memory.homeScreenShell.activated, IsEmpty());
}

TEST_F(SwipeActionTest, LaunchesNothingWhereTheShellLacksAClass) {
    settings::customLaunchAppBundleID = "org.example.App";
    memory.homeScreenShell.installed = {"org.example.App"};
    memory.homeScreenShell.hasApplicationController = false;
    run(SwipeAction::launchApplication);
    EXPECT_THAT(memory.homeScreenShell.activated, IsEmpty());

    memory.homeScreenShell.hasApplicationController = true;
    memory.homeScreenShell.hasUIController = false;
    run(SwipeAction::launchApplication);
    EXPECT_THAT(memory.homeScreenShell.activated, IsEmpty());

    memory.homeScreenShell.hasUIController = true; // checked each time
    run(SwipeAction::launchApplication);
    EXPECT_THAT(memory.homeScreenShell.activated, ElementsAre("org.example.App"));
}

// Rows in a window.

class PulledRowTest : public AgendaFixture {
protected:
    PulledRowTest() {
        setStockPreferences();
        window->addSubview(view);
    }

    void load(PropertyListDictionary dictionary) {
        setSettings(std::move(dictionary));
        view->loadFullView();
        window->layoutIfNeeded();
    }

    void reload(PropertyListDictionary dictionary) {
        setSettings(std::move(dictionary));
        view->reloadItems();
        window->layoutIfNeeded();
    }

    void addEventWithoutALink(std::string title) {
        EKEvent made = event(std::move(title), at(0, 12));
        made.persistentEvent.eventIdentifier = "no link";
        memory.calendarStores.addEvent(made);
    }

    std::shared_ptr<UIScrollView> row(std::int64_t number) {
        const auto cell = std::dynamic_pointer_cast<QVL_UITableViewCell>(
            view->itemsTableView()->cellForRowAtIndexPath({0, number}));
        return cell->scrollView();
    }

    bool pull(std::int64_t number, CGFloat distance) {
        return row(number)->dragTo({-distance, 0}, ++time);
    }

    void finger(UITouchPhase phase, const CGPoint& location) {
        time += 0.01;
        window->sendFinger({1, phase, location, time});
    }

    // In steps, so that the direction shows before the end.
    void moveFinger(const CGPoint& from, const CGPoint& to) {
        constexpr int steps = 10;
        for (int i = 1; i <= steps; ++i) {
            finger(UITouchPhase::moved,
                   {from.x + (to.x - from.x) * i / steps, from.y + (to.y - from.y) * i / steps});
        }
    }

    void dragFinger(const CGPoint& from, const CGPoint& to) {
        finger(UITouchPhase::began, from);
        moveFinger(from, to);
        finger(UITouchPhase::ended, to);
        time += 10; // what moves comes to rest
        window->advance(time);
    }

    const std::vector<std::string>& opened() const { return memory.application.opened; }

    static constexpr const char* linkOfLunch = "x-apple-calevent://home/Lunch?o=43200.0";
    static constexpr const char* linkOfTea = "x-apple-calevent://home/Tea?o=57600.0";

    double time = 0;
    std::shared_ptr<UIWindow> window =
        std::make_shared<UIWindow>(CGRectMake(0, 0, 320, 480), memory.screen);
    std::shared_ptr<QuorvelView> view =
        std::make_shared<QuorvelView>(platform(), CGRectMake(0, 0, 320, 300));
};

TEST_F(PulledRowTest, OpensItsEventBeyondTheThreshold) {
    addEvent("Lunch", at(0, 12));
    addEvent("Tea", at(0, 16));
    load({});
    EXPECT_TRUE(pull(0, 80));
    EXPECT_THAT(opened(), IsEmpty());
    EXPECT_TRUE(pull(0, 80.5));
    EXPECT_THAT(opened(), ElementsAre(linkOfLunch));
    EXPECT_TRUE(pull(1, 80.5));
    EXPECT_THAT(opened(), ElementsAre(linkOfLunch, linkOfTea));
    EXPECT_TRUE(pull(1, 200)); // again
    EXPECT_THAT(opened(), ElementsAre(linkOfLunch, linkOfTea, linkOfTea));
}

TEST_F(PulledRowTest, DoesNothingToTheLeft) {
    addEvent("Lunch", at(0, 12));
    load({});
    EXPECT_TRUE(pull(0, -80.5));
    EXPECT_TRUE(pull(0, -300));
    EXPECT_THAT(opened(), IsEmpty());
}

TEST_F(PulledRowTest, OpensTheDay) {
    addEvent("Lunch", at(4, 12));
    load({{"swipeAction", plist(2)}, {"daysToDisplay", plist(7)}});
    EXPECT_TRUE(pull(0, 81));
    EXPECT_THAT(opened(), ElementsAre("fantastical2://show?date=2001-1-5"));
}

TEST_F(PulledRowTest, LaunchesAnApplication) {
    addEvent("Lunch", at(0, 12));
    load({{"swipeAction", plist(3)}});
    EXPECT_TRUE(pull(0, 81));
    EXPECT_THAT(memory.homeScreenShell.lookedUp, IsEmpty());
    reload({{"swipeAction", plist(3)}, {"customLaunchAppBundleID", plist("org.example.App")}});
    EXPECT_TRUE(pull(0, 81));
    EXPECT_THAT(memory.homeScreenShell.lookedUp, ElementsAre("org.example.App"));
    EXPECT_THAT(memory.homeScreenShell.activated, ElementsAre(""));
    EXPECT_THAT(opened(), IsEmpty());
}

TEST_F(PulledRowTest, CannotBePulledWithoutALink) {
    addEventWithoutALink("Lunch");
    memory.homeScreenShell.installed = {"A"};
    load({});
    for (const int action : {1, 2, 3}) {
        reload({{"swipeAction", plist(action)}, {"customLaunchAppBundleID", plist("A")}});
        EXPECT_FALSE(pull(0, 200)) << action;
        dragFinger({10, 20}, {310, 20});
        EXPECT_EQ(row(0)->contentOffset(), CGPoint{}) << action;
    }
    EXPECT_THAT(opened(), IsEmpty());
    EXPECT_THAT(memory.homeScreenShell.lookedUp, IsEmpty());
}

TEST_F(PulledRowTest, BouncesAndDoesNothingAfterTheActionIsSwitchedOff) {
    addEvent("Lunch", at(0, 12));
    load({{"swipeAction", plist(1)}});
    const auto made = row(0);
    reload({{"swipeAction", plist(0)}});
    ASSERT_EQ(row(0), made);
    EXPECT_TRUE(pull(0, 81));
    EXPECT_EQ(made->contentOffset().x, -81);
    EXPECT_TRUE(made->isDecelerating()); // springs back
    EXPECT_THAT(opened(), IsEmpty());
}

TEST_F(PulledRowTest, CannotBePulledWhereItWasMadeWithoutAnAction) {
    addEvent("Lunch", at(0, 12));
    load({{"swipeAction", plist(0)}});
    EXPECT_FALSE(pull(0, 81));
    reload({{"swipeAction", plist(1)}});
    EXPECT_FALSE(pull(0, 81));
    dragFinger({10, 20}, {310, 20});
    EXPECT_THAT(opened(), IsEmpty());
}

TEST_F(PulledRowTest, SpringsBackByItself) {
    addEvent("Lunch", at(0, 12));
    load({});
    EXPECT_TRUE(pull(0, 120));
    EXPECT_EQ(row(0)->contentOffset().x, -120); // the view does not move it
    window->advance(time + 10);
    EXPECT_EQ(row(0)->contentOffset().x, 0);
    EXPECT_THAT(opened(), SizeIs(1));
}

TEST_F(PulledRowTest, DoesNotRefreshTheList) {
    addEvent("Lunch", at(0, 12));
    load({});
    addEvent("Tea", at(0, 16));
    EXPECT_TRUE(pull(0, 120));
    EXPECT_THAT(*view->items(), SizeIs(1));
    EXPECT_EQ(memory.calendarStores.storesMade, 1U);
}

TEST_F(PulledRowTest, TakesNoNoticeOfWhoPulledOrWhetherItGoesOn) {
    addEvent("Lunch", at(0, 12));
    addEvent("Tea", at(0, 16));
    load({});
    UIScrollView stranger(CGRectMake(0, 0, 10, 10));
    stranger.setTag(1);
    stranger.setContentOffset({-81, 40});
    view->scrollViewDidEndDragging(&stranger, true);
    view->scrollViewDidEndDragging(&stranger, false);
    EXPECT_THAT(opened(), ElementsAre(linkOfTea, linkOfTea));
}

// The list may have become shorter while the finger was down.
TEST_F(PulledRowTest, DoesNothingForARowThatIsGone) {
    addEvent("Lunch", at(0, 12));
    memory.homeScreenShell.installed = {"A"};
    for (const int action : {0, 1, 2, 3}) {
        setSettings({{"swipeAction", plist(action)}, {"customLaunchAppBundleID", plist("A")}});
        view->reloadItems();
        for (const std::int64_t tag : {std::int64_t{1}, std::int64_t{-1}, std::int64_t{1} << 62}) {
            UIScrollView destroyed(CGRectMake(0, 0, 10, 10));
            destroyed.setTag(tag);
            destroyed.setContentOffset({-100, 0});
            view->scrollViewDidEndDragging(&destroyed, true);
        }
    }
    EXPECT_THAT(opened(), IsEmpty());
    EXPECT_THAT(memory.homeScreenShell.lookedUp, IsEmpty());
}

TEST_F(PulledRowTest, SurvivesAListThatShrinksUnderTheFinger) {
    addEvent("Lunch", at(0, 12));
    addEvent("Tea", at(0, 16));
    load({});
    finger(UITouchPhase::began, {10, 65}); // the second row, from 43.5 to 87
    moveFinger({10, 65}, {310, 65});
    memory.calendarStores.events.clear();
    reload({});
    finger(UITouchPhase::ended, {310, 65});
    window->advance(time + 10);
    EXPECT_THAT(opened(), IsEmpty());
}

// Fingers.

TEST_F(PulledRowTest, FollowsAFinger) {
    addEvent("Lunch", at(0, 12));
    addEvent("Tea", at(0, 16));
    load({});
    finger(UITouchPhase::began, {10, 65});
    moveFinger({10, 65}, {310, 65});
    EXPECT_LT(row(1)->contentOffset().x, -80);
    EXPECT_THAT(opened(), IsEmpty()); // not before the finger lifts
    finger(UITouchPhase::ended, {310, 65});
    EXPECT_THAT(opened(), ElementsAre(linkOfTea));
    window->advance(time + 10);
    EXPECT_THAT(opened(), SizeIs(1));
}

TEST_F(PulledRowTest, DoesNothingForOtherDrags) {
    addEvent("Lunch", at(0, 12));
    load({});
    dragFinger({10, 20}, {100, 20});   // too short
    dragFinger({310, 20}, {10, 20});   // to the left
    dragFinger({160, 20}, {160, 290}); // down
    dragFinger({10, 20}, {10, 20});    // a tap
    EXPECT_THAT(opened(), IsEmpty());
}

TEST_F(PulledRowTest, DoesNothingForAPullThatIsTakenBack) {
    addEvent("Lunch", at(0, 12));
    load({});
    finger(UITouchPhase::began, {10, 20});
    moveFinger({10, 20}, {310, 20});
    moveFinger({310, 20}, {40, 20});
    finger(UITouchPhase::ended, {40, 20});
    EXPECT_THAT(opened(), IsEmpty());
}

TEST_F(PulledRowTest, DoesNothingWhereTheFingerIsTakenAway) {
    addEvent("Lunch", at(0, 12));
    load({});
    finger(UITouchPhase::began, {10, 20});
    moveFinger({10, 20}, {310, 20});
    window->cancelFinger(time + 0.01);
    window->advance(time + 10);
    EXPECT_THAT(opened(), IsEmpty());
    EXPECT_EQ(row(0)->contentOffset(), CGPoint{});
}

} // namespace
} // namespace quorvel
