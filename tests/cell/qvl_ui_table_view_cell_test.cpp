#include "cell/qvl_ui_table_view_cell.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/memory/fixed_width_text_measurer.h"
#include "platform/ui/ui_image_view.h"
#include "platform/ui/ui_label.h"
#include "platform/ui/ui_scroll_view.h"
#include "platform/ui/ui_table_view.h"
#include "tests/cell/row_settings_reset.h"

namespace quorvel {
namespace {

using namespace platform;
using testing::ElementsAre;

constexpr UIColor teal{0, 0.5, 0.75, 1};

class CellTest : public testing::Test {
protected:
    CellTest() {
        resetRowSettings();
        settings::textSize = 14;
        settings::subtitleTextSize = 12;
        settings::dateTextSize = 10;
        settings::textColor = UIColor::greenColor();
        settings::subtitleTextColor = UIColor::grayColor();
        settings::dateTextColor = UIColor::blueColor();

        cell = std::make_shared<QVL_UITableViewCell>(measurer, UITableViewCellStyle::defaultStyle,
                                                     "Dynamic Cell");
        cell->setScrollView(std::make_shared<UIScrollView>());
        cell->contentView()->addSubview(cell->scrollView());
        cell->setPrimaryLabel(addLabel());
        cell->setSubtitleLabel(addLabel());
        cell->setRelevanceDateLabel(addLabel());
    }
    ~CellTest() override { resetRowSettings(); }

    std::shared_ptr<UILabel> addLabel() {
        auto label = std::make_shared<UILabel>();
        cell->scrollView()->addSubview(label);
        return label;
    }

    void layOut() {
        cell->setNeedsLayout();
        cell->layoutIfNeeded();
    }

