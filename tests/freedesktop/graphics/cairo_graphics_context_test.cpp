#include "freedesktop/graphics/cairo_graphics_context.h"

#include <cmath>
#include <limits>

#include "tests/freedesktop/graphics/graphics_testing.h"

namespace quorvel::freedesktop {
namespace {

using platform::CGRectMake;
using platform::GraphicsContext;
using platform::ImageContext;
using platform::UIColor;
using platform::UIEdgeInsets;
using platform::UIFont;
using platform::UIImage;

constexpr std::uint32_t clear = 0;
constexpr std::uint32_t black = 0xFF000000;
constexpr std::uint32_t red = 0xFFFF0000;
constexpr std::uint32_t green = 0xFF00FF00;
constexpr std::uint32_t blue = 0xFF0000FF;
constexpr std::uint32_t white = 0xFFFFFFFF;

void fill(GraphicsContext& context, const UIColor& color, double x, double y, double width,
          double height) {
    context.setFillColor(color);
    context.fillRect(CGRectMake(x, y, width, height));
}

// Four columns of that many pixels each.
std::shared_ptr<const UIImage> stripes(int width, double scale) {
    const auto image = begin(width * 4, 8, 1);
    const UIColor colors[] = {UIColor::redColor(), UIColor::greenColor(), UIColor::blueColor(),
                              UIColor::whiteColor()};
    for (int i = 0; i < 4; ++i)
        fill(image->context(), colors[i], i * width, 0, width, 8);
    SurfaceHandle copy(cairo_surface_reference(pixelsOf(*image->image()).surface()));
    return imageOfPixels(std::move(copy), scale);
}

TEST(CairoGraphicsContext, ADotIsADiscInARing) {
    const auto image = begin(80, 80);
    GraphicsContext& context = image->context();
    context.setLineWidth(2);
    context.setStrokeColor(UIColor::blackColor());
    context.setFillColor(UIColor::redColor());
    context.strokeEllipseInRect(CGRectMake(25, 25, 30, 30));
    context.fillEllipseInRect(CGRectMake(25, 25, 30, 30));
    const auto dot = image->image();
    EXPECT_EQ(pixel(*dot, 40, 40), red);
    EXPECT_EQ(pixel(*dot, 25, 40) | 0x00FF0000, red); // inside, at the edge: all but full
    EXPECT_GE(alphaOf(pixel(*dot, 24, 40)), 240);
    EXPECT_EQ(pixel(*dot, 24, 40) & 0x00FFFFFF, 0u); // the ring
    EXPECT_EQ(pixel(*dot, 23, 40), clear);
    EXPECT_EQ(pixel(*dot, 0, 0), clear);
    EXPECT_EQ(pixel(*dot, 30, 28) & 0xFF, 0u);
}

TEST(CairoGraphicsContext, StrokesAreCentredOnTheLine) {
    const auto image = begin(40, 40);
    image->context().setLineWidth(4);
    image->context().strokeEllipseInRect(CGRectMake(10, 10, 20, 20));
    EXPECT_EQ(pixel(*image, 7, 20), clear);
    EXPECT_GE(alphaOf(pixel(*image, 8, 20)), 240);
    EXPECT_EQ(pixel(*image, 10, 20), black);
    EXPECT_EQ(pixel(*image, 13, 20), clear);
}

TEST(CairoGraphicsContext, TheLineIsOnePointWideAtFirst) {
    const auto image = begin(40, 40);
    image->context().strokeEllipseInRect(CGRectMake(10.5, 10.5, 19, 19));
    EXPECT_GE(alphaOf(pixel(*image, 10, 20)), 240);
    EXPECT_EQ(pixel(*image, 9, 20), clear);
    EXPECT_EQ(pixel(*image, 12, 20), clear);
}

TEST(CairoGraphicsContext, PointsAreScaled) {
    const auto image = begin(10, 10, 2);
    fill(image->context(), UIColor::redColor(), 1, 1, 2, 2);
    EXPECT_EQ(pixel(*image, 1, 2), clear);
    EXPECT_EQ(pixel(*image, 2, 2), red);
    EXPECT_EQ(pixel(*image, 5, 5), red);
    EXPECT_EQ(pixel(*image, 6, 5), clear);
}

TEST(CairoGraphicsContext, TheStateIsSavedAndRestored) {
    const auto image = begin(20, 20);
    GraphicsContext& context = image->context();
    context.setFillColor(UIColor::greenColor());
    context.saveGState();
    context.setFillColor(UIColor::redColor());
    context.translateCTM(10, 0);
    context.scaleCTM(2, 2);
    context.clipToRect(CGRectMake(0, 0, 1, 1));
    context.fillRect(CGRectMake(0, 0, 20, 20));
    context.restoreGState();
    context.fillRect(CGRectMake(0, 10, 20, 2));
    EXPECT_EQ(pixel(*image, 9, 0), clear);
    EXPECT_EQ(pixel(*image, 10, 0), red);
    EXPECT_EQ(pixel(*image, 11, 1), red);
    EXPECT_EQ(pixel(*image, 12, 1), clear);
    EXPECT_EQ(pixel(*image, 0, 10), green);
    EXPECT_EQ(pixel(*image, 19, 11), green);
}

TEST(CairoGraphicsContext, IgnoresARestoreWithoutItsSave) {
    const auto image = begin(4, 4);
    GraphicsContext& context = image->context();
    context.restoreGState();
    context.saveGState();
    context.restoreGState();
    context.restoreGState();
    fill(context, UIColor::redColor(), 0, 0, 4, 4);
    EXPECT_EQ(pixel(*image, 1, 1), red);
}

TEST(CairoGraphicsContext, ThePathIsNoPartOfTheState) {
    const auto image = begin(60, 60);
    GraphicsContext& context = image->context();
    // The outline of a rounded picture, built in a scaled space.
    context.beginPath();
    context.saveGState();
    context.scaleCTM(3, 3);
    context.moveToPoint(20, 10);
    context.addArcToPoint(20, 20, 10, 20, 3);
    context.addArcToPoint(0, 20, 0, 10, 3);
    context.addArcToPoint(0, 0, 10, 0, 3);
    context.addArcToPoint(20, 0, 20, 10, 3);
    context.restoreGState();
    context.closePath();
    context.clip();
    fill(context, UIColor::redColor(), 0, 0, 60, 60);
    EXPECT_EQ(pixel(*image, 30, 30), red);
    EXPECT_EQ(pixel(*image, 30, 0), red);
    EXPECT_EQ(pixel(*image, 0, 30), red);
    // A corner of 9 points: along the diagonal the arc is 9 * (1 - sqrt(1/2)) = 2.64 points away.
    for (const auto& [x, y] :
         {std::pair(0, 0), std::pair(59, 0), std::pair(0, 59), std::pair(59, 59)})
        EXPECT_EQ(pixel(*image, x, y), clear);
    EXPECT_EQ(pixel(*image, 1, 1), clear);
    EXPECT_GT(alphaOf(pixel(*image, 2, 2)), 40);
    EXPECT_LT(alphaOf(pixel(*image, 2, 2)), 255);
    EXPECT_EQ(pixel(*image, 3, 3), red);
    EXPECT_GT(alphaOf(pixel(*image, 9, 0)), 250);
    EXPECT_LT(alphaOf(pixel(*image, 5, 0)), 255);
}

TEST(CairoGraphicsContext, AnArcWithoutRadiusIsACorner) {
    const auto image = begin(10, 10);
    GraphicsContext& context = image->context();
    context.moveToPoint(0, 0);
    context.addArcToPoint(8, 0, 8, 8, 0);
    context.addArcToPoint(8, 8, 0, 8, 0);
    context.addArcToPoint(0, 8, 0, 0, 0);
    context.closePath();
    context.clip();
    fill(context, UIColor::redColor(), 0, 0, 10, 10);
    EXPECT_EQ(pixel(*image, 7, 0), red);
    EXPECT_EQ(pixel(*image, 7, 7), red);
    EXPECT_EQ(pixel(*image, 8, 8), clear);
}

TEST(CairoGraphicsContext, AnEmptyPathClipsNothing) {
    const auto image = begin(10, 10);
    GraphicsContext& context = image->context();
    context.beginPath();
    context.addArcToPoint(1, 1, 2, 2, 3);
    context.closePath();
    context.clip();
    fill(context, UIColor::redColor(), 0, 0, 10, 10);
    EXPECT_EQ(pixel(*image, 5, 5), red);
}

TEST(CairoGraphicsContext, ClipsMeet) {
    const auto image = begin(10, 10);
    GraphicsContext& context = image->context();
    context.clipToRect(CGRectMake(0, 0, 6, 6));
    context.clipToRect(CGRectMake(4, 4, 6, 6));
    fill(context, UIColor::redColor(), 0, 0, 10, 10);
    EXPECT_EQ(pixel(*image, 3, 4), clear);
    EXPECT_EQ(pixel(*image, 4, 4), red);
    EXPECT_EQ(pixel(*image, 5, 5), red);
    EXPECT_EQ(pixel(*image, 6, 5), clear);
    context.clipToRect(CGRectMake(0, 0, 1, 1));
    fill(context, UIColor::greenColor(), 0, 0, 10, 10);
    EXPECT_EQ(pixel(*image, 0, 0), clear);
    EXPECT_EQ(pixel(*image, 4, 4), red);
}

TEST(CairoGraphicsContext, WhatHasNoExtentDoesNotShow) {
    const auto image = begin(10, 10);
    GraphicsContext& context = image->context();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    fill(context, UIColor::redColor(), 5, 5, -3, 2);
    fill(context, UIColor::redColor(), 5, 5, 0, 2);
    fill(context, UIColor::redColor(), nan, 5, 1, 2);
    context.fillEllipseInRect(CGRectMake(0, 0, -4, 4));
    context.strokeEllipseInRect(CGRectMake(0, 0, 4, 0));
    context.saveGState();
    context.scaleCTM(0, 1);
    fill(context, UIColor::redColor(), 0, 0, 10, 10);
    context.restoreGState();
    const auto empty = image->image();
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(pixel(*empty, i % 10, i / 10), clear);
    fill(context, UIColor::greenColor(), -1e12, -1e12, 2e12, 2e12);
    EXPECT_EQ(pixel(*image, 0, 0), green);
    EXPECT_EQ(pixel(*image, 9, 9), green);
}

TEST(CairoGraphicsContext, APictureOfTheSameSizeIsCopied) {
    const auto source = stripes(2, 1);
    const auto image = begin(10, 10);
    image->context().drawImage(*source, CGRectMake(1, 1, 8, 8));
    EXPECT_EQ(pixel(*image, 0, 1), clear);
    EXPECT_EQ(pixel(*image, 1, 1), red);
    EXPECT_EQ(pixel(*image, 2, 8), red);
    EXPECT_EQ(pixel(*image, 3, 1), green);
    EXPECT_EQ(pixel(*image, 8, 8), white);
    EXPECT_EQ(pixel(*image, 9, 8), clear);
}

TEST(CairoGraphicsContext, APictureFillsItsRectangle) {
    const auto source = stripes(4, 1); // 16 x 8
    const auto image = begin(10, 10);
    image->context().drawImage(*source, CGRectMake(0, 0, 4, 2));
    EXPECT_EQ(pixel(*image, 0, 0), red);
    EXPECT_EQ(pixel(*image, 1, 1), green);
    EXPECT_EQ(pixel(*image, 2, 0), blue);
    EXPECT_EQ(pixel(*image, 3, 1), white);
    EXPECT_EQ(pixel(*image, 4, 1), clear);
    EXPECT_EQ(pixel(*image, 3, 2), clear);
    const auto twice = begin(10, 10, 2);
    twice->context().drawImage(*source, CGRectMake(0, 0, 4, 2)); // another size of the same
    EXPECT_EQ(pixel(*twice, 1, 0), red);
    EXPECT_EQ(pixel(*twice, 2, 0), green);
    EXPECT_EQ(pixel(*twice, 7, 3), white);
    EXPECT_EQ(pixel(*twice, 8, 3), clear);
}

TEST(CairoGraphicsContext, ADotIsAveragedWhenItIsShownSmall) {
    const auto source = begin(80, 80);
    fill(source->context(), UIColor::redColor(), 0, 0, 80, 80);
    fill(source->context(), UIColor::blackColor(), 40, 0, 2, 80);
    const auto image = begin(20, 20);
    image->context().drawImage(*source->image(), CGRectMake(0, 0, 20, 20));
    EXPECT_EQ(pixel(*image, 9, 5), red);
    EXPECT_NEAR((pixel(*image, 10, 5) >> 16) & 0xFF, 128, 2); // half of four pixels is black
    EXPECT_EQ(pixel(*image, 11, 5), red);
    EXPECT_EQ(pixel(*image, 0, 0), red); // no fading at the edge
    EXPECT_EQ(pixel(*image, 19, 19), red);
}

TEST(CairoGraphicsContext, PicturesStandOnWholePixels) {
    const auto source = stripes(2, 1);
    const auto image = begin(10, 10);
    image->context().drawImage(*source, CGRectMake(0.3, 0.4, 8, 8));
    EXPECT_EQ(pixel(*image, 0, 0), red);
    EXPECT_EQ(pixel(*image, 2, 0), green);
    EXPECT_EQ(pixel(*image, 8, 0), clear);
}

TEST(CairoGraphicsContext, CapsAreNotStretched) {
    const auto plain = stripes(2, 1); // 8 x 8: red, green, blue, white
    const UIImage capped(std::shared_ptr<const platform::ImagePixels>(plain, plain->pixels()),
                         plain->size(), 1, UIEdgeInsets{3, 2, 4, 2});
    const auto image = begin(40, 20);
    image->context().drawImage(capped, CGRectMake(0, 0, 40, 20));
    EXPECT_EQ(pixel(*image, 1, 10), red);
    EXPECT_EQ(pixel(*image, 2, 10), green);
    EXPECT_EQ(pixel(*image, 11, 0), green);
    EXPECT_EQ(pixel(*image, 29, 19), blue);
    EXPECT_EQ(pixel(*image, 37, 10), blue);
    EXPECT_EQ(pixel(*image, 38, 10), white);
    // Twice the device pixels a point: the caps are as many points.
    const auto twice = begin(40, 20, 2);
    twice->context().drawImage(capped, CGRectMake(0, 0, 40, 20));
    EXPECT_EQ(pixel(*twice, 3, 10), red);
    EXPECT_EQ(pixel(*twice, 4, 10), green);
    EXPECT_EQ(pixel(*twice, 76, 10), white);
}

TEST(CairoGraphicsContext, CapsWithoutRoomShareIt) {
    const auto plain = stripes(2, 1);
    const UIImage capped(std::shared_ptr<const platform::ImagePixels>(plain, plain->pixels()),
                         plain->size(), 1, UIEdgeInsets{0, 4, 0, 4});
    const auto image = begin(8, 8);
    image->context().drawImage(capped, CGRectMake(0, 0, 4, 8));
    EXPECT_EQ(pixel(*image, 0, 0), red);
    EXPECT_EQ(pixel(*image, 1, 0), green);
    EXPECT_EQ(pixel(*image, 2, 0), blue);
    EXPECT_EQ(pixel(*image, 3, 0), white);
    EXPECT_EQ(pixel(*image, 4, 0), clear);
}

TEST(CairoGraphicsContext, ForeignPicturesArePassedOver) {
    const auto image = begin(8, 8);
    image->context().drawImage(UIImage(nullptr, {8, 8}, 1), CGRectMake(0, 0, 8, 8));
    EXPECT_EQ(pixel(*image, 4, 4), clear);
}

TEST(CairoGraphicsContext, TextIsPaintedInItsColour) {
    const auto image = begin(100, 20, 2);
    image->context().drawText("MMMM", UIFont::systemFontOfSize(14), UIColor::redColor(),
                              CGRectMake(0, 0, 100, 20));
    const auto picture = image->image();
    int reds = 0;
    for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 200; ++x) {
            EXPECT_EQ(pixel(*picture, x, y) & 0xFFFF, 0u);
            reds += pixel(*picture, x, y) == red ? 1 : 0;
        }
    }
    EXPECT_GT(reds, 100);
}

