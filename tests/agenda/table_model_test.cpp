// What the agenda view answers to its table: counts, heights, cells and icons.
#include <gmock/gmock.h>

#include <stdexcept>

#include "agenda/quorvel_view.h"
#include "agenda/row_height.h"
#include "platform/ui/ui_image_view.h"
#include "platform/ui/ui_label.h"
#include "tests/agenda/agenda_fixture.h"

namespace quorvel {
namespace {

using namespace platform;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

TEST(RowHeight, IsOneLineOrTwoAndTheMargins) {
    EXPECT_EQ(rowHeight(17.5, 15, false), 43.5);
    EXPECT_EQ(rowHeight(17.5, 15, true), 58.5);
}

TEST(RowHeight, HasALocationLineWhereThereIsOneToShow) {
    EXPECT_FALSE(hasLocationLine("Room 4", false, true));
    EXPECT_FALSE(hasLocationLine("Room 4", false, false));
    EXPECT_TRUE(hasLocationLine("Room 4", true, false));
    EXPECT_FALSE(hasLocationLine("", true, false));
    EXPECT_FALSE(hasLocationLine(std::nullopt, true, false));
    EXPECT_TRUE(hasLocationLine("", true, true));
    EXPECT_TRUE(hasLocationLine(std::nullopt, true, true));
}

class TableModelTest : public AgendaFixture {
protected:
    TableModelTest() {
        setStockPreferences();
        memory.dateServices.useTwentyFourHourClock();
    }

    void load(PropertyListDictionary dictionary = {}) {
        setSettings(std::move(dictionary));
        view->loadFullView();
    }

    void reload(PropertyListDictionary dictionary) {
        setSettings(std::move(dictionary));
        view->reloadItems();
    }

    void addEventAt(const char* title, std::optional<std::string> location) {
        EKEvent made = event(title, at(0, 12));
        made.location = std::move(location);
        memory.calendarStores.addEvent(made);
    }

    CGFloat height(std::int64_t row) {
        return view->heightForRowAtIndexPath(view->itemsTableView().get(), {0, row});
    }

    std::shared_ptr<QVL_UITableViewCell> cell(std::int64_t row) {
        return std::dynamic_pointer_cast<QVL_UITableViewCell>(
            view->cellForRowAtIndexPath(view->itemsTableView().get(), {0, row}));
    }

    std::shared_ptr<QVL_UITableViewCell> shownCell(std::int64_t row) {
        view->layoutIfNeeded();
        return std::dynamic_pointer_cast<QVL_UITableViewCell>(
            view->itemsTableView()->cellForRowAtIndexPath({0, row}));
    }