    memory::FixedWidthTextMeasurer measurer;
    std::shared_ptr<QVL_UITableViewCell> cell;
};

TEST_F(CellTest, MakesTheLayerAsLargeAsItsContent) {
    cell->setFrame(CGRectMake(0, 100, 300, 61));
    layOut();
    EXPECT_EQ(cell->scrollView()->frame(), CGRectMake(0, 0, 300, 61));
    EXPECT_EQ(cell->scrollView()->contentSize(), (CGSize{300, 61}));
}

TEST_F(CellTest, AppliesSizesAndColours) {
    cell->primaryLabel()->setText("Lunch");
    layOut();
    EXPECT_EQ(cell->primaryLabel()->font().pointSize, 14);
    EXPECT_EQ(cell->primaryLabel()->textColor(), UIColor::greenColor());
    EXPECT_EQ(cell->subtitleLabel()->font().pointSize, 12);
    EXPECT_EQ(cell->subtitleLabel()->textColor(), UIColor::grayColor());
    EXPECT_EQ(cell->relevanceDateLabel()->font().pointSize, 10);
    EXPECT_EQ(cell->relevanceDateLabel()->textColor(), UIColor::blueColor());
}

TEST_F(CellTest, LeavesTheLabelsFaceUnchanged) {
    cell->primaryLabel()->setFont({"Serif", 40});
    layOut();
    EXPECT_EQ(cell->primaryLabel()->font(), (UIFont{"Serif", 14}));
}

TEST_F(CellTest, GivesTheTitleAsAttributedTextInItsColour) {
    cell->primaryLabel()->setText("Lunch");
    layOut();
    EXPECT_EQ(cell->primaryLabel()->attributedText(),
              (NSAttributedString{"Lunch", UIColor::greenColor()}));
    EXPECT_EQ(cell->primaryLabel()->text(), "Lunch");
}

TEST_F(CellTest, LeavesAMissingTitleMissing) {
    layOut();
    EXPECT_EQ(cell->primaryLabel()->text(), std::nullopt);
    EXPECT_EQ(cell->primaryLabel()->attributedText(), std::nullopt);
    EXPECT_EQ(cell->primaryLabel()->frame(), CGRectMake(47, 13, 0, 0));
}

TEST_F(CellTest, ColoursTheTitleLikeItsCalendar) {
    settings::titleColorSameAsCalendarColor = true;
    cell->primaryLabel()->setText("Lunch");
    cell->setCalendarColor(teal);
    layOut();
    EXPECT_EQ(cell->primaryLabel()->textColor(), teal);
    EXPECT_EQ(cell->primaryLabel()->attributedText()->foregroundColor, teal);

    cell->setCalendarColor(UIColor::redColor());
    layOut();
    EXPECT_EQ(cell->primaryLabel()->attributedText(),
              (NSAttributedString{"Lunch", UIColor::redColor()}));
}

TEST_F(CellTest, TakesBlackForColoursThatAreNotSet) {
    settings::textColor.reset();
    settings::dateTextColor.reset();
    layOut();
    EXPECT_EQ(cell->primaryLabel()->textColor(), UIColor::blackColor());
    EXPECT_EQ(cell->relevanceDateLabel()->textColor(), UIColor::blackColor());
}

TEST_F(CellTest, MeasuresEachTextInItsNewFont) {
    cell->primaryLabel()->setText("Lunch");                 // 5 * 7, 17.5 high
    cell->relevanceDateLabel()->setText("10:00");           // 5 * 5, 12.5 high
    cell->subtitleLabel()->setText("Room 4, second floor"); // 20 * 6, 15 high
    layOut();
    EXPECT_EQ(cell->primaryLabel()->frame(), CGRectMake(47, 13, 35, 17.5));
    EXPECT_EQ(cell->relevanceDateLabel()->frame(), CGRectMake(92, 18, 25, 12.5));
    EXPECT_EQ(cell->subtitleLabel()->frame(), CGRectMake(47, 30.5, 120, 15));
}

TEST_F(CellTest, PutsTheDateAtTheRightEdge) {
    settings::rightAlignedDate = true;
    cell->relevanceDateLabel()->setText("10:00");
    layOut();
    EXPECT_EQ(cell->relevanceDateLabel()->frame().origin.x, 285); // 320 - 25 - 10
}

TEST_F(CellTest, PlacesALocationWithoutTextUnderTheTitle) {
    cell->primaryLabel()->setText("Lunch");
    layOut();
    EXPECT_EQ(cell->subtitleLabel()->frame(), CGRectMake(47, 30.5, 0, 0));
}

TEST_F(CellTest, RecordsItsHeights) {
    cell->primaryLabel()->setText("Lunch");
    cell->subtitleLabel()->setText("Room 4");
    layOut();
    EXPECT_EQ(settings::cellWithoutSubtitleHeight, 43.5);
    EXPECT_EQ(settings::cellWithSubtitleHeight, 58.5);
}

TEST_F(CellTest, FollowsTheSettingsAtTheNextLayout) {
    cell->primaryLabel()->setText("Lunch");
    layOut();
    settings::textSize = 20;
    settings::textColor = UIColor::redColor();
    layOut();
    EXPECT_EQ(cell->primaryLabel()->frame(), CGRectMake(47, 13, 50, 25));
    EXPECT_EQ(cell->primaryLabel()->textColor(), UIColor::redColor());
}

TEST_F(CellTest, MakesTheReservedLabelClear) {
    EXPECT_EQ(cell->secondaryLabel(), nullptr);
    cell->setSecondaryLabel(std::make_shared<UILabel>());
    layOut();
    EXPECT_EQ(cell->secondaryLabel()->textColor(), UIColor::clearColor());
}

TEST_F(CellTest, NeverMovesTheIcon) {
    cell->setIconView(std::make_shared<UIImageView>(CGRectMake(13, 10, 20, 20)));
    cell->scrollView()->addSubview(cell->iconView());
    cell->setFrame(CGRectMake(0, 0, 500, 90));
    layOut();
    EXPECT_EQ(cell->iconView()->frame(), CGRectMake(13, 10, 20, 20));
}

TEST_F(CellTest, LaysOutWithoutAnySubviews) {
    const auto bare = std::make_shared<QVL_UITableViewCell>(
        measurer, UITableViewCellStyle::defaultStyle, std::nullopt);
    bare->layoutIfNeeded();
    EXPECT_EQ(settings::cellWithoutSubtitleHeight, 26);
    EXPECT_EQ(settings::cellWithSubtitleHeight, 26);
}

TEST_F(CellTest, FindsTheNearestTableAboveIt) {
    EXPECT_EQ(cell->parentTableView(), nullptr);
    const auto outer = std::make_shared<UITableView>(CGRect{}, UITableViewStyle::plain);
    const auto inner = std::make_shared<UITableView>(CGRect{}, UITableViewStyle::plain);
    const auto between = std::make_shared<UIView>();
    outer->addSubview(inner);
    inner->addSubview(between);
    between->addSubview(cell);
    EXPECT_EQ(cell->parentTableView(), inner.get());
    inner->removeFromSuperview();
    cell->removeFromSuperview();
    outer->addSubview(cell);
    EXPECT_EQ(cell->parentTableView(), outer.get());
}

TEST_F(CellTest, NamesItsValues) {
    EXPECT_EQ(cell->className(), "QVL_UITableViewCell");
    EXPECT_EQ(cell->reuseIdentifier(), "Dynamic Cell");
    EXPECT_THAT(cell->keys(),
                ElementsAre("iconView", "secondaryLabel", "subtitleLabel", "primaryLabel",
                            "relevanceDateLabel", "scrollView", "calendarColor"));
    cell->setCalendarColor(teal);
    EXPECT_EQ(std::get<UIColor>(cell->valueForKey("calendarColor")), teal);
    const auto view = [this](std::string_view key) {
        return std::get<std::shared_ptr<UIView>>(cell->valueForKey(key));
    };
    EXPECT_EQ(view("scrollView"), cell->scrollView());
    EXPECT_EQ(view("primaryLabel"), cell->primaryLabel());
    EXPECT_EQ(view("subtitleLabel"), cell->subtitleLabel());
    EXPECT_EQ(view("relevanceDateLabel"), cell->relevanceDateLabel());
    cell->setIconView(std::make_shared<UIImageView>());
    EXPECT_EQ(view("iconView"), cell->iconView());
    EXPECT_EQ(cell->valueForKey("secondaryLabel").index(), 0U);
    EXPECT_EQ(cell->valueForKey("frame").index(), 0U);
}

} // namespace
} // namespace quorvel
