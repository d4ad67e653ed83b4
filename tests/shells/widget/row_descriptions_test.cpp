#include "shells/widget/row_descriptions.h"

#include <gmock/gmock.h>

#include "platform/ui/ui_window.h"
#include "shells/headless/recording_host.h"
#include "shells/widget/hosted_widget.h"
#include "tests/shells/widget/shell_fixture.h"

namespace quorvel::shells {
namespace {

using namespace platform;
using testing::IsEmpty;

class RowDescriptionsTest : public ShellFixture {
protected:
    std::vector<RowDescription> described(std::string_view controller = notificationController) {
        HostedWidget widget(bundle, controller, memory.platform(), host, *window);
        widget.loadFullView();
        return describeRows(widget);
    }
    std::vector<std::string> named(std::string_view controller = notificationController) {
        HostedWidget widget(bundle, controller, memory.platform(), host, *window);
        widget.loadFullView();
        return nameRows(widget);
    }
    bool hasAction(PropertyListDictionary settings) {
        setSettings(std::move(settings));
        return described().at(0).hasAction;
    }

    headless::RecordingHost host;
    std::shared_ptr<UIWindow> window =
        std::make_shared<UIWindow>(CGRectMake(0, 0, 320, 480), memory.screen);
};

TEST_F(RowDescriptionsTest, DescribesNothingWithoutRows) {
    EXPECT_THAT(described(), IsEmpty());
    EXPECT_THAT(named(), IsEmpty());
}

TEST_F(RowDescriptionsTest, ARowIsItsTitleLocationAndCaption) {
    memory.dateServices.useTwentyFourHourClock();
    EKEvent lunch = event("Lunch", at(0, 12, 30));
    lunch.location = "Café Sol";
    memory.calendarStores.addEvent(lunch);
    EXPECT_EQ(named().at(0), "Lunch, 12:30");
    setSettings({{"displayLocation", {true}}});
    EXPECT_EQ(named().at(0), "Lunch, Café Sol, 12:30");
    EXPECT_EQ(named(legacyController).at(0), "Lunch, Café Sol, 12:30");
}

TEST_F(RowDescriptionsTest, HasThePartsOfARow) {
    memory.dateServices.useTwentyFourHourClock();
    EKEvent lunch = event("Lunch", at(0, 12, 30));
    lunch.location = "Café Sol";
    memory.calendarStores.addEvent(lunch);
    HostedWidget widget(bundle, notificationController, memory.platform(), host, *window);
    const std::optional<RowContent> row = rowContent(widget, 0);
    ASSERT_TRUE(row);
    EXPECT_EQ(row->title, "Lunch");
    EXPECT_EQ(row->location, "Café Sol"); // which the row does not show
    EXPECT_EQ(row->caption, "12:30");
    ASSERT_TRUE(row->link);
    EXPECT_EQ(row->link->absoluteString().rfind("x-apple-calevent://", 0), 0U);
    EXPECT_EQ(row->start, at(0, 12, 30));
    EXPECT_FALSE(rowContent(widget, 1));
}

TEST_F(RowDescriptionsTest, LeavesMissingPartsOut) {
    memory.dateServices.useTwentyFourHourClock();
    setSettings({{"displayLocation", {true}}});
    EKEvent untitled = event("x", at(0, 12, 30));
    untitled.title.reset();
    untitled.location = "";
    memory.calendarStores.addEvent(untitled);
    EXPECT_EQ(named().at(0), "12:30");
}

TEST_F(RowDescriptionsTest, RowsThatAreNotVisibleHaveDescriptionsToo) {
    memory.dateServices.useTwentyFourHourClock();
    addEvents(50);
    EKEvent day = event("Holiday", at(1, 0));
    day.endDate = at(1, 23, 59);
    day.isAllDay = true;
    memory.calendarStores.addEvent(day);
    const std::vector<RowDescription> rows = described();
    ASSERT_EQ(rows.size(), 51U);
    EXPECT_EQ(named().at(49), "e49, 12:49");
    EXPECT_EQ(rows[49].start, at(0, 12, 49));
    EXPECT_EQ(rows[49].end, at(0, 13, 49));
    EXPECT_FALSE(rows[49].isAllDay);
    EXPECT_EQ(named().at(50), "Holiday, Tomorrow");
    EXPECT_EQ(rows[50].start, at(1, 0));
    EXPECT_TRUE(rows[50].isAllDay);
}

TEST_F(RowDescriptionsTest, ARowHasAnActionWhereAPullHasAnEffect) {
    addEvents(1);
    const PropertyListValue application{std::string("org.example.App")};
    EXPECT_TRUE(hasAction({}));
    EXPECT_TRUE(hasAction({{"swipeAction", {std::int64_t{2}}}}));
    EXPECT_TRUE(
        hasAction({{"swipeAction", {std::int64_t{3}}}, {"customLaunchAppBundleID", application}}));
    EXPECT_FALSE(hasAction({{"swipeAction", {std::int64_t{3}}}})) << "no application is named";
    EXPECT_FALSE(
        hasAction({{"swipeAction", {std::int64_t{0}}}, {"customLaunchAppBundleID", application}}));
}

TEST_F(RowDescriptionsTest, ARowWithoutALinkHasNoAction) {
    EKEvent unlinked = event("unlinked", at(0, 11));
    unlinked.persistentEvent.eventIdentifier = "home:not a link";
    memory.calendarStores.addEvent(unlinked);
    EXPECT_FALSE(described().at(0).hasAction);
}

} // namespace
} // namespace quorvel::shells