    std::shared_ptr<QuorvelView> view =
        std::make_shared<QuorvelView>(platform(), CGRectMake(0, 0, 320, 300));
};

TEST_F(TableModelTest, HasOneSectionAndNoRowsWithoutEvents) {
    load();
    EXPECT_EQ(view->numberOfSectionsInTableView(nullptr), 1);
    EXPECT_EQ(view->numberOfRowsInSection(nullptr, 0), 0);
    EXPECT_EQ(view->totalItemsHeight(), -1);
}

TEST_F(TableModelTest, HasARowForEveryEventInAnySection) {
    addEvent("Lunch", at(0, 12));
    addEvent("Tea", at(0, 16));
    load();
    EXPECT_EQ(view->numberOfRowsInSection(nullptr, 0), 2);
    EXPECT_EQ(view->numberOfRowsInSection(nullptr, 7), 2);
}

TEST_F(TableModelTest, SumsTheRows) {
    for (const char* title : {"a", "b", "c"}) {
        addEvent(title, at(0, 12));
    }
    load();
    EXPECT_EQ(height(0), 43.5); // 14 * 1.25 + 26
    EXPECT_EQ(view->totalItemsHeight(), 130.5);
}

TEST_F(TableModelTest, MeasuresTwiceForEveryHeight) {
    addEvent("a", at(0, 12));
    addEvent("b", at(0, 12));
    load();
    memory.textMeasurer.calls = 0;
    view->totalItemsHeight();
    EXPECT_EQ(memory.textMeasurer.calls, 4U);
}

TEST_F(TableModelTest, MakesRoomForALocation) {
    addEventAt("with", "Canteen");
    addEventAt("empty", "");
    addEventAt("without", std::nullopt);
    load({{"displayLocation", plist(true)},
          {"sameHeightRows", plist(false)},
          {"subtitleTextSize", plist(12)}});
    EXPECT_EQ(height(0), 58.5); // 17.5 + 15 + 26
    EXPECT_EQ(height(1), 43.5);
    EXPECT_EQ(height(2), 43.5);
    EXPECT_EQ(view->totalItemsHeight(), 145.5);

    reload({{"displayLocation", plist(true)}, {"subtitleTextSize", plist(12)}});
    EXPECT_THAT(view->itemsTableView()->rowHeights(), ElementsAre(58.5, 58.5, 58.5));

    reload({{"subtitleTextSize", plist(12)}});
    EXPECT_THAT(view->itemsTableView()->rowHeights(), ElementsAre(43.5, 43.5, 43.5));
}

TEST_F(TableModelTest, BuildsACell) {
    addEvent("Lunch", at(0, 12));
    load();
    const auto made = cell(0);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->reuseIdentifier(), "Dynamic Cell");
    EXPECT_EQ(made->style(), UITableViewCellStyle::defaultStyle);
    EXPECT_EQ(made->backgroundColor(), UIColor::clearColor());
    EXPECT_EQ(made->secondaryLabel(), nullptr);

