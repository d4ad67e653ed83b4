#include "platform/ui/ui_table_view.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <utility>

#include "platform/memory/fixed_screen.h"
#include "platform/memory/recording_context.h"
#include "platform/ui/ui_window.h"

namespace quorvel::platform {
namespace {

class Cell : public UITableViewCell {
public:
    explicit Cell(std::optional<std::string> identifier)
        : UITableViewCell(UITableViewCellStyle::defaultStyle, std::move(identifier)) {}
    void layoutSubviews() override {
        UITableViewCell::layoutSubviews();
        ++layouts;
    }
    int layouts = 0;
};

// Data source and delegate of the table, with a record of their calls. The tags of cells number
// them in the order of their creation.
class Rows : public UITableViewDataSource, public UITableViewDelegate {
public:
    NSInteger numberOfSectionsInTableView(UITableView*) override {
        asked.emplace_back("sections");
        return static_cast<NSInteger>(heights.size()) + missingSections;
    }
    NSInteger numberOfRowsInSection(UITableView*, NSInteger section) override {
        asked.push_back("rows " + std::to_string(section));
        return static_cast<NSInteger>(heights.at(static_cast<std::size_t>(section)).size()) +
               missingRows;
    }
    CGFloat heightForRowAtIndexPath(UITableView* table, const NSIndexPath& path) override {
        asked.push_back("height " + name(path));
        if (inHeight) {
            inHeight(*table);
        }
        return heights.at(static_cast<std::size_t>(path.section))
            .at(static_cast<std::size_t>(path.row));
    }
    std::shared_ptr<UITableViewCell> cellForRowAtIndexPath(UITableView* table,
                                                           const NSIndexPath& path) override {
        asked.push_back("cell " + name(path));
        if (inCell) {
            inCell(*table);
        }
        if (answer) {
            return answer(path);
        }
        std::shared_ptr<UITableViewCell> cell;
        if (identifier) {
            cell = table->dequeueReusableCellWithIdentifier(*identifier);
        }
        if (!cell) {
            cell = std::make_shared<Cell>(identifier);
            cell->setTag(++made);
        }
        return cell;
    }

    std::vector<std::string> takeAsked() { return std::exchange(asked, {}); }

    static std::string name(const NSIndexPath& path) {
        return std::to_string(path.section) + "." + std::to_string(path.row);
    }

    std::vector<std::vector<CGFloat>> heights;
    NSInteger missingSections = 0;
    NSInteger missingRows = 0;
    std::optional<std::string> identifier = "Row";
    std::function<void(UITableView&)> inHeight;
    std::function<void(UITableView&)> inCell;
    std::function<std::shared_ptr<UITableViewCell>(const NSIndexPath&)> answer;
    std::vector<std::string> asked;
    int made = 0;
};

class UITableViewTest : public testing::Test {
protected:
    // A table of 320 by 100 points over those rows, laid out.
    void show(std::vector<CGFloat> heights) {
        rows->heights = {std::move(heights)};
        table->setDelegate(rows);
        table->setDataSource(rows);
        table->reloadData();
        table->layoutIfNeeded();
    }

    void scrollTo(CGFloat y) {
        table->setContentOffset({0, y});
        table->layoutIfNeeded();
    }

    // "row:tag" of each visible cell.
    std::string shown() const {
        std::string text;
        for (const auto& cell : table->visibleCells()) {
            text += Rows::name(*table->indexPathForCell(*cell)) + ":" +
                    std::to_string(cell->tag()) + " ";
        }
        return text;
    }

    bool cellsAreTheSubviews() const {
        const auto cells = table->visibleCells();
        return std::equal(cells.begin(), cells.end(), table->subviews().begin(),
                          table->subviews().end());
    }

