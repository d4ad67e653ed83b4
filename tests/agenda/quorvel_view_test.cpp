// How the agenda view is built, filled and refilled.
#include "agenda/quorvel_view.h"

#include <gmock/gmock.h>

#include "platform/cg_color.h"
#include "platform/ui/ui_image_view.h"
#include "platform/ui/ui_window.h"
#include "tests/agenda/agenda_fixture.h"

namespace quorvel {
namespace {

using namespace platform;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class QuorvelViewTest : public AgendaFixture {
protected:
    QuorvelViewTest() {
        setSettings({});
        setStockPreferences();
    }

    UITableView& table() { return *view->itemsTableView(); }

    std::shared_ptr<QuorvelView> view =
        std::make_shared<QuorvelView>(platform(), CGRectMake(0, 0, 320, 300));
};

TEST_F(QuorvelViewTest, StartsWithoutATable) {
    EXPECT_EQ(view->className(), "QuorvelView");
    EXPECT_EQ(view->frame(), CGRectMake(0, 0, 320, 300));
    EXPECT_EQ(view->itemsTableView(), nullptr);
    EXPECT_THAT(*view->items(), IsEmpty());
    EXPECT_THAT(view->subviews(), IsEmpty());
    EXPECT_EQ(view->totalItemsHeight(), -1);
    EXPECT_THAT(memory.preferences.reads, IsEmpty());
}

TEST_F(QuorvelViewTest, BuildsItsTable) {
    addEvent("Lunch", at(0, 12));
    view->loadFullView();
    ASSERT_THAT(view->subviews(), ElementsAre(view->itemsTableView()));
    EXPECT_EQ(table().style(), UITableViewStyle::plain);
    EXPECT_EQ(table().frame(), CGRectMake(0, 0, 320, 300));
    EXPECT_EQ(table().autoresizingMask(), 18U);
    EXPECT_EQ(table().backgroundColor(), UIColor::clearColor());
    EXPECT_EQ(table().separatorStyle(), UITableViewCellSeparatorStyle::singleLine);
    EXPECT_EQ(table().dataSource(), view);
    EXPECT_EQ(table().numberOfRowsInSection(0), 1);
    EXPECT_THAT(table().rowHeights(), ElementsAre(43.5));
}

TEST_F(QuorvelViewTest, LoadsSettingsBeforeItGathers) {
    view->loadFullView();
    EXPECT_THAT(memory.preferences.reads,
                ElementsAre("dictionary " + std::string(settingsFilePath),
                            "dictionary " + std::string(stockCalendarPreferencesPath)));
    view->reloadItems();
    EXPECT_THAT(memory.preferences.reads, SizeIs(4));
    EXPECT_EQ(memory.preferences.reads[2], memory.preferences.reads[0]);
    EXPECT_EQ(memory.calendarStores.storesMade, 2U);
}

TEST_F(QuorvelViewTest, FitsTheTableIntoItsBounds) {
    view->setBounds(CGRectMake(0, 0, 200, 100));
    view->loadFullView();
    EXPECT_EQ(table().frame(), CGRectMake(0, 0, 200, 100));
    view->setFrame(CGRectMake(5, 5, 320, 350));
    EXPECT_EQ(table().frame(), CGRectMake(0, 0, 320, 350));
}

TEST_F(QuorvelViewTest, IsEmptyWithoutEvents) {
    view->loadFullView();
    EXPECT_THAT(*view->items(), IsEmpty());
    EXPECT_EQ(table().numberOfSections(), 1);
    EXPECT_EQ(table().numberOfRowsInSection(0), 0);
    EXPECT_EQ(view->totalItemsHeight(), -1);
}

TEST_F(QuorvelViewTest, LimitsScrollingOnlyFromTheFirstReloadOn) {
    setSettings({{"limitMaxHeight", plist(false)}});
    view->loadFullView();
    EXPECT_TRUE(table().isScrollEnabled());
    view->reloadItems();
    EXPECT_FALSE(table().isScrollEnabled());
    setSettings({{"limitMaxHeight", plist(true)}});
    view->reloadItems();
    EXPECT_TRUE(table().isScrollEnabled());
}

TEST_F(QuorvelViewTest, LeavesScrollingAloneWhereSettingsCannotBeRead) {
    view->loadFullView();
    memory.preferences.foundationVersion = 1048;
    view->reloadItems();
    EXPECT_TRUE(table().isScrollEnabled());
}

TEST_F(QuorvelViewTest, ShowsSeparatorsFromTheNextReloadOn) {
    setSettings({{"showSeparatorLines", plist(false)}});
    view->loadFullView();
    EXPECT_EQ(table().separatorStyle(), UITableViewCellSeparatorStyle::none);
    setSettings({{"showSeparatorLines", plist(true)}});
    EXPECT_EQ(table().separatorStyle(), UITableViewCellSeparatorStyle::none);
    view->reloadItems();
    EXPECT_EQ(table().separatorStyle(), UITableViewCellSeparatorStyle::singleLine);
}

TEST_F(QuorvelViewTest, ReloadsIntoTheSameTable) {
    view->loadFullView();
    const auto first = view->itemsTableView();
    addEvent("Lunch", at(0, 12));
    EXPECT_THAT(*view->items(), IsEmpty());
    view->reloadItems();
    EXPECT_THAT(*view->items(), SizeIs(1));
    EXPECT_EQ(view->itemsTableView(), first);
    EXPECT_EQ(first->numberOfRowsInSection(0), 1);
    EXPECT_THAT(view->subviews(), SizeIs(1));
}

TEST_F(QuorvelViewTest, SharesTheListThatItIsGiven) {
    const SharedEventRecords records = listOf({std::make_shared<EKEventQRV>()});
    view->setItems(records);
    EXPECT_EQ(view->items(), records);
    view->setItems(nullptr);
    EXPECT_THAT(*view->items(), IsEmpty());
}

TEST_F(QuorvelViewTest, LeavesTheListOfAnEarlierLoadUnchanged) {
    addEvent("Lunch", at(0, 12));
    view->loadFullView();
    const SharedEventRecords earlier = view->items();
    addEvent("Tea", at(0, 16));
    view->reloadItems();
    EXPECT_THAT(*earlier, SizeIs(1));
    EXPECT_THAT(*view->items(), SizeIs(2));
}

TEST_F(QuorvelViewTest, ReloadsBeforeItAppears) {
    view->loadFullView();
    addEvent("Lunch", at(0, 12));
    view->viewWillAppear();
    EXPECT_THAT(*view->items(), SizeIs(1));
}

TEST_F(QuorvelViewTest, ReloadsWithoutATable) {
    addEvent("Lunch", at(0, 12));
    view->reloadItems();
    EXPECT_THAT(*view->items(), SizeIs(1));
    EXPECT_EQ(view->itemsTableView(), nullptr);
}

TEST_F(QuorvelViewTest, PutsASecondTableOverTheFirst) {
    addEvent("Lunch", at(0, 12));
    view->loadFullView();
    const auto first = view->itemsTableView();
    addEvent("Tea", at(0, 16));
    view->loadFullView();
    const auto second = view->itemsTableView();
    EXPECT_NE(first, second);
    EXPECT_THAT(view->subviews(), ElementsAre(first, second));
    EXPECT_EQ(first->dataSource(), view);
    EXPECT_EQ(first->numberOfRowsInSection(0), 1);
    EXPECT_EQ(second->numberOfRowsInSection(0), 2);

    addEvent("Dinner", at(0, 19));
    view->reloadItems();
    EXPECT_EQ(first->numberOfRowsInSection(0), 1);
    EXPECT_EQ(second->numberOfRowsInSection(0), 3);
}

TEST_F(QuorvelViewTest, HasNothingForTheRowsOfTheFirstTableThatAreGone) {
    for (const char* title : {"a", "b", "c", "d", "e"}) {
        addEvent(title, at(0, 12));
    }
    view->setFrame(CGRectMake(0, 0, 320, 80));
    view->loadFullView();
    view->layoutIfNeeded();
    const auto first = view->itemsTableView();
    ASSERT_THAT(first->visibleCells(), SizeIs(2)); // of 43.5 points each
    const auto second = first->visibleCells()[1];

    memory.calendarStores.events.resize(1);
    view->loadFullView();
    view->setFrame(CGRectMake(0, 0, 320, 300));
    view->layoutIfNeeded();
    EXPECT_EQ(first->numberOfRowsInSection(0), 5);
    EXPECT_THAT(first->visibleCells(), SizeIs(2)); // no more than it had
    EXPECT_EQ(first->visibleCells()[1], second);
    EXPECT_EQ(first->cellForRowAtIndexPath({0, 2}), nullptr);
    EXPECT_THAT(table().visibleCells(), SizeIs(1));

    first->setContentOffset({0, 100});
    first->setContentOffset({0, 0});
    view->layoutIfNeeded();
    first->reloadData(); // the test requests it in the end
    EXPECT_EQ(first->numberOfRowsInSection(0), 1);
}

TEST_F(QuorvelViewTest, LimitsScrollingOfTheFirstTableInASecondLoad) {
    view->loadFullView();
    const auto first = view->itemsTableView();
    view->loadFullView();
    EXPECT_FALSE(first->isScrollEnabled());
    EXPECT_TRUE(view->itemsTableView()->isScrollEnabled());
}

TEST_F(QuorvelViewTest, PutsTheBackgroundPictureOnTop) {
    view->loadFullView();
    const auto picture = memory::makeImage({10, 10});
    view->setBackgroundImage(picture);
    ASSERT_THAT(view->subviews(), SizeIs(2));
    const auto first = std::dynamic_pointer_cast<UIImageView>(view->subviews()[1]);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->image(), picture);

