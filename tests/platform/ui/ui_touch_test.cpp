// The views that receive the messages of touches, and the content of the messages.
#include "platform/ui/ui_touch.h"

#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "platform/ui/ui_event.h"
#include "tests/platform/ui/fingers.h"

namespace quorvel::platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Records its touches and passes them on.
class TouchedView : public UIView {
public:
    using UIView::UIView;
    std::vector<std::pair<std::string, UITouchPhase>> messages;
    std::shared_ptr<UITouch> touch;

    void touchesBegan(const UITouchSet& touches, UIEvent& event) override {
        note("began", touches);
        UIView::touchesBegan(touches, event);
    }
    void touchesMoved(const UITouchSet& touches, UIEvent& event) override {
        note("moved", touches);
        UIView::touchesMoved(touches, event);
    }
    void touchesEnded(const UITouchSet& touches, UIEvent& event) override {
        note("ended", touches);
        UIView::touchesEnded(touches, event);
    }
    void touchesCancelled(const UITouchSet& touches, UIEvent& event) override {
        note("cancelled", touches);
        UIView::touchesCancelled(touches, event);
    }

private:
    void note(const char* message, const UITouchSet& touches) {
        ASSERT_EQ(touches.size(), 1U);
        touch = touches.front();
        messages.emplace_back(message, touch->phase());
    }
};

class UITouchTest : public FingerTest {
protected:
    // A view owns its touch, which owns its view.
    ~UITouchTest() override {
        for (const auto& view : m_touchedViews) {
            view->touch = nullptr;
        }
    }

    std::shared_ptr<TouchedView> addTouchedView(UIView& superview, const CGRect& frame) {
        const auto view = std::make_shared<TouchedView>(frame);
        superview.addSubview(view);
        m_touchedViews.push_back(view);
        return view;
    }

private:
    std::vector<std::shared_ptr<TouchedView>> m_touchedViews;
};

std::shared_ptr<UIView> addCover(UIWindow& window) {
    const auto view = std::make_shared<UIView>(CGRectMake(0, 0, 320, 400));
    window.addSubview(view);
    return view;
}

TEST_F(UITouchTest, ReachesTheInnermostViewAndItsSuperviews) {
    const auto outer = addTouchedView(*list, CGRectMake(0, 100, 320, 100));
    const auto inner = addTouchedView(*outer, CGRectMake(10, 10, 100, 30));
    down(20, 115);
    EXPECT_EQ(inner->touch->view(), inner);
    EXPECT_EQ(inner->touch->window(), window);
    EXPECT_EQ(inner->touch->tapCount(), 1);
    EXPECT_EQ(inner->touch->locationInView(inner.get()), (CGPoint{10, 5}));
    EXPECT_EQ(inner->touch->previousLocationInView(inner.get()), (CGPoint{10, 5}));
    move(25, 117, 0.5);
    EXPECT_EQ(inner->touch->previousLocationInView(nullptr), (CGPoint{20, 115}));
    EXPECT_EQ(inner->touch->locationInView(nullptr), (CGPoint{25, 117}));
    EXPECT_DOUBLE_EQ(inner->touch->timestamp(), 0.5);
    up(25, 117);
    const auto expected = ElementsAre(std::pair("began", UITouchPhase::began),
                                      std::pair("moved", UITouchPhase::moved),
                                      std::pair("ended", UITouchPhase::ended));
    EXPECT_THAT(inner->messages, expected);
    EXPECT_THAT(outer->messages, expected);
    EXPECT_EQ(outer->touch, inner->touch);
}

TEST_F(UITouchTest, EndsAtTheTimeOfTheLift) {
    const auto view = addTouchedView(*window, CGRectMake(0, 0, 320, 400));
    down(5, 5, 1);
    up(5, 5, 1.5);
    EXPECT_DOUBLE_EQ(view->touch->timestamp(), 1.5);
    EXPECT_THAT(view->messages, ElementsAre(std::pair("began", UITouchPhase::began),
                                            std::pair("ended", UITouchPhase::ended)));
    down(5, 5, 2);
    window->cancelFinger(2.5);
    EXPECT_DOUBLE_EQ(view->touch->timestamp(), 2.5);
}

TEST_F(UITouchTest, HasMovedBeforeItEndsSomewhereElse) {
    const auto view = addTouchedView(*window, CGRectMake(0, 0, 320, 400));
    down(5, 5);
    up(9, 5);
    EXPECT_THAT(view->messages, ElementsAre(std::pair("began", UITouchPhase::began),
                                            std::pair("moved", UITouchPhase::moved),
                                            std::pair("ended", UITouchPhase::ended)));
    EXPECT_EQ(view->touch->locationInView(nullptr), (CGPoint{9, 5}));
}

TEST_F(UITouchTest, StaysWithTheViewThatItBeganOn) {
    const auto view = addTouchedView(*window, CGRectMake(0, 0, 10, 10));
    down(5, 5);
    move(200, 200);
    view->removeFromSuperview();
    up(200, 200);
    EXPECT_THAT(view->messages, ElementsAre(std::pair("began", UITouchPhase::began),
                                            std::pair("moved", UITouchPhase::moved),
                                            std::pair("ended", UITouchPhase::ended)));
}

