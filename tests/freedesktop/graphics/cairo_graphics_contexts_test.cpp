#include "freedesktop/graphics/cairo_graphics_contexts.h"

#include <limits>

#include "tests/freedesktop/graphics/graphics_testing.h"

namespace quorvel::freedesktop {
namespace {

using platform::CGRectMake;
using platform::CGSize;
using platform::UIColor;

TEST(CairoGraphicsContexts, HasThatManyPixels) {
    const auto image = begin(20, 10, 3)->image();
    EXPECT_EQ(image->size(), (CGSize{20, 10}));
    EXPECT_EQ(image->scale(), 3);
    EXPECT_EQ(pixelsOf(*image).width(), 60);
    EXPECT_EQ(pixelsOf(*image).height(), 30);
    EXPECT_EQ(pixel(*image, 0, 0), 0u);
}

TEST(CairoGraphicsContexts, ScaleZeroIsTheScreens) {
    const auto image = begin(20, 10, 0)->image();
    EXPECT_EQ(image->scale(), 2);
    EXPECT_EQ(pixelsOf(*image).width(), 40);
}

TEST(CairoGraphicsContexts, FractionsAreRoundedUp) {
    EXPECT_EQ(pixelsOf(*begin(10.2, 1.1, 1)->image()).width(), 11);
    EXPECT_EQ(pixelsOf(*begin(10.2, 1.1, 10)->image()).height(), 11);
}

TEST(CairoGraphicsContexts, OpaqueIsBlackAtFirst) {
    EXPECT_EQ(pixel(*begin(2, 2, 1, true), 1, 1), 0xFF000000);
}

TEST(CairoGraphicsContexts, NoPictureOfNoSizeOrTooLarge) {
    EXPECT_EQ(begin(0, 10), nullptr);
    EXPECT_EQ(begin(10, -1), nullptr);
    EXPECT_EQ(begin(10, 10, -1), nullptr);
    EXPECT_EQ(begin(1e9, 10), nullptr);
    EXPECT_EQ(begin(16384, 16384), nullptr);
    EXPECT_EQ(begin(10, std::numeric_limits<double>::infinity()), nullptr);
    EXPECT_EQ(begin(std::numeric_limits<double>::quiet_NaN(), 10), nullptr);
    EXPECT_NE(begin(16384, 1), nullptr);
}

TEST(CairoGraphicsContexts, APictureOnceTakenStaysAsItIs) {
    const auto context = begin(4, 4);
    const auto before = context->image();
    context->context().setFillColor(UIColor::redColor());
    context->context().fillRect(CGRectMake(0, 0, 4, 4));
    EXPECT_EQ(pixel(*before, 1, 1), 0u);
    EXPECT_EQ(pixel(*context->image(), 1, 1), 0xFFFF0000);
}

} // namespace
} // namespace quorvel::freedesktop
