// A list with a row, a finger that touches them, and a record of the messages of their delegates.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/memory/fixed_screen.h"
#include "platform/ui/ui_scroll_view.h"
#include "platform/ui/ui_window.h"

namespace quorvel::platform {

class RecordingDelegate : public UIScrollViewDelegate {
public:
    int scrolled = 0;
    int begun = 0;
    int stopped = 0;
    std::vector<std::pair<CGPoint, bool>> ends;

    void scrollViewDidScroll(UIScrollView*) override { ++scrolled; }
    void scrollViewWillBeginDragging(UIScrollView*) override { ++begun; }
    void scrollViewDidEndDragging(UIScrollView* view, bool willDecelerate) override {
        ends.emplace_back(view->contentOffset(), willDecelerate);
    }
    void scrollViewDidEndDecelerating(UIScrollView*) override { ++stopped; }
};

// A row that bounces sideways, at the top of a list of 1,000 points, in a window of 320 by 400.
struct FingerStage {
    FingerStage() {
        window->addSubview(list);
        list->setContentSize({320, 1000});
        list->setDelegate(listDelegate);
        list->addSubview(row);
        row->setContentSize({320, 60});
        row->setAlwaysBounceHorizontal(true);
        row->setDelegate(rowDelegate);
    }

    void down(CGFloat x, CGFloat y, double time = 0) { send(UITouchPhase::began, x, y, time); }
    void move(CGFloat x, CGFloat y, double time = 1) { send(UITouchPhase::moved, x, y, time); }
    void up(CGFloat x, CGFloat y, double time = 2) { send(UITouchPhase::ended, x, y, time); }
    void send(UITouchPhase phase, CGFloat x, CGFloat y, double time, std::int64_t finger = 1) {
        window->sendFinger({finger, phase, {x, y}, time});
    }

    // Ten points each hundredth of a second, upwards from y 300: 1,000 points a second.
    void fling(double start = 0) {
        down(50, 300, start);
        for (int i = 1; i <= 10; ++i) {
            move(50, 300 - 10 * i, start + 0.01 * i);
        }
        up(50, 200, start + 0.1);
    }

    memory::FixedScreen screen;
    std::shared_ptr<UIWindow> window =
        std::make_shared<UIWindow>(CGRectMake(0, 0, 320, 400), screen);
    std::shared_ptr<UIScrollView> list = std::make_shared<UIScrollView>(CGRectMake(0, 0, 320, 400));
    std::shared_ptr<UIScrollView> row = std::make_shared<UIScrollView>(CGRectMake(0, 0, 320, 60));
    std::shared_ptr<RecordingDelegate> listDelegate = std::make_shared<RecordingDelegate>();
    std::shared_ptr<RecordingDelegate> rowDelegate = std::make_shared<RecordingDelegate>();
};

class FingerTest : public testing::Test, protected FingerStage {};

// The finger's distance without the slop that moves a row 320 points wide by 80: 193.94 * 0.55 /
// 320 = 1/3.
constexpr CGFloat wayOfEighty = 193.939393939393939;

} // namespace quorvel::platform