TEST_F(UITouchTest, PassesOverViewsThatTakeNone) {
    const auto below = addTouchedView(*window, CGRectMake(0, 0, 320, 400));
    addCover(*window)->setHidden(true);
    addCover(*window)->setUserInteractionEnabled(false);
    const auto hidden = addCover(*window);
    hidden->setHidden(true);
    addTouchedView(*hidden, CGRectMake(0, 0, 320, 400)); // and what is below them
    down(5, 5);
    EXPECT_EQ(below->touch->view(), below);
}

TEST_F(UITouchTest, IsSentToNoViewWhereNothingIsHit) {
    const auto view = addTouchedView(*window, CGRectMake(0, 0, 320, 400));
    down(5, 401);
    EXPECT_TRUE(window->isFingerDown());
    move(5, 200);
    EXPECT_EQ(window->draggedScrollView(), nullptr);
    up(5, 200);
    EXPECT_FALSE(window->isFingerDown());
    EXPECT_THAT(view->messages, IsEmpty());
}

TEST_F(UITouchTest, GoesOnWhileAScrollViewMovesWithIt) {
    const auto view = addTouchedView(*row, CGRectMake(0, 0, 320, 60));
    down(50, 30);
    move(100, 30);
    EXPECT_EQ(window->draggedScrollView(), row);
    up(100, 30);
    EXPECT_THAT(view->messages, ElementsAre(std::pair("began", UITouchPhase::began),
                                            std::pair("moved", UITouchPhase::moved),
                                            std::pair("ended", UITouchPhase::ended)));
}

TEST_F(UITouchTest, ReportsItsCancellationToItsView) {
    const auto view = addTouchedView(*window, CGRectMake(0, 0, 320, 400));
    down(5, 5);
    send(UITouchPhase::cancelled, 5, 5, 1);
    send(UITouchPhase::cancelled, 5, 5, 1);
    EXPECT_THAT(view->messages, ElementsAre(std::pair("began", UITouchPhase::began),
                                            std::pair("cancelled", UITouchPhase::cancelled)));
}

TEST_F(UITouchTest, OfTheSameFingerDownAgainIsAnotherOne) {
    const auto view = addTouchedView(*window, CGRectMake(0, 0, 320, 400));
    down(5, 5);
    const auto first = view->touch;
    down(6, 6, 1);
    EXPECT_EQ(first->phase(), UITouchPhase::cancelled);
    EXPECT_NE(view->touch, first);
    EXPECT_THAT(view->messages, ElementsAre(std::pair("began", UITouchPhase::began),
                                            std::pair("cancelled", UITouchPhase::cancelled),
                                            std::pair("began", UITouchPhase::began)));
}

TEST_F(UITouchTest, OfASecondFingerIsIgnored) {
    const auto view = addTouchedView(*window, CGRectMake(0, 0, 320, 400));
    const auto sendSecond = [&](UITouchPhase phase) { send(phase, 100, 100, 1, 2); };
    sendSecond(UITouchPhase::moved); // never came down
    down(5, 5);
    sendSecond(UITouchPhase::began);
    sendSecond(UITouchPhase::moved);
    sendSecond(UITouchPhase::cancelled);
    EXPECT_TRUE(window->isFingerDown());
    up(5, 5);
    sendSecond(UITouchPhase::moved); // ignored from its beginning to its end
    sendSecond(UITouchPhase::ended);
    EXPECT_THAT(view->messages, ElementsAre(std::pair("began", UITouchPhase::began),
                                            std::pair("ended", UITouchPhase::ended)));
    sendSecond(UITouchPhase::began);
    EXPECT_EQ(view->messages.size(), 3U);
}

TEST_F(UITouchTest, IgnoresNanAndTimesThatDecrease) {
    const auto view = addTouchedView(*window, CGRectMake(0, 0, 320, 400));
    constexpr CGFloat infinity = std::numeric_limits<CGFloat>::infinity();
    constexpr CGFloat noNumber = std::numeric_limits<CGFloat>::quiet_NaN();
    down(noNumber, 5, 5);
    down(5, infinity, 5);
    down(5, 5, noNumber);
    EXPECT_FALSE(window->isFingerDown());
    down(5, 5, 5);
    move(6, 5, infinity);
    move(infinity, 5, 6);
    EXPECT_EQ(view->messages.size(), 1U);
    move(6, 5, 1);
    EXPECT_DOUBLE_EQ(view->touch->timestamp(), 5);
    window->cancelFinger(noNumber);
    EXPECT_DOUBLE_EQ(view->touch->timestamp(), 5);
    EXPECT_FALSE(window->isFingerDown());
}

// Runs an action for each message of a touch before it passes the message on.
class ActingView : public UIView {
public:
    using UIView::UIView;
    std::function<void()> action = [] {};