    std::shared_ptr<Rows> rows = std::make_shared<Rows>();
    std::shared_ptr<UITableView> table =
        std::make_shared<UITableView>(CGRectMake(0, 0, 320, 100), UITableViewStyle::plain);
};

std::vector<CGFloat> equalRows(std::size_t count, CGFloat height) {
    return std::vector<CGFloat>(count, height);
}

TEST_F(UITableViewTest, StartsAsThePlatformDoes) {
    EXPECT_EQ(table->className(), "UITableView");
    EXPECT_EQ(table->style(), UITableViewStyle::plain);
    EXPECT_EQ(table->separatorStyle(), UITableViewCellSeparatorStyle::singleLine);
    EXPECT_EQ(table->separatorColor(), (UIColor{200.0 / 255, 199.0 / 255, 204.0 / 255, 1}));
    EXPECT_EQ(table->separatorInset(), (UIEdgeInsets{0, 15, 0, 0}));
    EXPECT_EQ(table->rowHeight(), 44);
    EXPECT_EQ(table->numberOfSections(), 0);
    EXPECT_TRUE(table->isScrollEnabled());
    table->layoutIfNeeded();
    table->reloadData();
    EXPECT_TRUE(table->visibleCells().empty());
    EXPECT_EQ(table->dequeueReusableCellWithIdentifier("Row"), nullptr);
}

TEST_F(UITableViewTest, QueriesInThePlatformsOrder) {
    rows->heights = {{40, 50}, {}, {60, 70}};
    table->setDelegate(rows);
    table->setDataSource(rows);
    table->reloadData();
    EXPECT_EQ(rows->takeAsked(),
              (std::vector<std::string>{"sections", "rows 0", "rows 1", "rows 2", "height 0.0",
                                        "height 0.1", "height 2.0", "height 2.1"}));
    EXPECT_EQ(table->contentSize(), (CGSize{320, 220}));
    EXPECT_TRUE(table->visibleCells().empty());
    table->layoutIfNeeded();
    EXPECT_EQ(rows->takeAsked(), (std::vector<std::string>{"cell 0.0", "cell 0.1", "cell 2.0"}));
    table->layoutIfNeeded();
    EXPECT_TRUE(rows->asked.empty());
    EXPECT_EQ(table->numberOfSections(), 3);
    EXPECT_EQ(table->numberOfRowsInSection(0), 2);
    EXPECT_EQ(table->numberOfRowsInSection(1), 0);
    EXPECT_EQ(table->numberOfRowsInSection(3), 0);
    EXPECT_EQ(table->numberOfRowsInSection(-1), 0);
    EXPECT_EQ(table->rowHeights(), (std::vector<CGFloat>{40, 50, 60, 70}));
    EXPECT_EQ(table->rectForRowAtIndexPath({2, 0}), CGRectMake(0, 90, 320, 60));
    EXPECT_EQ(table->rectForRowAtIndexPath({1, 0}), CGRect{});
    EXPECT_EQ(table->rectForRowAtIndexPath({0, -1}), CGRect{});
    const auto cell = table->cellForRowAtIndexPath({2, 0});
    ASSERT_TRUE(cell);
    EXPECT_EQ(table->indexPathForCell(*cell), (NSIndexPath{2, 0}));
    EXPECT_EQ(table->cellForRowAtIndexPath({2, 1}), nullptr);
    EXPECT_EQ(table->cellForRowAtIndexPath({0, 2}), nullptr);
    EXPECT_EQ(table->indexPathForCell(Cell("Row")), std::nullopt);
}

TEST_F(UITableViewTest, LoadsByItselfAtTheFirstLayout) {
    rows->heights = {{40}};
    table->setDelegate(rows);
    table->setDataSource(rows);
    EXPECT_TRUE(rows->asked.empty());
    table->layoutIfNeeded();
    EXPECT_EQ(rows->takeAsked(),
              (std::vector<std::string>{"sections", "rows 0", "height 0.0", "cell 0.0"}));
}

TEST_F(UITableViewTest, OnlyRowsThatMeetTheBoundsHaveCells) {
    show({50, 50, 50, 50});
    EXPECT_EQ(shown(), "0.0:1 0.1:2 ");
    scrollTo(0.5);
    EXPECT_EQ(shown(), "0.0:1 0.1:2 0.2:3 ");
    EXPECT_TRUE(cellsAreTheSubviews());
    EXPECT_EQ(table->visibleCells()[2]->frame(), CGRectMake(0, 100, 320, 50));
    scrollTo(1000);
    EXPECT_EQ(shown(), "");
    EXPECT_TRUE(table->subviews().empty());
    scrollTo(-60);
    EXPECT_EQ(shown(), "0.0:1 ");
}

TEST_F(UITableViewTest, RowsThatAScrollViewAroundTheTableHidesHaveNoCells) {
    const auto scroller = std::make_shared<UIScrollView>(CGRectMake(0, 0, 320, 100));
    show(std::vector<CGFloat>(10, 40));
    scroller->addSubview(table);
    table->setFrame(CGRectMake(0, 30, 320, 400)); // as high as its rows
    const auto rowsWithCells = [&] {
        scroller->layoutIfNeeded();
        std::vector<NSInteger> shownRows;
        for (const auto& cell : table->visibleCells()) {
            shownRows.push_back(table->indexPathForCell(*cell)->row);
        }
        return shownRows;
    };
    EXPECT_EQ(rowsWithCells(), (std::vector<NSInteger>{0, 1}));
    scroller->setContentOffset({0, 50});
    EXPECT_EQ(rowsWithCells(), (std::vector<NSInteger>{0, 1, 2}));
    scroller->setContentOffset({0, 320});
    EXPECT_EQ(rowsWithCells(), (std::vector<NSInteger>{7, 8, 9}));
    scroller->setFrame(CGRectMake(0, 0, 320, 150));
    scroller->setContentOffset({0, 280});
    EXPECT_EQ(rowsWithCells(), (std::vector<NSInteger>{6, 7, 8, 9}));
    scroller->setContentOffset({0, 1000});
    EXPECT_EQ(rowsWithCells(), (std::vector<NSInteger>{}));
}

TEST_F(UITableViewTest, ARowThatLeavesReleasesItsCell) {
    show(equalRows(10, 50));
    EXPECT_EQ(shown(), "0.0:1 0.1:2 ");
    scrollTo(50);
    EXPECT_EQ(shown(), "0.1:2 0.2:1 ");
    EXPECT_TRUE(cellsAreTheSubviews());
    const auto& reused = dynamic_cast<const Cell&>(*table->visibleCells()[1]);
    EXPECT_EQ(reused.layouts, 2);
    EXPECT_EQ(reused.frame(), CGRectMake(0, 100, 320, 50));
    scrollTo(400);
    EXPECT_EQ(shown(), "0.8:2 0.9:1 ");
    EXPECT_EQ(rows->made, 2);
}

TEST_F(UITableViewTest, AReloadReusesTheOldCellsInTheirOrder) {
    show(equalRows(3, 30));
    const auto first = table->visibleCells()[0];
    table->reloadData();
    EXPECT_TRUE(table->visibleCells().empty());
    table->layoutIfNeeded();
    EXPECT_EQ(shown(), "0.0:1 0.1:2 0.2:3 ");
    EXPECT_EQ(table->visibleCells()[0], first);
    EXPECT_EQ(dynamic_cast<const Cell&>(*first).layouts, 2);
    rows->heights = {{30}};
    table->reloadData();
    table->layoutIfNeeded();
    EXPECT_EQ(shown(), "0.0:1 ");
    EXPECT_TRUE(cellsAreTheSubviews());
    rows->heights = {{}};
    table->reloadData();
    table->layoutIfNeeded();
    EXPECT_TRUE(table->subviews().empty());
    EXPECT_EQ(table->contentSize(), (CGSize{320, 0}));
}

TEST_F(UITableViewTest, CellsWithoutIdentifierAreDropped) {
    rows->identifier.reset();
    show(equalRows(4, 50));
    const std::weak_ptr<UITableViewCell> first = table->visibleCells()[0];
    scrollTo(100);
    EXPECT_TRUE(first.expired());
    EXPECT_EQ(shown(), "0.2:3 0.3:4 ");
}

TEST_F(UITableViewTest, QueuesAreApartByIdentifier) {
    show({50, 50});
    rows->identifier = "Other";
    table->reloadData();
    table->layoutIfNeeded();
    EXPECT_EQ(shown(), "0.0:3 0.1:4 ");
    EXPECT_TRUE(cellsAreTheSubviews());
    EXPECT_EQ(table->dequeueReusableCellWithIdentifier("None"), nullptr);
    ASSERT_TRUE(table->dequeueReusableCellWithIdentifier("Row"));
    ASSERT_TRUE(table->dequeueReusableCellWithIdentifier("Row"));
    EXPECT_EQ(table->dequeueReusableCellWithIdentifier("Row"), nullptr);
}

TEST_F(UITableViewTest, GivesCellsTheirFramesAndTheTablesWidth) {
    show({30.5, 40});
    EXPECT_EQ(table->visibleCells()[0]->frame(), CGRectMake(0, 0, 320, 30.5));
    EXPECT_EQ(table->visibleCells()[0]->contentView()->frame(), CGRectMake(0, 0, 320, 29.5));
    EXPECT_EQ(table->visibleCells()[1]->frame(), CGRectMake(0, 30.5, 320, 40));
    table->setFrame(CGRectMake(0, 0, 200, 100));
    table->layoutIfNeeded();
    EXPECT_EQ(table->contentSize(), (CGSize{200, 70.5}));
    EXPECT_EQ(table->visibleCells()[1]->frame(), CGRectMake(0, 30.5, 200, 40));
    EXPECT_EQ(table->visibleCells()[1]->contentView()->frame(), CGRectMake(0, 0, 200, 39));
}

TEST_F(UITableViewTest, ATallerTableShowsMoreRows) {
    show(equalRows(5, 50));
    rows->takeAsked();
    table->setFrame(CGRectMake(0, 0, 320, 220));
    table->layoutIfNeeded();
    EXPECT_EQ(rows->takeAsked(), (std::vector<std::string>{"cell 0.2", "cell 0.3", "cell 0.4"}));
    table->setFrame(CGRectMake(0, 0, 320, 0));
    table->layoutIfNeeded();
    EXPECT_EQ(shown(), "");
    table->setFrame(CGRectMake(0, 0, 320, -50));
    table->layoutIfNeeded();
    EXPECT_EQ(shown(), "");
}

TEST_F(UITableViewTest, AReloadMovesAnOffsetThatHasBecomeImpossible) {
    show(equalRows(10, 50));
    scrollTo(400);
    rows->heights = {equalRows(4, 50)};
    table->reloadData();
    EXPECT_EQ(table->contentOffset(), (CGPoint{0, 100}));
    rows->heights = {equalRows(1, 50)};
    table->reloadData();
    EXPECT_EQ(table->contentOffset(), (CGPoint{0, 0}));
    table->setContentOffset({0, -20}); // pulled down by a finger
    table->reloadData();
    EXPECT_EQ(table->contentOffset(), (CGPoint{0, -20}));
}

TEST_F(UITableViewTest, GrowingLeavesTheEndInPlace) {
    show(equalRows(4, 50));
    scrollTo(100);
    table->setFrame(CGRectMake(0, 0, 320, 150));
    table->layoutIfNeeded();
    EXPECT_EQ(table->contentOffset(), (CGPoint{0, 50}));
    scrollTo(90); // past the end, as a finger may
    EXPECT_EQ(table->contentOffset(), (CGPoint{0, 90}));
}

TEST_F(UITableViewTest, UnusableHeightsCountAsNone) {
    const double infinity = std::numeric_limits<double>::infinity();
    show({20, -5, std::nan(""), infinity, -infinity, 0, 30});
    EXPECT_EQ(table->rowHeights(), (std::vector<CGFloat>{20, 0, 0, 0, 0, 0, 30}));
    EXPECT_EQ(table->contentSize(), (CGSize{320, 50}));
    EXPECT_EQ(shown(), "0.0:1 0.6:2 ");
    EXPECT_EQ(table->visibleCells()[1]->frame(), CGRectMake(0, 20, 320, 30));
}

TEST_F(UITableViewTest, NegativeCountsAreNone) {
    rows->missingRows = -5;
    show({20, 20});
    EXPECT_EQ(table->numberOfRowsInSection(0), 0);
    rows->missingSections = -5;
    table->reloadData();
    table->layoutIfNeeded();
    EXPECT_EQ(table->numberOfSections(), 0);
    EXPECT_EQ(shown(), "");
}

TEST_F(UITableViewTest, WithoutDelegateRowsHaveTheTablesHeight) {
    rows->heights = {{1, 2}};
    table->setDataSource(rows);
    table->setRowHeight(30);
    table->reloadData();
    EXPECT_EQ(table->rowHeights(), (std::vector<CGFloat>{30, 30}));
}

TEST_F(UITableViewTest, DoesNotChangeWithoutADataSource) {
    show(equalRows(4, 50));
    rows.reset();
    table->reloadData();
    table->layoutIfNeeded();
    EXPECT_EQ(shown(), "0.0:1 0.1:2 ");
    EXPECT_EQ(table->dataSource(), nullptr);
    scrollTo(50);
    EXPECT_EQ(shown(), "0.1:2 ");
}

TEST_F(UITableViewTest, AReloadFromWithinACellRequestStartsOver) {
    bool first = true;
    rows->inCell = [&](UITableView& view) {
        if (std::exchange(first, false)) {
            rows->heights = {{10}};
            view.reloadData();
        }
    };
    show(equalRows(3, 20));
    EXPECT_EQ(rows->takeAsked(), (std::vector<std::string>{
                                     "sections", "rows 0", "height 0.0", "height 0.1", "height 0.2",
                                     "cell 0.0", "sections", "rows 0", "height 0.0", "cell 0.0"}));
    EXPECT_EQ(shown(), "0.0:1 ");
    EXPECT_TRUE(cellsAreTheSubviews());
}

TEST_F(UITableViewTest, AReloadFromWithinAHeightRequestFollows) {
    bool first = true;
    rows->inHeight = [&](UITableView& view) {
        if (std::exchange(first, false)) {
            view.reloadData();
        }
    };
    show({20});
    EXPECT_EQ(rows->takeAsked(),
              (std::vector<std::string>{"sections", "rows 0", "height 0.0", "sections", "rows 0",
                                        "height 0.0", "cell 0.0"}));
}

TEST_F(UITableViewTest, SurvivesADataSourceThatAlwaysReloads) {
    rows->inCell = [](UITableView& view) { view.reloadData(); };
    show(equalRows(3, 20));
    EXPECT_LE(rows->asked.size(), 100U);
    rows->inCell = [](UITableView& view) { view.layoutIfNeeded(); };
    table->reloadData();
    table->layoutIfNeeded();
    EXPECT_EQ(table->visibleCells().size(), 3U);
    EXPECT_TRUE(cellsAreTheSubviews());
}

TEST_F(UITableViewTest, SurvivesOddCells) {
    rows->answer = [](const NSIndexPath&) { return nullptr; };
    show(equalRows(3, 20));
    EXPECT_EQ(shown(), "");
    const auto only = std::make_shared<Cell>("Row");
    rows->answer = [&](const NSIndexPath&) { return only; };
    table->reloadData();
    table->layoutIfNeeded();
    EXPECT_EQ(table->visibleCells().size(), 1U);
    EXPECT_EQ(table->subviews().size(), 1U);
    EXPECT_EQ(table->dequeueReusableCellWithIdentifier("Row"), nullptr);
}

TEST_F(UITableViewTest, ACellThatWasNotDequeuedIsNotReusedTwice) {
    show({50});
    const auto kept = table->visibleCells()[0];
    rows->answer = [&](const NSIndexPath&) { return kept; };
    table->reloadData();
    table->layoutIfNeeded();
    EXPECT_EQ(table->visibleCells()[0], kept);
    EXPECT_EQ(table->dequeueReusableCellWithIdentifier("Row"), nullptr);
}

TEST_F(UITableViewTest, OtherSubviewsStayInFrontOfTheCells) {
    const auto other = std::make_shared<UIView>();
    table->addSubview(other);
    show(equalRows(4, 50));
    scrollTo(100);
    ASSERT_EQ(table->subviews().size(), 3U);
    EXPECT_EQ(table->subviews()[2], other);
}

TEST_F(UITableViewTest, SeparatorsAreOnePixelHigh) {
    memory::FixedScreen screen;
    screen.setScale(2);
    const auto window = std::make_shared<UIWindow>(CGRectMake(0, 0, 320, 480), screen);
    show({50, 50});
    const auto cell = table->visibleCells()[0];
    EXPECT_EQ(cell->separator(),
              (UITableViewCellSeparator{table->separatorColor(), {0, 15, 0, 0}, 1}));
    EXPECT_EQ(cell->contentView()->frame(), CGRectMake(0, 0, 320, 49));
    window->addSubview(table);
    window->layoutIfNeeded();
    EXPECT_EQ(cell->separator()->thickness, 0.5);
    EXPECT_EQ(cell->contentView()->frame(), CGRectMake(0, 0, 320, 49.5));
    table->setSeparatorColor(UIColor::redColor());
    table->setSeparatorInset({0, 1, 0, 2});
    window->layoutIfNeeded();
    EXPECT_EQ(cell->separator(),
              (UITableViewCellSeparator{UIColor::redColor(), {0, 1, 0, 2}, 0.5}));
    table->setSeparatorStyle(UITableViewCellSeparatorStyle::none);
    window->layoutIfNeeded();
    EXPECT_EQ(cell->separator(), std::nullopt);
    EXPECT_EQ(cell->contentView()->frame(), CGRectMake(0, 0, 320, 50));
}

TEST_F(UITableViewTest, EmptyRowsBelowTheLastHaveSeparatorsToo) {
    table->setSeparatorColor(UIColor::redColor());
    table->setRowHeight(30);
    show({25});
    const std::string color = "setFillColor 1 0 0 1";
    memory::RecordingContext context;
    table->drawRect(context);
    EXPECT_EQ(context.operations, (std::vector<std::string>{color, "fillHairline 15 54 305 1",
                                                            color, "fillHairline 15 84 305 1"}));
    context.operations.clear();
    scrollTo(65); // from 65 to 165, past the end
    table->drawRect(context);
    EXPECT_EQ(context.operations, (std::vector<std::string>{color, "fillHairline 15 84 305 1",
                                                            color, "fillHairline 15 114 305 1",
                                                            color, "fillHairline 15 144 305 1"}));
    context.operations.clear();
    table->setSeparatorStyle(UITableViewCellSeparatorStyle::none);
    table->drawRect(context);
    EXPECT_TRUE(context.operations.empty());
}

TEST_F(UITableViewTest, TrailingSeparatorsCanBeLeftOut) {
    table->setPaintsTrailingSeparators(false);
    show({25, 25});
    const auto cells = table->visibleCells();
    ASSERT_EQ(cells.size(), 2U);
    EXPECT_TRUE(cells[0]->separator()->isPainted);
    EXPECT_FALSE(cells[1]->separator()->isPainted);
    EXPECT_EQ(cells[0]->contentView()->frame(), cells[1]->contentView()->frame());
    memory::RecordingContext context;
    table->drawRect(context);
    EXPECT_TRUE(context.operations.empty());
    rows->heights = {{25, 25, 25}};
    table->reloadData();
    table->layoutIfNeeded();
    EXPECT_TRUE(table->visibleCells()[1]->separator()->isPainted);
    EXPECT_FALSE(table->visibleCells()[2]->separator()->isPainted);
}

TEST_F(UITableViewTest, OddRowHeightsGiveNoEmptyRows) {
    show({});
    for (const CGFloat height : {0.0, -5.0, 0.5, std::nan("")}) {
        table->setRowHeight(height);
        memory::RecordingContext context;
        table->drawRect(context);
        EXPECT_TRUE(context.operations.empty()) << height;
    }
}

TEST_F(UITableViewTest, QueriesOnlyVisibleRowsOfTenThousand) {
    show(equalRows(10000, 44));
    EXPECT_EQ(table->contentSize(), (CGSize{320, 440000}));
    rows->takeAsked();
    for (int y = 0; y < 430000; y += 430) {
        scrollTo(y);
        const auto cells = table->visibleCells();
        EXPECT_EQ(table->indexPathForCell(*cells.front())->row, y / 44);
        EXPECT_LE(cells.size(), 4U);
    }
    EXPECT_LE(rows->made, 4);
    EXPECT_LE(rows->asked.size(), 4000U);
}

TEST_F(UITableViewTest, SubclassedCellsOutliveTheTable) {
    show(equalRows(2, 50));
    const auto cell = table->visibleCells()[0];
    table.reset();
    EXPECT_EQ(cell->superview(), nullptr);
}

} // namespace
} // namespace quorvel::platform
