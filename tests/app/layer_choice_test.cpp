#include "app/layer_choice.h"

#include <gtest/gtest.h>

namespace quorvel::app {
namespace {

using window::Edges;
using window::Layer;
using window::LayerOptions;
using window::Margins;

LayerOptions layerWith(const std::string& layer, std::optional<std::string> anchor = {},
                       std::optional<std::string> margin = {}) {
    CommandLine line;
    line.command = Command::show;
    line.layer = layer;
    line.anchor = std::move(anchor);
    line.margin = std::move(margin);
    line.output = "DP-1";
    return layerOf(line).value().value();
}

TEST(LayerChoice, IsAbsentForAWindow) {
    CommandLine line;
    line.command = Command::show;
    EXPECT_FALSE(layerOf(line).value());
    line.command = Command::snapshot;
    line.output = "x.png";
    EXPECT_FALSE(layerOf(line).value());
}

TEST(LayerChoice, NamesFourLayers) {
    EXPECT_EQ(layerWith("background").layer, Layer::background);
    EXPECT_EQ(layerWith("bottom").layer, Layer::bottom);
    EXPECT_EQ(layerWith("top").layer, Layer::top);
    EXPECT_EQ(layerWith("overlay").layer, Layer::overlay);
    EXPECT_EQ(layerWith("overlay").output, "DP-1");
}

TEST(LayerChoice, CollectsEdges) {
    EXPECT_EQ(layerWith("top").anchor, Edges());
    EXPECT_EQ(layerWith("top", "left").anchor, (Edges{.left = true}));
    EXPECT_EQ(layerWith("top", "bottom,top,bottom").anchor, (Edges{.top = true, .bottom = true}));
    EXPECT_EQ(layerWith("top", "right").anchor, (Edges{.right = true}));
}

TEST(LayerChoice, TakesOneMarginOrFour) {
    EXPECT_EQ(layerWith("top").margins, Margins());
    EXPECT_EQ(layerWith("top", {}, "0").margins, Margins());
    EXPECT_EQ(layerWith("top", {}, "7").margins, (Margins{7, 7, 7, 7}));
    EXPECT_EQ(layerWith("top", {}, "1,2,3,10000").margins, (Margins{1, 2, 3, 10000}));
}

} // namespace
} // namespace quorvel::app
