#include "drawing/colored_dot.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/memory/memory_platform.h"

namespace quorvel {
namespace {

using namespace platform;
using testing::ElementsAre;

constexpr UIColor teal{0, 0.5, 0.75, 1};

TEST(ColoredDot, IsADiscWithARingOnACanvasOfFixedSize) {
    memory::MemoryPlatform memory;
    const auto dot = drawColoredDot(memory.graphicsContexts, teal, 30);
    ASSERT_NE(dot, nullptr);
    EXPECT_EQ(dot->size(), (CGSize{80, 80}));
    EXPECT_EQ(dot->scale(), 1);
    const auto* pixels = memory::recordedPixels(*dot);
    ASSERT_NE(pixels, nullptr);
    EXPECT_FALSE(pixels->opaque);
    // The ring is drawn first, so that the disc covers its inner half.
    EXPECT_THAT(pixels->operations,
                ElementsAre("setLineWidth 2", "setStrokeColor 0 0 0 1", "setFillColor 0 0.5 0.75 1",
                            "strokeEllipseInRect 25 25 30 30", "fillEllipseInRect 25 25 30 30"));
}

TEST(ColoredDot, TheLargeOneFillsTheSquareFrom15To65) {
    memory::MemoryPlatform memory;
    const auto dot = drawColoredDot(memory.graphicsContexts, teal, 50);
    ASSERT_NE(dot, nullptr);
    EXPECT_EQ(dot->size(), (CGSize{80, 80}));
    EXPECT_THAT(memory::recordedPixels(*dot)->operations,
                ElementsAre("setLineWidth 2", "setStrokeColor 0 0 0 1", "setFillColor 0 0.5 0.75 1",
                            "strokeEllipseInRect 15 15 50 50", "fillEllipseInRect 15 15 50 50"));
}

TEST(ColoredDot, HasTheSameScaleOnASharpScreen) {
    memory::MemoryPlatform memory;
    memory.screen.setScale(3);
    EXPECT_EQ(drawColoredDot(memory.graphicsContexts, teal, 30)->scale(), 1);
}

TEST(ColoredDot, WithoutAColourIsTheRingAlone) {
    memory::MemoryPlatform memory;
    const auto dot = drawColoredDot(memory.graphicsContexts, std::nullopt, 30);
    ASSERT_NE(dot, nullptr);
    EXPECT_THAT(
        memory::recordedPixels(*dot)->operations,
        ElementsAre("setLineWidth 2", "setStrokeColor 0 0 0 1", "strokeEllipseInRect 25 25 30 30"));
}

TEST(ColoredDot, IsDrawnAnewEveryTime) {
    memory::MemoryPlatform memory;
    const auto first = drawColoredDot(memory.graphicsContexts, teal, 30);
    const auto second = drawColoredDot(memory.graphicsContexts, teal, 30);
    EXPECT_NE(first, second);
    EXPECT_EQ(memory.graphicsContexts.contextsMade, 2U);
}

TEST(ColoredDot, IsNoneWhereThePlatformGivesNoContext) {
    memory::MemoryPlatform memory;
    memory.graphicsContexts.largestSideInPixels = 10;
    EXPECT_EQ(drawColoredDot(memory.graphicsContexts, teal, 30), nullptr);
}

} // namespace
} // namespace quorvel