    const auto other = memory::makeImage({20, 20});
    view->setBackgroundImage(other);
    EXPECT_THAT(view->subviews(), ElementsAre(view->itemsTableView(), first));
    EXPECT_EQ(first->image(), other);

    view->setBackgroundImage(nullptr);
    EXPECT_THAT(view->subviews(), ElementsAre(view->itemsTableView()));
    view->setBackgroundImage(nullptr);

    view->setBackgroundImage(picture);
    ASSERT_THAT(view->subviews(), SizeIs(2));
    EXPECT_NE(view->subviews()[1], first);
}

TEST_F(QuorvelViewTest, InsetsTheBackgroundPicture) {
    view->setBackgroundImage(memory::makeImage({10, 10}));
    view->setNeedsLayout();
    view->layoutIfNeeded();
    EXPECT_EQ(view->subviews()[0]->frame(), CGRectMake(2, 0, 316, 300));
}

TEST_F(QuorvelViewTest, TakesItsBackgroundPictureAlong) {
    view->loadFullView();
    view->setBackgroundImage(memory::makeImage({10, 10}));
    const auto table = view->itemsTableView();
    const auto background = view->subviews()[1];
    view.reset();
    EXPECT_EQ(background->superview(), nullptr);
    EXPECT_EQ(table->superview(), nullptr);
    EXPECT_EQ(table->dataSource(), nullptr);
    table->reloadData();
    table->layoutIfNeeded();
}

TEST_F(QuorvelViewTest, GoesWithItsWindow) {
    auto window = std::make_shared<UIWindow>(CGRectMake(0, 0, 320, 480), memory.screen);
    window->addSubview(view);
    view->loadFullView();
    view->setBackgroundImage(memory::makeImage({10, 10}));
    const auto background = view->subviews()[1];
    const std::weak_ptr<QuorvelView> gone = view;
    view.reset();
    window.reset();
    EXPECT_TRUE(gone.expired());
    EXPECT_EQ(background->superview(), nullptr);
}

TEST_F(QuorvelViewTest, NamesItsValues) {
    memory.imageFiles.images["/star.png"] = memory::makeImage({20, 20});
    setSettings({{"swipeAction", plist(3)}, {"iconFile", plist("/star.png")}});
    addEvent("Lunch", at(0, 12));
    EXPECT_EQ(view->valueForKey("icon").index(), 0U);
    view->loadFullView();
    EXPECT_THAT(view->keys(), ElementsAre("swipeAction", "icon", "items", "captions",
                                          "swipeActionHasEffect", "chosenColors"));
    EXPECT_EQ(std::get<std::int64_t>(view->valueForKey("swipeAction")), 3);
    EXPECT_EQ(std::get<std::shared_ptr<const UIImage>>(view->valueForKey("icon")), view->icon());
    const auto items =
        std::get<std::vector<std::shared_ptr<const KeyValueCoding>>>(view->valueForKey("items"));
    ASSERT_THAT(items, SizeIs(1));
    EXPECT_EQ(std::get<std::string>(items[0]->valueForKey("title")), "Lunch");
    EXPECT_FALSE(std::get<bool>(view->valueForKey("swipeActionHasEffect")));
    settings::customLaunchAppBundleID = "org.example.App";
    EXPECT_TRUE(std::get<bool>(view->valueForKey("swipeActionHasEffect")));
    EXPECT_EQ(view->valueForKey("table").index(), 0U);
}

TEST_F(QuorvelViewTest, NamesTheColoursThatTheUserHasChosen) {
    const auto chosen = [this] {
        return std::get<std::vector<std::string>>(view->valueForKey("chosenColors"));
    };
    EXPECT_THAT(chosen(), IsEmpty());
    setSettings({{"dateTextColor", plist(2)}, {"textColor", plist("red")}, {"textSize", plist(9)}});
    view->loadFullView();
    EXPECT_THAT(chosen(), ElementsAre("textColor", "dateTextColor"));
    setSettings({{"subtitleTextColor", plist(2)}});
    view->reloadItems();
    EXPECT_THAT(chosen(), ElementsAre("subtitleTextColor"));
    memory.preferences.files.clear();
    view->reloadItems();
    EXPECT_THAT(chosen(), IsEmpty());
}

TEST_F(QuorvelViewTest, ColoursStayChosenWhereTheSettingsCannotBeRead) {
    setSettings({{"textColor", plist(2)}});
    view->loadFullView();
    memory.preferences.foundationVersion = 1048;
    view->reloadItems();
    EXPECT_THAT(std::get<std::vector<std::string>>(view->valueForKey("chosenColors")),
                ElementsAre("textColor"));
}

TEST_F(QuorvelViewTest, NamesTheCaptionOfEveryRow) {
    memory.dateServices.useTwentyFourHourClock();
    const auto captions = [this] {
        return std::get<std::vector<std::string>>(view->valueForKey("captions"));
    };
    EXPECT_THAT(captions(), IsEmpty());
    addEvent("Lunch", at(0, 12));
    addEvent("Tea", at(1, 16));
    view->loadFullView();
    EXPECT_THAT(captions(), ElementsAre("12:00", "Tomorrow, 16:00"));

    EventRecords items = *view->items();
    items.insert(items.begin() + 1, std::make_shared<EKEventQRV>());
    view->setItems(listOf(items));
    EXPECT_THAT(captions(), ElementsAre("12:00", "", "Tomorrow, 16:00"));
}

TEST_F(QuorvelViewTest, ConvertsAColorAndLogsIt) {
    EXPECT_EQ(view->hexStringForColor({{1.0, 0.5, 0.0, 0.3}}), "#FF7F00");
    EXPECT_THAT(memory.systemLog.lines,
                ElementsAre("QRV: hexStringForColor", "QRV: got calendar color string: #FF7F00"));
    view->hexStringForColor({});
    EXPECT_THAT(memory.systemLog.lines, SizeIs(4));
    EXPECT_EQ(memory.systemLog.lines[3], "QRV: got calendar color string: #000000");
}

} // namespace
} // namespace quorvel
