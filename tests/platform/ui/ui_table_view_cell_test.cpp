#include "platform/ui/ui_table_view_cell.h"

#include <gtest/gtest.h>

#include "platform/memory/recording_context.h"

namespace quorvel::platform {
namespace {

TEST(UITableViewCellTest, StartsWithAContentViewOfItsSize) {
    const auto cell = std::make_shared<UITableViewCell>();
    EXPECT_EQ(cell->frame(), CGRectMake(0, 0, 320, 44));
    EXPECT_EQ(cell->contentView()->frame(), CGRectMake(0, 0, 320, 44));
    EXPECT_EQ(cell->subviews(), std::vector<std::shared_ptr<UIView>>{cell->contentView()});
    EXPECT_EQ(cell->contentView()->superview(), cell.get());
    EXPECT_EQ(cell->contentView()->className(), "UIView");
    EXPECT_EQ(cell->reuseIdentifier(), std::nullopt);
    EXPECT_EQ(UITableViewCell(UITableViewCellStyle::defaultStyle, "Row").reuseIdentifier(), "Row");
}

TEST(UITableViewCellTest, TheContentLeavesRoomForTheSeparator) {
    const auto cell = std::make_shared<UITableViewCell>();
    cell->setFrame(CGRectMake(0, 88, 300, 60));
    cell->layoutIfNeeded();
    EXPECT_EQ(cell->contentView()->frame(), CGRectMake(0, 0, 300, 60));
    cell->setSeparator(UITableViewCellSeparator{UIColor::grayColor(), {}, 0.5});
    cell->layoutIfNeeded();
    EXPECT_EQ(cell->contentView()->frame(), CGRectMake(0, 0, 300, 59.5));
    cell->setFrame(CGRectMake(0, 88, 300, 0.25));
    cell->layoutIfNeeded();
    EXPECT_EQ(cell->contentView()->frame(), CGRectMake(0, 0, 300, 0));
    cell->setSeparator(std::nullopt);
    cell->layoutIfNeeded();
    EXPECT_EQ(cell->contentView()->frame(), CGRectMake(0, 0, 300, 0.25));
}

TEST(UITableViewCellTest, PaintsTheSeparatorAboveItsOwnBackground) {
    const auto cell = std::make_shared<UITableViewCell>();
    cell->setBackgroundColor(UIColor::whiteColor());
    cell->setSeparator(UITableViewCellSeparator{UIColor::redColor(), {0, 15, 0, 5}, 0.5});
    cell->layoutIfNeeded();
    memory::RecordingContext context;
    cell->render(context);
    EXPECT_EQ(context.operations,
              (std::vector<std::string>{"saveGState", "setFillColor 1 1 1 1", "fillRect 0 0 320 44",
                                        "setFillColor 1 0 0 1", "fillHairline 15 43.5 300 0.5",
                                        "saveGState", "restoreGState", "restoreGState"}));
}

TEST(UITableViewCellTest, PaintsNoSeparatorWithoutRoom) {
    memory::RecordingContext context;
    drawSeparator(context, {UIColor::redColor(), {0, 15, 0, 0}, 1}, CGRectMake(0, 0, 15, 44));
    EXPECT_TRUE(context.operations.empty());
}

TEST(UITableViewCellTest, ASeparatorThatIsNotPaintedTakesItsPlace) {
    const auto cell = std::make_shared<UITableViewCell>();
    cell->setSeparator(UITableViewCellSeparator{UIColor::redColor(), {}, 0.5, false});
    cell->layoutIfNeeded();
    EXPECT_EQ(cell->contentView()->frame(), CGRectMake(0, 0, 320, 43.5));
    memory::RecordingContext context;
    cell->drawRect(context);
    EXPECT_TRUE(context.operations.empty());
}

} // namespace
} // namespace quorvel::platform
