// The touch that no finger made, and the bytes of its record.
#include "hosting/synthetic_touch.h"

#include <gmock/gmock.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/memory/fixed_screen.h"
#include "platform/ui/ui_event.h"
#include "platform/ui/ui_touch.h"
#include "platform/ui/ui_window.h"

namespace quorvel {
namespace {

using namespace platform;
using Quorvel__TouchFix::initWithPoint;
using Quorvel__TouchFix::initWithTouch;
using testing::ElementsAre;

// The words of the record, read as little-endian numbers.
std::vector<std::uint32_t> wordsOf(const UITouchesEvent& event) {
    std::vector<std::uint32_t> words(event.record().size() / 4);
    for (std::size_t i = 0; i < words.size() * 4; ++i) {
        words[i / 4] |= std::to_integer<std::uint32_t>(event.record()[i]) << (i % 4 * 8);
    }
    return words;
}

std::vector<int> bytesOf(const UITouchesEvent& event, std::size_t offset) {
    std::vector<int> bytes;
    for (const std::byte byte : event.record().subspan(offset, 4)) {
        bytes.push_back(std::to_integer<int>(byte));
    }
    return bytes;
}

class SyntheticTouchTest : public testing::Test {
protected:
    SyntheticTouchTest() {
        window->addSubview(view);
        view->addSubview(inner);
    }

    memory::FixedScreen screen;
    std::shared_ptr<UIWindow> window =
        std::make_shared<UIWindow>(CGRectMake(5, 6, 320, 400), screen);
    std::shared_ptr<UIView> view = std::make_shared<UIView>(CGRectMake(10, 20, 300, 70));
    std::shared_ptr<UIView> inner = std::make_shared<UIView>(CGRectMake(0, 0, 50, 50));
};

TEST_F(SyntheticTouchTest, ComesDownOnTheDeepestViewThere) {
    const auto touch = initWithPoint({12, 25}, *view, NSDate{123.5});
    EXPECT_EQ(touch->view(), inner);
    EXPECT_EQ(touch->window(), window);
    EXPECT_EQ(touch->tapCount(), 1);
    EXPECT_EQ(touch->phase(), UITouchPhase::began);
    EXPECT_EQ(static_cast<int>(touch->phase()), 0);
    EXPECT_EQ(touch->timestamp(), 123.5);
    EXPECT_EQ(touch->fields().touchFlags, 3U);
    EXPECT_EQ(touch->fields().locationInWindow, (CGPoint{12, 25}));
    EXPECT_EQ(touch->fields().previousLocationInWindow, (CGPoint{12, 25}));

    EXPECT_EQ(initWithPoint({100, 25}, *inner, {})->view(), view); // not the given one
    EXPECT_EQ(initWithPoint({1, 1}, *view, {})->view(), window);
    EXPECT_EQ(initWithPoint({-1, 25}, *view, {})->view(), nullptr);
    EXPECT_EQ(initWithPoint({-1, 25}, *view, {})->window(), window);
}

TEST_F(SyntheticTouchTest, TouchesNothingOutsideAWindow) {
    view->removeFromSuperview();
    const auto touch = initWithPoint({12, 25}, *view, {});
    EXPECT_EQ(touch->view(), nullptr);
    EXPECT_EQ(touch->window(), nullptr);
    EXPECT_EQ(initWithTouch(touch)->record().size(), 128U);
}

TEST_F(SyntheticTouchTest, MakesAnEventOfTheTouchAlone) {
    const auto touch = initWithPoint({12, 25}, *view, {});
    const auto event = initWithTouch(touch);
    EXPECT_THAT(event->allTouches(), ElementsAre(touch));
}

TEST_F(SyntheticTouchTest, WritesTheRecord) {
    const auto touch = initWithPoint({12.5, 25}, *view, {});
    const std::vector<std::uint32_t> words = wordsOf(*initWithTouch(touch));
    ASSERT_EQ(words.size(), 32U);
    std::vector<std::uint32_t> expected(32);
    expected[1] = 0x03010180;
    expected[2] = 3001;
    expected[4] = expected[6] = expected[27] = 0x41480000; // 12.5
    expected[5] = expected[7] = expected[28] = 0x41C80000; // 25
    expected[25] = expected[26] = 0x3F800000;              // 1
    EXPECT_EQ(words, expected);

    touch->setPhase(UITouchPhase::ended);
    expected[1] = 0x01010180;
    EXPECT_EQ(wordsOf(*initWithTouch(touch)), expected);
}

TEST_F(SyntheticTouchTest, MarksOnlyTheEndedTouch) {
    const auto touch = initWithPoint({12, 25}, *view, {});
    for (const UITouchPhase phase : {UITouchPhase::began, UITouchPhase::moved,
                                     UITouchPhase::stationary, UITouchPhase::cancelled}) {
        touch->setPhase(phase);
        EXPECT_EQ(wordsOf(*initWithTouch(touch))[1], 0x03010180U);
    }
}

TEST_F(SyntheticTouchTest, WritesTheSmallestByteFirst) {
    const auto touch = initWithPoint({-2, 25}, *view, {});
    const auto event = initWithTouch(touch);
    EXPECT_THAT(bytesOf(*event, 0), ElementsAre(0, 0, 0, 0));
    EXPECT_THAT(bytesOf(*event, 4), ElementsAre(0x80, 0x01, 0x01, 0x03));
    EXPECT_THAT(bytesOf(*event, 8), ElementsAre(0xB9, 0x0B, 0x00, 0x00));
    EXPECT_THAT(bytesOf(*event, 16), ElementsAre(0x00, 0x00, 0x00, 0xC0));  // -2
    EXPECT_THAT(bytesOf(*event, 100), ElementsAre(0x00, 0x00, 0x80, 0x3F)); // 1
    EXPECT_THAT(bytesOf(*event, 112), ElementsAre(0x00, 0x00, 0xC8, 0x41)); // 25
}

} // namespace
} // namespace quorvel
