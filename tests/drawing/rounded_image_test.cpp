#include "drawing/rounded_image.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/memory/memory_platform.h"

namespace quorvel {
namespace {

using namespace platform;
using testing::ElementsAre;

TEST(RoundedImage, HasCornersOfTheSquaredFactor) {
    memory::MemoryPlatform memory;
    memory.screen.setScale(2);
    const auto rounded = roundedRectImageFromImage(memory.graphicsContexts, memory.screen,
                                                   memory::makeImage({60, 60}, 2), 3);
    ASSERT_NE(rounded, nullptr);
    EXPECT_EQ(rounded->size(), (CGSize{60, 60}));
    EXPECT_EQ(rounded->scale(), 2);
    const auto* pixels = memory::recordedPixels(*rounded);
    ASSERT_NE(pixels, nullptr);
    EXPECT_FALSE(pixels->opaque);
    // Arcs of 3 in a space scaled by 3: 9 points. The state is restored before the path is closed.
    EXPECT_THAT(pixels->operations,
                ElementsAre("beginPath", "saveGState", "translateCTM 0 0", "scaleCTM 3 3",
                            "moveToPoint 20 10", "addArcToPoint 20 20 10 20 3",
                            "addArcToPoint 0 20 0 10 3", "addArcToPoint 0 0 10 0 3",
                            "addArcToPoint 20 0 20 10 3", "restoreGState", "closePath", "clip",
                            "drawImage 60x60@2 0 0 60 60"));
}

TEST(RoundedImage, TakesTheScreensScaleAndNotThePictures) {
    memory::MemoryPlatform memory;
    memory.screen.setScale(3);
    const auto rounded = roundedRectImageFromImage(memory.graphicsContexts, memory.screen,
                                                   memory::makeImage({29, 15}, 1), 3);
    ASSERT_NE(rounded, nullptr);
    EXPECT_EQ(rounded->size(), (CGSize{29, 15}));
    EXPECT_EQ(rounded->scale(), 3);
}

TEST(RoundedImage, WithTheFactorZeroIsThePictureItself) {
    memory::MemoryPlatform memory;
    const auto picture = memory::makeImage({60, 60});
    EXPECT_EQ(roundedRectImageFromImage(memory.graphicsContexts, memory.screen, picture, 0),
              picture);
    EXPECT_EQ(roundedRectImageFromImage(memory.graphicsContexts, memory.screen, nullptr, 0),
              nullptr);
    EXPECT_EQ(memory.graphicsContexts.contextsMade, 0U);
}

TEST(RoundedImage, IsNoneWithoutAPicture) {
    memory::MemoryPlatform memory;
    EXPECT_EQ(roundedRectImageFromImage(memory.graphicsContexts, memory.screen, nullptr, 3),
              nullptr);
}

TEST(RoundedImage, IsNoneForASizeThatThePlatformCannotHold) {
    memory::MemoryPlatform memory;
    EXPECT_EQ(roundedRectImageFromImage(memory.graphicsContexts, memory.screen,
                                        memory::makeImage({0, 60}), 3),
              nullptr);
    EXPECT_EQ(roundedRectImageFromImage(memory.graphicsContexts, memory.screen,
                                        memory::makeImage({1e9, 60}), 3),
              nullptr);
}

} // namespace
} // namespace quorvel