    const UIScrollView& scrollView = *made->scrollView();
    EXPECT_EQ(made->contentView()->subviews().front(), made->scrollView());
    EXPECT_EQ(scrollView.frame(), made->contentView()->bounds());
    EXPECT_EQ(scrollView.contentSize(), made->contentView()->frame().size);
    EXPECT_TRUE(scrollView.alwaysBounceHorizontal());
    EXPECT_FALSE(scrollView.alwaysBounceVertical());
    EXPECT_TRUE(scrollView.isUserInteractionEnabled());
    EXPECT_EQ(scrollView.delegate(), std::shared_ptr<UIScrollViewDelegate>(view));
    EXPECT_THAT(scrollView.subviews(), ElementsAre(made->primaryLabel(), made->subtitleLabel(),
                                                   made->relevanceDateLabel(), made->iconView()));
    EXPECT_EQ(made->primaryLabel()->frame(), CGRect{});
    EXPECT_EQ(made->iconView()->frame(), CGRectMake(13, 10, 20, 20));
    EXPECT_EQ(made->iconView()->contentMode(), UIViewContentMode::scaleAspectFit);
}

TEST_F(TableModelTest, FillsACell) {
    memory.imageFiles.images["/star.png"] = memory::makeImage({20, 20});
    addEvent("Breakfast", at(0, 10));
    addEventAt("Lunch", "Canteen");
    load({{"displayLocation", plist(true)}, {"iconFile", plist("/star.png")}});
    const auto filled = cell(1);
    EXPECT_EQ(filled->scrollView()->tag(), 1);
    EXPECT_TRUE(filled->scrollView()->isScrollEnabled());
    EXPECT_EQ(filled->primaryLabel()->text(), "Lunch");
    EXPECT_EQ(filled->primaryLabel()->attributedText(), std::nullopt); // the plain text came last
    EXPECT_EQ(filled->subtitleLabel()->text(), "Canteen");
    EXPECT_EQ(filled->relevanceDateLabel()->text(), "12:00");
    EXPECT_EQ(filled->iconView()->image(), view->icon());
    EXPECT_EQ(filled->calendarColor(), homeColor);
}

TEST_F(TableModelTest, ShowsItsRowsLaidOut) {
    addEventAt("Lunch", "Canteen");
    load({{"displayLocation", plist(true)}, {"textColor", plist(999)}});
    const auto shown = shownCell(0);
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(shown->parentTableView(), view->itemsTableView().get());
    EXPECT_EQ(shown->primaryLabel()->attributedText(), (NSAttributedString{"Lunch", homeColor}));
    EXPECT_EQ(shown->primaryLabel()->frame(), CGRectMake(47, 13, 35, 17.5));
    EXPECT_EQ(shown->relevanceDateLabel()->frame(), CGRectMake(92, 13, 35, 17.5));
    EXPECT_EQ(shown->subtitleLabel()->frame(), CGRectMake(47, 30.5, 49, 17.5));
}

TEST_F(TableModelTest, ShowsAnEmptyLocationAsAnEmptyText) {
    addEventAt("Lunch", "");
    load({{"displayLocation", plist(true)}, {"sameHeightRows", plist(false)}});
    EXPECT_EQ(cell(0)->subtitleLabel()->text(), "");
    EXPECT_EQ(height(0), 43.5);
}

TEST_F(TableModelTest, ShowsNoLocationUnlessItIsAskedFor) {
    addEventAt("Lunch", "Canteen");
    load();
    EXPECT_EQ(cell(0)->subtitleLabel()->text(), std::nullopt);
}

TEST_F(TableModelTest, NeverClearsTheLocationOfAReusedCell) {
    addEventAt("Lunch", "Canteen");
    load({{"displayLocation", plist(true)}});
    const auto shown = shownCell(0);
    ASSERT_EQ(shown->subtitleLabel()->text(), "Canteen");

    memory.calendarStores.events.clear();
    addEventAt("Tea", std::nullopt);
    view->reloadItems();
    ASSERT_EQ(shownCell(0), shown);
    EXPECT_EQ(shown->primaryLabel()->text(), "Tea");
    EXPECT_EQ(shown->subtitleLabel()->text(), "Canteen");

    memory.calendarStores.events.clear();
    addEventAt("Dinner", "Home");
    reload({{"displayLocation", plist(false)}});
    EXPECT_EQ(shownCell(0)->subtitleLabel()->text(), "Canteen");
}

TEST_F(TableModelTest, ForbidsPullingARowWithoutALink) {
    EKEvent made = event("Lunch", at(0, 12));
    made.persistentEvent.eventIdentifier = "no link";
    memory.calendarStores.addEvent(made);
    addEvent("Tea", at(0, 16));
    load();
    EXPECT_FALSE(cell(0)->scrollView()->isScrollEnabled());
    EXPECT_TRUE(cell(1)->scrollView()->isScrollEnabled());
}

TEST_F(TableModelTest, SettlesTouchesWhenACellIsMade) {
    addEvent("Lunch", at(0, 12));
    load({{"swipeAction", plist(1)}});
    const auto earlier = shownCell(0);
    EXPECT_TRUE(earlier->scrollView()->isUserInteractionEnabled());

    addEvent("Tea", at(0, 16));
    reload({{"swipeAction", plist(0)}});
    ASSERT_EQ(shownCell(0), earlier);
    EXPECT_TRUE(earlier->scrollView()->isUserInteractionEnabled());
    const auto later = shownCell(1);
    ASSERT_NE(later, earlier);
    EXPECT_FALSE(later->scrollView()->isUserInteractionEnabled());

    reload({{"swipeAction", plist(2)}});
    view->layoutIfNeeded();
    EXPECT_FALSE(later->scrollView()->isUserInteractionEnabled());
}

TEST_F(TableModelTest, HasNothingForARowThatIsNotThere) {
    addEvent("Lunch", at(0, 12));
    load();
    const auto shown = shownCell(0);
    view->itemsTableView()->reloadData(); // the cell waits to be used again
    for (const std::int64_t row : {std::int64_t{-1}, std::int64_t{1}, std::int64_t{1} << 62}) {
        EXPECT_EQ(height(row), 0) << row;
        EXPECT_EQ(cell(row), nullptr) << row;
    }
    EXPECT_EQ(shownCell(0), shown);
}

TEST_F(TableModelTest, ShowsAnEventThatLacksEverything) {
    load();
    view->setItems(listOf({std::make_shared<EKEventQRV>()}));
    const auto bare = cell(0);
    EXPECT_EQ(bare->primaryLabel()->text(), std::nullopt);
    EXPECT_EQ(bare->relevanceDateLabel()->text(), std::nullopt);
    EXPECT_EQ(bare->calendarColor(), std::nullopt);
    EXPECT_FALSE(bare->scrollView()->isScrollEnabled());
    EXPECT_EQ(view->totalItemsHeight(), 43.5);
}

TEST_F(TableModelTest, ShowsRowsInTheZeroState) {
    memory.preferences.foundationVersion = 1048;
    view->loadFullView();
    EXPECT_THAT(*view->items(), IsEmpty()); // no calendar is selected
    const auto record = std::make_shared<EKEventQRV>();
    record->setTitle("Lunch");
    view->setItems(listOf({record}));
    EXPECT_EQ(height(0), 26); // a font of no size
    EXPECT_EQ(cell(0)->iconView()->image(), nullptr);
    EXPECT_FALSE(cell(0)->scrollView()->isUserInteractionEnabled());
    EXPECT_EQ(view->itemsTableView()->separatorStyle(), UITableViewCellSeparatorStyle::none);
}

// Icons.

class RowIconTest : public TableModelTest {
protected:
    RowIconTest() { addEvent("Lunch", at(0, 12)); }
};

TEST_F(RowIconTest, IsADotInTheCalendarsColour) {
    load({{"iconFile", plist("DOT")}});
    const auto dot = cell(0)->iconView()->image();
    ASSERT_NE(dot, nullptr);
    EXPECT_EQ(dot->size(), (CGSize{80, 80}));
    EXPECT_THAT(memory::recordedPixels(*dot)->operations,
                ElementsAre("setLineWidth 2", "setStrokeColor 0 0 0 1", "setFillColor 0 0.5 0.75 1",
                            "strokeEllipseInRect 25 25 30 30", "fillEllipseInRect 25 25 30 30"));
}

TEST_F(RowIconTest, IsALargeDot) {
    load({{"iconFile", plist("DOT_LARGE")}});
    EXPECT_EQ(memory::recordedPixels(*view->getIconForItemNumber(0))->operations.back(),
              "fillEllipseInRect 15 15 50 50");
}

TEST_F(RowIconTest, IsARingForACalendarWithoutAColour) {
    load({{"iconFile", plist("DOT")}});
    view->setItems(listOf({std::make_shared<EKEventQRV>()}));
    EXPECT_EQ(memory::recordedPixels(*view->getIconForItemNumber(0))->operations.back(),
              "strokeEllipseInRect 25 25 30 30");
}

TEST_F(RowIconTest, IsNoneUnderTheWordNone) {
    memory.imageFiles.images["/Applications/MobileCal.app/icon-about@2x.png"] =
        memory::makeImage({29, 29}, 2);
    load();
    EXPECT_EQ(view->getIconForItemNumber(0), view->icon());
    ASSERT_NE(view->icon(), nullptr);
    reload({{"iconFile", plist("NONE")}});
    EXPECT_EQ(view->getIconForItemNumber(0), nullptr);
    EXPECT_NE(view->icon(), nullptr);
    EXPECT_EQ(cell(0)->iconView()->image(), nullptr);
}

TEST_F(RowIconTest, IsAFileUnderTheWordInLowerCase) {
    load({{"iconFile", plist("dot")}});
    EXPECT_EQ(view->getIconForItemNumber(0), nullptr);
}

TEST_F(RowIconTest, RaisesForADotOfARowThatIsNotThere) {
    load({{"iconFile", plist("DOT")}});
    EXPECT_THROW(view->getIconForItemNumber(1), std::out_of_range);
    EXPECT_THROW(view->getIconForItemNumber(-1), std::out_of_range);
    reload({{"iconFile", plist("NONE")}});
    EXPECT_EQ(view->getIconForItemNumber(1), nullptr);
}

TEST_F(RowIconTest, IsDrawnAnewForEveryCell) {
    load({{"iconFile", plist("DOT")}});
    memory.graphicsContexts.contextsMade = 0;
    cell(0);
    cell(0);
    EXPECT_EQ(memory.graphicsContexts.contextsMade, 2U);
}

} // namespace
} // namespace quorvel
