#include "shells/headless/color_text.h"

#include <gtest/gtest.h>

#include <limits>

namespace quorvel::headless {
namespace {

using platform::UIColor;

TEST(ColorText, WritesFourBytesInUpperCase) {
    EXPECT_EQ(colorText({1, 0, 0, 1}), "#FF0000FF");
    EXPECT_EQ(colorText({0.2, 0.4, 0.6, 0.5}), "#33669980");
    EXPECT_EQ(colorText(UIColor::clearColor()), "#00000000");
    EXPECT_EQ(colorText(UIColor::grayColor()), "#808080FF");
}

TEST(ColorText, LimitsComponentsToTheirRange) {
    EXPECT_EQ(colorText({-1, 2, 1e300, std::numeric_limits<double>::quiet_NaN()}), "#00FFFF00");
}

TEST(ColorText, ParsesEveryForm) {
    EXPECT_EQ(parseColor("#f80"), (UIColor{1, 136 / 255.0, 0, 1}));
    EXPECT_EQ(parseColor("#336699"), (UIColor{51 / 255.0, 102 / 255.0, 153 / 255.0, 1}));
    EXPECT_EQ(parseColor("#33669980"),
              (UIColor{51 / 255.0, 102 / 255.0, 153 / 255.0, 128 / 255.0}));
    EXPECT_EQ(parseColor("Navy"), (UIColor{0, 0, 128 / 255.0, 1}));
    EXPECT_EQ(parseColor("transparent"), (UIColor{0, 0, 0, 0}));
}

TEST(ColorText, RefusesEverythingElse) {
    for (const char* text : {"", "#", "#1", "#12", "#1234", "#12345", "#1234567", "#123456789",
                             "#ggg", "#12 456", "336699", "navyish", "#+12"}) {
        EXPECT_FALSE(parseColor(text)) << text;
    }
}

} // namespace
} // namespace quorvel::headless
