#include "base/likeliest_name.h"

#include <array>
#include <string>

#include <gtest/gtest.h>

namespace quorvel {
namespace {

constexpr auto names = std::to_array<std::string_view>(
    {"textSize", "textColor", "dateTextSize", "iconFile", "maxHeight", "limitMaxHeight"});

std::optional<std::string_view> likeliest(std::string_view misspelt) {
    return likeliestName(misspelt, names);
}

TEST(LikeliestName, FindsMisspeltNames) {
    EXPECT_EQ(likeliest("textsize"), "textSize");
    EXPECT_EQ(likeliest("txtSize"), "textSize");
    EXPECT_EQ(likeliest("textColour"), "textColor");
    EXPECT_EQ(likeliest("texSzie"), "textSize");
    EXPECT_EQ(likeliest("icnoFile"), "iconFile");
    EXPECT_EQ(likeliest("MAXHEIGHT"), "maxHeight");
    EXPECT_EQ(likeliest("limitHeight"), "limitMaxHeight");
}

TEST(LikeliestName, LeavesOtherTextsAlone) {
    EXPECT_EQ(likeliest(""), std::nullopt);
    EXPECT_EQ(likeliest("fontFamily"), std::nullopt);
    EXPECT_EQ(likeliest("x"), std::nullopt);
    EXPECT_EQ(likeliest(std::string(1'000'000, 't')), std::nullopt);
    EXPECT_EQ(likeliestName("a", {}), std::nullopt);
}

TEST(LikeliestName, PrefersTheNearestThenTheFirst) {
    constexpr auto similar = std::to_array<std::string_view>({"work", "fork", "form"});
    EXPECT_EQ(likeliestName("form", similar), "form");
    EXPECT_EQ(likeliestName("ork", similar), "work");
}

} // namespace
} // namespace quorvel
