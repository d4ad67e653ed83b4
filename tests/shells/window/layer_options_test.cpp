#include "shells/window/layer_options.h"

#include <gtest/gtest.h>

namespace quorvel::window {
namespace {

using platform::CGRect;
using platform::CGRectMake;

constexpr platform::CGSize size{300, 200};

// Of an output of 1000 x 800 points, to the right of another one and below a panel.
CGRect frameWith(Edges anchor, Margins margins = {10, 20, 30, 40}) {
    return layerFrame({Layer::top, anchor, margins, {}}, CGRectMake(500, 24, 1000, 800), size);
}

TEST(LayerFrame, IsInTheMiddleWithoutAnAnchor) {
    EXPECT_EQ(frameWith({}), CGRectMake(850, 324, 300, 200));
}

TEST(LayerFrame, LiesAtAnEdgeWithItsMargin) {
    EXPECT_EQ(frameWith({.top = true}), CGRectMake(850, 34, 300, 200));
    EXPECT_EQ(frameWith({.right = true}), CGRectMake(1180, 324, 300, 200));
    EXPECT_EQ(frameWith({.bottom = true}), CGRectMake(850, 594, 300, 200));
    EXPECT_EQ(frameWith({.left = true}), CGRectMake(540, 324, 300, 200));
}

TEST(LayerFrame, LiesInACorner) {
    EXPECT_EQ(frameWith({.top = true, .right = true}), CGRectMake(1180, 34, 300, 200));
    EXPECT_EQ(frameWith({.bottom = true, .left = true}, {}), CGRectMake(500, 624, 300, 200));
}

TEST(LayerFrame, IsStretchedBetweenOppositeEdges) {
    EXPECT_EQ(frameWith({.top = true, .bottom = true, .left = true}),
              CGRectMake(540, 34, 300, 760));
    EXPECT_EQ(frameWith({.top = true, .right = true, .left = true}), CGRectMake(540, 34, 940, 200));
}

TEST(LayerFrame, KeepsALengthWhereTheMarginsLeaveNone) {
    const CGRect frame = frameWith({.right = true, .left = true}, {.right = 9000, .left = 9000});
    EXPECT_EQ(frame.size.width, 1);
}

TEST(HeightBetweenMargins, IsLessTheMarginsOfAnchoredEdges) {
    const auto heightWith = [](Edges anchor, Margins margins) {
        return heightBetweenMargins({Layer::top, anchor, margins, {}}, 800);
    };
    EXPECT_EQ(heightWith({}, {10, 20, 30, 40}), 800);
    EXPECT_EQ(heightWith({.top = true}, {10, 20, 30, 40}), 790);
    EXPECT_EQ(heightWith({.top = true, .bottom = true}, {10, 20, 30, 40}), 760);
    EXPECT_EQ(heightWith({.top = true}, {9000, 0, 0, 0}), 1);
}

} // namespace
} // namespace quorvel::window