TEST(CairoGraphicsContext, AHairlineIsOneRowOfPixelsInsideItsRectangle) {
    for (const double scale : {1.0, 1.25, 1.5, 2.0, 2.75, 3.0}) {
        for (const double bottom : {7.0, 7.25, 7.4, 7.5, 7.6, 7.999999999, 8.000000001}) {
            const auto image = begin(10, 10, scale);
            image->context().setFillColor(UIColor{1, 0, 0, 1});
            image->context().fillHairline(CGRectMake(2, bottom - 1 / scale, 6, 1 / scale));
            const int expected = static_cast<int>(std::floor(bottom * scale + 1e-6)) - 1;
            const int column = static_cast<int>(5 * scale);
            for (int row = 0; row < static_cast<int>(10 * scale); ++row)
                EXPECT_EQ(pixel(*image, column, row), row == expected ? red : clear)
                    << scale << " " << bottom << " " << row;
            EXPECT_EQ(pixel(*image, 0, expected), clear);
        }
    }
}

TEST(CairoGraphicsContext, AHairlineIsClippedAndLeavesTheState) {
    const auto image = begin(10, 10, 2);
    GraphicsContext& context = image->context();
    context.saveGState();
    context.clipToRect(CGRectMake(0, 0, 5, 10));
    context.setFillColor(UIColor::redColor());
    context.fillHairline(CGRectMake(-1e9, 4, 2e9, 0.5));
    context.fillHairline(CGRectMake(0, 20, 10, 0.5));
    context.fillHairline(CGRectMake(0, 4, std::numeric_limits<double>::quiet_NaN(), 0.5));
    context.restoreGState();
    EXPECT_EQ(pixel(*image, 0, 8), red);
    EXPECT_EQ(pixel(*image, 9, 8), red);
    EXPECT_EQ(pixel(*image, 10, 8), clear);
    fill(context, UIColor::greenColor(), 1, 1, 1, 1);
    EXPECT_EQ(pixel(*image, 2, 2), green);
    EXPECT_EQ(pixel(*image, 4, 4), clear);
}

} // namespace
} // namespace quorvel::freedesktop
