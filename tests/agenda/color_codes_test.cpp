#include "agenda/color_codes.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>

namespace quorvel {
namespace {

using platform::UIColor;

TEST(ColorCodes, NameTenColours) {
    const std::array<UIColor, 10> colors{UIColor{1, 0, 0, 1},       UIColor{0, 0, 0, 1},
                                         UIColor{0.5, 0.5, 0.5, 1}, UIColor{1, 1, 1, 1},
                                         UIColor{0, 1, 0, 1},       UIColor{0, 0, 1, 1},
                                         UIColor{1, 1, 0, 1},       UIColor{1, 0.5, 0, 1},
                                         UIColor{0.5, 0, 0.5, 1},   UIColor{0.6, 0.4, 0.2, 1}};
    for (std::size_t code = 0; code < colors.size(); ++code) {
        EXPECT_EQ(colorForCode(static_cast<std::int64_t>(code)), colors[code]) << code;
    }
}

TEST(ColorCodes, AreWhiteForEveryOtherNumber) {
    for (const std::int64_t code :
         {std::int64_t{-1}, std::int64_t{10}, std::int64_t{999}, std::int64_t{1} << 32,
          std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()}) {
        EXPECT_EQ(colorForCode(code), UIColor::whiteColor()) << code;
    }
}

} // namespace
} // namespace quorvel
