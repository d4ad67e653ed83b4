#include "platform/ui/ui_image_view.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_graphics_contexts.h"
#include "platform/memory/recording_context.h"

namespace quorvel::platform {
namespace {

using Mode = UIViewContentMode;

TEST(UIImageViewTest, PlacesThePictureByItsMode) {
    const CGRect bounds = CGRectMake(10, 20, 100, 50);
    const CGSize size = {40, 10};
    EXPECT_EQ(imageRect(Mode::scaleToFill, size, bounds), bounds);
    EXPECT_EQ(imageRect(Mode::redraw, size, bounds), bounds);
    EXPECT_EQ(imageRect(Mode::scaleAspectFit, size, bounds), CGRectMake(10, 32.5, 100, 25));
    EXPECT_EQ(imageRect(Mode::scaleAspectFill, size, bounds), CGRectMake(-40, 20, 200, 50));
    EXPECT_EQ(imageRect(Mode::center, size, bounds), CGRectMake(40, 40, 40, 10));
    EXPECT_EQ(imageRect(Mode::top, size, bounds), CGRectMake(40, 20, 40, 10));
    EXPECT_EQ(imageRect(Mode::bottom, size, bounds), CGRectMake(40, 60, 40, 10));
    EXPECT_EQ(imageRect(Mode::left, size, bounds), CGRectMake(10, 40, 40, 10));
    EXPECT_EQ(imageRect(Mode::right, size, bounds), CGRectMake(70, 40, 40, 10));
    EXPECT_EQ(imageRect(Mode::topLeft, size, bounds), CGRectMake(10, 20, 40, 10));
    EXPECT_EQ(imageRect(Mode::topRight, size, bounds), CGRectMake(70, 20, 40, 10));
    EXPECT_EQ(imageRect(Mode::bottomLeft, size, bounds), CGRectMake(10, 60, 40, 10));
    EXPECT_EQ(imageRect(Mode::bottomRight, size, bounds), CGRectMake(70, 60, 40, 10));
}

TEST(UIImageViewTest, FitsADotIntoAnIcon) {
    EXPECT_EQ(imageRect(Mode::scaleAspectFit, {80, 80}, CGRectMake(0, 0, 20, 20)),
              CGRectMake(0, 0, 20, 20));
    EXPECT_EQ(imageRect(Mode::scaleAspectFit, {0, 80}, CGRectMake(0, 0, 20, 20)).size, CGSize{});
}

TEST(UIImageViewTest, NamesItsModes) {
    EXPECT_EQ(contentModeName(Mode::scaleToFill), "scaleToFill");
    EXPECT_EQ(contentModeName(Mode::scaleAspectFit), "scaleAspectFit");
    EXPECT_EQ(contentModeName(Mode::scaleAspectFill), "scaleAspectFill");
    EXPECT_EQ(contentModeName(Mode::redraw), "redraw");
    EXPECT_EQ(contentModeName(Mode::center), "center");
    EXPECT_EQ(contentModeName(Mode::top), "top");
    EXPECT_EQ(contentModeName(Mode::bottom), "bottom");
    EXPECT_EQ(contentModeName(Mode::left), "left");
    EXPECT_EQ(contentModeName(Mode::right), "right");
    EXPECT_EQ(contentModeName(Mode::topLeft), "topLeft");
    EXPECT_EQ(contentModeName(Mode::topRight), "topRight");
    EXPECT_EQ(contentModeName(Mode::bottomLeft), "bottomLeft");
    EXPECT_EQ(contentModeName(Mode::bottomRight), "bottomRight");
}

TEST(UIImageViewTest, PaintsItsPicture) {
    UIImageView view(CGRectMake(13, 10, 20, 20));
    EXPECT_FALSE(view.isUserInteractionEnabled());
    EXPECT_EQ(view.contentMode(), Mode::scaleToFill);
    EXPECT_EQ(view.className(), "UIImageView");
    memory::RecordingContext context;
    view.drawRect(context);
    EXPECT_TRUE(context.operations.empty());
    view.setContentMode(Mode::scaleAspectFit);
    view.setImage(memory::makeImage({60, 30}, 2));
    view.drawRect(context);
    EXPECT_EQ(context.operations, std::vector<std::string>{"drawImage 60x30@2 0 5 20 10"});
    view.setImage(nullptr);
    view.drawRect(context);
    EXPECT_EQ(context.operations.size(), 1U);
}

} // namespace
} // namespace quorvel::platform
