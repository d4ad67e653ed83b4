#include "freedesktop/rendering/rough_text_measurer.h"

#include <limits>

#include <gtest/gtest.h>

namespace quorvel::freedesktop {
namespace {

using platform::CGSize;
using platform::UIFont;

TEST(RoughTextMeasurer, MeasuresByTheFontsSizeAlone) {
    RoughTextMeasurer measurer;
    const CGSize size = measurer.sizeWithFont("Lunch", UIFont::systemFontOfSize(16));
    EXPECT_EQ(size.width, 40);
    EXPECT_EQ(size.height, 20);
}

TEST(RoughTextMeasurer, OfNothingIsNothing) {
    RoughTextMeasurer measurer;
    EXPECT_EQ(measurer.sizeWithFont("", UIFont::systemFontOfSize(16)).height, 0);
    for (const double size : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(measurer.sizeWithFont("Lunch", UIFont::systemFontOfSize(size)).width, 0);
    }
}

} // namespace
} // namespace quorvel::freedesktop
