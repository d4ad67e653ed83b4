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
    EXPECT_EQ(imageRect(Mode::scaleAspectFit, size, bounds), CGRectMake(10, 32.5, 100, 25));
}

TEST(UIImageViewTest, FitsADotIntoAnIcon) {
    EXPECT_EQ(imageRect(Mode::scaleAspectFit, {80, 80}, CGRectMake(0, 0, 20, 20)),
              CGRectMake(0, 0, 20, 20));
    EXPECT_EQ(imageRect(Mode::scaleAspectFit, {0, 80}, CGRectMake(0, 0, 20, 20)).size, CGSize{});
}

TEST(UIImageViewTest, NamesItsModes) {
    EXPECT_EQ(contentModeName(Mode::scaleToFill), "scaleToFill");
    EXPECT_EQ(contentModeName(Mode::scaleAspectFit), "scaleAspectFit");
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
