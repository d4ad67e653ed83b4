#include "platform/ui/ui_label.h"

#include <gtest/gtest.h>

#include "platform/memory/fixed_screen.h"
#include "platform/memory/recording_context.h"
#include "platform/ui/ui_window.h"

namespace quorvel::platform {
namespace {

std::vector<std::string> painted(UILabel& label) {
    memory::RecordingContext context;
    label.drawRect(context);
    return context.operations;
}

TEST(UILabelTest, StartsAsThePlatformDoes) {
    const UILabel label;
    EXPECT_EQ(label.text(), std::nullopt);
    EXPECT_EQ(label.attributedText(), std::nullopt);
    EXPECT_EQ(label.font(), UIFont::systemFontOfSize(17));
    EXPECT_EQ(label.textColor(), UIColor::blackColor());
    EXPECT_FALSE(label.isUserInteractionEnabled());
    EXPECT_EQ(label.className(), "UILabel");
}

TEST(UILabelTest, AnAttributedTextGivesTextAndColour) {
    UILabel label;
    label.setAttributedText(NSAttributedString{"Lunch", UIColor::redColor()});
    EXPECT_EQ(label.text(), "Lunch");
    EXPECT_EQ(label.textColor(), UIColor::redColor());
    label.setText("Dinner");
    EXPECT_EQ(label.attributedText(), std::nullopt);
    EXPECT_EQ(label.text(), "Dinner");
    EXPECT_EQ(label.textColor(), UIColor::redColor());
}

TEST(UILabelTest, AnAttributedTextWithoutColourLeavesTheLabels) {
    UILabel label;
    label.setTextColor(UIColor::blueColor());
    label.setAttributedText(NSAttributedString{"a", std::nullopt});
    EXPECT_EQ(label.textColor(), UIColor::blueColor());
    label.setAttributedText(std::nullopt);
    EXPECT_EQ(label.text(), std::nullopt);
}

TEST(UILabelTest, AColourReachesTheWholeAttributedText) {
    UILabel label;
    label.setAttributedText(NSAttributedString{"a", UIColor::redColor()});
    label.setTextColor(UIColor::greenColor());
    EXPECT_EQ(label.attributedText(), (NSAttributedString{"a", UIColor::greenColor()}));
    label.setTextColor(std::nullopt);
    EXPECT_EQ(label.textColor(), UIColor::blackColor());
    EXPECT_EQ(label.attributedText()->foregroundColor, UIColor::blackColor());
}

TEST(UILabelTest, PaintsItsTextInItsBounds) {
    UILabel label(CGRectMake(5, 6, 100, 20));
    EXPECT_TRUE(painted(label).empty());
    label.setText("");
    EXPECT_TRUE(painted(label).empty());
    label.setText("Hi");
    label.setFont(UIFont::systemFontOfSize(12));
    EXPECT_EQ(painted(label), std::vector<std::string>{"drawText \"Hi\" 12 0 0 0 1 0 0 100 20"});
    label.setAttributedText(NSAttributedString{"Ho", UIColor::redColor()});
    EXPECT_EQ(painted(label), std::vector<std::string>{"drawText \"Ho\" 12 1 0 0 1 0 0 100 20"});
}

TEST(UILabelTest, AWindowGivesItsColourToARole) {
    const memory::FixedScreen screen;
    const auto window = std::make_shared<UIWindow>(CGRectMake(0, 0, 100, 100), screen);
    const auto title = std::make_shared<UILabel>(CGRectMake(0, 0, 100, 20));
    window->addSubview(title);
    title->setRole(UILabelRole::title);
    title->setAttributedText(NSAttributedString{"Ho", UIColor::redColor()});
    const std::string own = "drawText \"Ho\" 17 1 0 0 1 0 0 100 20";
    EXPECT_EQ(painted(*title), std::vector<std::string>{own});
    window->setLabelColors({UIColor::greenColor(), UIColor::blueColor(), std::nullopt});
    EXPECT_EQ(painted(*title), std::vector<std::string>{"drawText \"Ho\" 17 0 1 0 1 0 0 100 20"});
    EXPECT_EQ(title->textColor(), UIColor::redColor()) << "only painted so";
    title->setRole(UILabelRole::subtitle);
    EXPECT_EQ(painted(*title), std::vector<std::string>{"drawText \"Ho\" 17 0 0 1 1 0 0 100 20"});
    for (const UILabelRole role : {UILabelRole::caption, UILabelRole::other}) {
        title->setRole(role);
        EXPECT_EQ(painted(*title), std::vector<std::string>{own});
    }
}

TEST(UILabelTest, PaintsNothingWithoutRoom) {
    UILabel label(CGRectMake(0, 0, -10, 20));
    label.setText("Hi");
    memory::RecordingContext context;
    label.render(context);
    EXPECT_EQ(context.operations, (std::vector<std::string>{"saveGState", "restoreGState"}));
}

} // namespace
} // namespace quorvel::platform
