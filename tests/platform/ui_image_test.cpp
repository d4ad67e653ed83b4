#include "platform/ui_image.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_graphics_contexts.h"

namespace quorvel::platform {
namespace {

UIEdgeInsets capsOf(CGSize size, std::int64_t left, std::int64_t top) {
    const auto stretchable = memory::makeImage(size)->stretchableImageWithLeftCapWidth(left, top);
    EXPECT_TRUE(stretchable->capInsets().has_value());
    return stretchable->capInsets().value_or(UIEdgeInsets{-1, -1, -1, -1});
}

constexpr UIEdgeInsets insets(CGFloat top, CGFloat left, CGFloat bottom, CGFloat right) {
    return {top, left, bottom, right};
}

TEST(UIImageTest, StretchesOnePointBetweenTheCaps) {
    EXPECT_EQ(capsOf({300, 100}, 150, 50), insets(50, 150, 49, 149));
    EXPECT_EQ(capsOf({301, 101}, 150, 50), insets(50, 150, 50, 150));
    EXPECT_EQ(capsOf({20, 10}, 4, 9), insets(9, 4, 0, 15));
}

TEST(UIImageTest, StretchesAnAxisWithoutACapAsAWhole) {
    EXPECT_EQ(capsOf({300, 100}, 0, 0), UIEdgeInsets{});
    EXPECT_EQ(capsOf({300, 100}, 150, 0), insets(0, 150, 0, 149));
    EXPECT_EQ(capsOf({300, 100}, 0, 50), insets(50, 0, 49, 0));
}

TEST(UIImageTest, HasNoOppositeCapBelowZero) {
    EXPECT_EQ(capsOf({10, 10.5}, 10, 10), insets(10, 10, 0, 0));
}

TEST(UIImageTest, StretchesTheSamePicture) {
    const auto image = memory::makeImage({30, 20}, 2, insets(1, 2, 3, 4));
    const auto stretchable = image->stretchableImageWithLeftCapWidth(15, 10);
    EXPECT_EQ(stretchable->size(), (CGSize{30, 20}));
    EXPECT_EQ(stretchable->scale(), 2);
    EXPECT_EQ(stretchable->pixels(), image->pixels());
    EXPECT_EQ(stretchable->capInsets(), insets(10, 15, 9, 14));
    EXPECT_EQ(image->capInsets(), insets(1, 2, 3, 4));
}

} // namespace
} // namespace quorvel::platform