    void touchesBegan(const UITouchSet& touches, UIEvent& event) override {
        std::exchange(action, [] {})();
        UIView::touchesBegan(touches, event);
    }
    void touchesMoved(const UITouchSet& touches, UIEvent& event) override {
        std::exchange(action, [] {})();
        UIView::touchesMoved(touches, event);
    }
    void touchesEnded(const UITouchSet& touches, UIEvent& event) override {
        std::exchange(action, [] {})();
        UIView::touchesEnded(touches, event);
    }
};

TEST_F(UITouchTest, AViewMayCancelItsFinger) {
    const auto view = std::make_shared<ActingView>(CGRectMake(0, 0, 320, 60));
    row->addSubview(view);
    const auto expectNoDrag = [&] {
        EXPECT_FALSE(window->isFingerDown());
        EXPECT_EQ(window->draggedScrollView(), nullptr);
        EXPECT_FALSE(row->isDragging());
        EXPECT_EQ(row->contentOffset(), CGPoint{});
        EXPECT_EQ(rowDelegate->begun, 0);
        EXPECT_THAT(rowDelegate->ends, IsEmpty());
    };
    view->action = [&] { window->cancelFinger(1); };
    down(50, 30);
    move(300, 30);
    up(300, 30);
    expectNoDrag();
    down(50, 30, 3);
    view->action = [&] { window->cancelFinger(4); };
    move(300, 30, 4); // far enough for a drag
    expectNoDrag();
    up(300, 30, 5);
    down(50, 30, 6);
    view->action = [&] { window->cancelFinger(7); };
    up(300, 30, 7); // moved there first
    expectNoDrag();
}

TEST_F(UITouchTest, AViewMayCancelTheFingerThatDrags) {
    const auto view = std::make_shared<ActingView>(CGRectMake(0, 0, 320, 60));
    row->addSubview(view);
    down(50, 30);
    move(300, 30);
    view->action = [&] { window->cancelFinger(2); };
    move(310, 30, 2);
    EXPECT_FALSE(row->isDragging());
    EXPECT_TRUE(row->isDecelerating());
    up(310, 30, 2);
    EXPECT_FALSE(window->advance(5));
    EXPECT_EQ(row->contentOffset(), CGPoint{});
    EXPECT_THAT(rowDelegate->ends, IsEmpty());
}

TEST_F(UITouchTest, AFingerThatHasLiftedCannotBeCancelledAnyMore) {
    const auto view = std::make_shared<ActingView>(CGRectMake(0, 0, 320, 60));
    row->addSubview(view);
    down(50, 30);
    move(300, 30);
    view->action = [&] { window->cancelFinger(2); };
    up(300, 30);
    EXPECT_EQ(rowDelegate->ends.size(), 1U);
}

TEST_F(UITouchTest, AViewMayBeDestroyedWithItsSuperviewsDuringAMessage) {
    auto outer = std::make_shared<ActingView>(CGRectMake(0, 0, 320, 400));
    const auto inner = addTouchedView(*outer, CGRectMake(0, 0, 320, 400));
    window->addSubview(outer);
    const std::weak_ptr<UIView> gone = outer;
    down(5, 5);
    outer->action = [&] {
        gone.lock()->removeFromSuperview();
        inner->removeFromSuperview();
    };
    outer.reset();
    move(6, 6);
    EXPECT_TRUE(gone.expired());
    up(6, 6);
    EXPECT_EQ(inner->messages.size(), 3U);
}

TEST_F(UITouchTest, TheWindowMayBeDestroyedDuringAMessage) {
    const auto view = std::make_shared<ActingView>(CGRectMake(0, 0, 320, 60));
    row->addSubview(view);
    down(50, 30);
    view->action = [&] { window.reset(); };
    move(300, 30);
    EXPECT_EQ(window, nullptr);
    EXPECT_FALSE(row->isDragging());
    EXPECT_EQ(row->contentOffset(), CGPoint{});
    EXPECT_THAT(rowDelegate->ends, IsEmpty());
}

TEST(UIViewTouchTest, CanBeTouchedWhereAllAboveCanBe) {
    const auto top = std::make_shared<UIView>(CGRectMake(0, 0, 10, 10));
    const auto view = std::make_shared<UIView>(CGRectMake(0, 0, 10, 10));
    top->addSubview(view);
    EXPECT_TRUE(view->canBeTouched());
    top->setHidden(true);
    EXPECT_FALSE(view->canBeTouched());
    top->setHidden(false);
    top->setUserInteractionEnabled(false);
    EXPECT_FALSE(view->canBeTouched());
    top->setUserInteractionEnabled(true);
    view->setHidden(true);
    EXPECT_FALSE(view->canBeTouched());
    EXPECT_TRUE(top->canBeTouched());
}

TEST(UITouchLocationTest, IsTheWindowsWhereThereIsNoView) {
    UITouchFields fields;
    fields.locationInWindow = {3, 4};
    const UITouch touch(fields);
    const UIView view(CGRectMake(1, 1, 10, 10));
    EXPECT_EQ(touch.locationInView(nullptr), (CGPoint{3, 4}));
    EXPECT_EQ(touch.locationInView(&view), (CGPoint{3, 4})); // nor a window
    EXPECT_EQ(touch.window(), nullptr);
}

} // namespace
} // namespace quorvel::platform
