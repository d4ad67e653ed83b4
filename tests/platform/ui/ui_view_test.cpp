#include "platform/ui/ui_view.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "platform/memory/fixed_screen.h"
#include "platform/memory/recording_context.h"
#include "platform/ui/ui_window.h"

namespace quorvel::platform {
namespace {

using Views = std::vector<std::shared_ptr<UIView>>;

std::shared_ptr<UIView> makeView(CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
    return std::make_shared<UIView>(CGRectMake(x, y, width, height));
}

// Counts its layouts, and runs an action in each.
class LayoutView : public UIView {
public:
    using UIView::UIView;
    void layoutSubviews() override {
        ++layouts;
        if (inLayout) {
            inLayout();
        }
    }
    int layouts = 0;
    std::function<void()> inLayout;
};

class PaintedView : public UIView {
public:
    using UIView::UIView;
    void drawRect(GraphicsContext& context) override { context.setLineWidth(7); }
};

// The frame of a subview with that mask after its superview went from one size to the other.
CGRect resized(unsigned mask, const CGRect& frame, CGSize from, CGSize to) {
    const auto superview = makeView(0, 0, from.width, from.height);
    const auto view = std::make_shared<UIView>(frame);
    view->setAutoresizingMask(mask);
    superview->addSubview(view);
    superview->setFrame({{}, to});
    return view->frame();
}

std::vector<std::string> painted(UIView& view) {
    memory::RecordingContext context;
    view.render(context);
    return context.operations;
}

TEST(UIViewTest, FrameAndBoundsShareTheirSize) {
    const auto view = makeView(10, 20, 30, 40);
    EXPECT_EQ(view->bounds(), CGRectMake(0, 0, 30, 40));
    view->setFrame(CGRectMake(1, 2, -3, 4));
    EXPECT_EQ(view->frame(), CGRectMake(1, 2, -3, 4));
    EXPECT_EQ(view->bounds(), CGRectMake(0, 0, -3, 4));
}

TEST(UIViewTest, NewBoundsLeaveTheCentre) {
    const auto view = makeView(10, 20, 30, 40);
    view->setBounds(CGRectMake(5, 6, 10, 50));
    EXPECT_EQ(view->frame(), CGRectMake(20, 15, 10, 50));
    EXPECT_EQ(view->bounds(), CGRectMake(5, 6, 10, 50));
    view->setFrame(CGRectMake(0, 0, 1, 1));
    EXPECT_EQ(view->bounds(), CGRectMake(5, 6, 1, 1));
}

TEST(UIViewTest, StartsAsThePlatformDoes) {
    const UIView view;
    EXPECT_EQ(view.frame(), CGRect{});
    EXPECT_EQ(view.tag(), 0);
    EXPECT_EQ(view.backgroundColor(), std::nullopt);
    EXPECT_EQ(view.autoresizingMask(), 0U);
    EXPECT_FALSE(view.isHidden());
    EXPECT_TRUE(view.isUserInteractionEnabled());
    EXPECT_FALSE(view.clipsToBounds());
    EXPECT_EQ(view.superview(), nullptr);
}

TEST(UIViewTest, StoresSubviewsInOrder) {
    const auto top = makeView(0, 0, 1, 1);
    const auto a = makeView(0, 0, 1, 1);
    const auto b = makeView(0, 0, 1, 1);
    const auto c = makeView(0, 0, 1, 1);
    top->addSubview(a);
    top->addSubview(b);
    top->insertSubview(c, 0);
    EXPECT_EQ(top->subviews(), (Views{c, a, b}));
    top->insertSubview(c, 1);
    EXPECT_EQ(top->subviews(), (Views{a, c, b}));
    top->addSubview(top->subviews()[0]);
    EXPECT_EQ(top->subviews(), (Views{c, b, a}));
    top->insertSubview(b, 99);
    EXPECT_EQ(top->subviews(), (Views{c, a, b}));
    top->addSubview(nullptr);
    EXPECT_EQ(top->subviews().size(), 3U);
    EXPECT_EQ(a->superview(), top.get());
    a->removeFromSuperview();
    a->removeFromSuperview();
    EXPECT_EQ(a->superview(), nullptr);
    EXPECT_EQ(top->subviews(), (Views{c, b}));
}

TEST(UIViewTest, MovesFromOneSuperviewToAnother) {
    const auto one = makeView(0, 0, 1, 1);
    const auto two = makeView(0, 0, 1, 1);
    const auto view = makeView(0, 0, 1, 1);
    one->addSubview(view);
    two->addSubview(view);
    EXPECT_TRUE(one->subviews().empty());
    EXPECT_EQ(view->superview(), two.get());
}

TEST(UIViewTest, MakesNoCycle) {
    const auto top = makeView(0, 0, 1, 1);
    const auto middle = makeView(0, 0, 1, 1);
    const auto low = makeView(0, 0, 1, 1);
    top->addSubview(middle);
    middle->addSubview(low);
    top->addSubview(top);
    low->addSubview(top);
    low->addSubview(middle);
    EXPECT_EQ(top->superview(), nullptr);
    EXPECT_EQ(middle->superview(), top.get());
    EXPECT_TRUE(low->subviews().empty());
    EXPECT_TRUE(low->isDescendantOfView(*top));
    EXPECT_TRUE(low->isDescendantOfView(*low));
    EXPECT_FALSE(top->isDescendantOfView(*low));
}

TEST(UIViewTest, RemovingDestroysAViewThatOnlyItsSuperviewOwns) {
    const auto top = makeView(0, 0, 1, 1);
    top->addSubview(makeView(0, 0, 1, 1));
    const std::weak_ptr<UIView> view = top->subviews()[0];
    top->subviews()[0]->removeFromSuperview();
    EXPECT_TRUE(view.expired());
}

TEST(UIViewTest, SubviewsOutliveTheirSuperview) {
    auto top = makeView(0, 0, 1, 1);
    const auto kept = makeView(0, 0, 1, 1);
    const auto below = makeView(0, 0, 1, 1);
    auto between = makeView(0, 0, 1, 1);
    top->addSubview(between);
    between->addSubview(kept);
    kept->addSubview(below);
    between.reset();
    top.reset();
    EXPECT_EQ(kept->superview(), nullptr);
    EXPECT_EQ(kept->subviews(), Views{below});
    EXPECT_EQ(below->superview(), kept.get());
}

TEST(UIViewTest, FindsItsWindow) {
    const memory::FixedScreen screen;
    const auto window = std::make_shared<UIWindow>(CGRectMake(0, 0, 10, 10), screen);
    const auto view = makeView(0, 0, 1, 1);
    const auto low = makeView(0, 0, 1, 1);
    view->addSubview(low);
    EXPECT_EQ(low->window(), nullptr);
    window->addSubview(view);
    EXPECT_EQ(low->window(), window.get());
    EXPECT_EQ(window->window(), window.get());
    EXPECT_EQ(&low->window()->screen(), &screen);
}

TEST(UIViewTest, WithoutAMaskASubviewStays) {
    EXPECT_EQ(resized(0, CGRectMake(1, 2, 3, 4), {10, 10}, {30, 50}), CGRectMake(1, 2, 3, 4));
}

TEST(UIViewTest, OneFlexiblePartTakesTheWholeChange) {
    const CGRect frame = CGRectMake(10, 20, 30, 40);
    EXPECT_EQ(resized(UIViewAutoresizingFlexibleWidth, frame, {100, 100}, {130.5, 170}),
              CGRectMake(10, 20, 60.5, 40));
    EXPECT_EQ(resized(18, frame, {100, 100}, {130, 170}), CGRectMake(10, 20, 60, 110));
    EXPECT_EQ(resized(UIViewAutoresizingFlexibleLeftMargin, frame, {100, 100}, {130, 170}),
              CGRectMake(40, 20, 30, 40));
    EXPECT_EQ(resized(UIViewAutoresizingFlexibleTopMargin, frame, {100, 100}, {130, 90}),
              CGRectMake(10, 10, 30, 40));
    EXPECT_EQ(
        resized(UIViewAutoresizingFlexibleRightMargin | UIViewAutoresizingFlexibleBottomMargin,
                frame, {100, 100}, {130, 170}),
        frame);
}

TEST(UIViewTest, GrowsFromNothingExactly) {
    EXPECT_EQ(resized(18, {}, {0, 0}, {320, 350.1}), CGRectMake(0, 0, 320, 350.1));
    EXPECT_EQ(resized(UIViewAutoresizingFlexibleLeftMargin | UIViewAutoresizingFlexibleWidth |
                          UIViewAutoresizingFlexibleRightMargin,
                      {}, {0, 0}, {30, 0}),
              CGRectMake(10, 0, 10, 0));
}

TEST(UIViewTest, SeveralFlexiblePartsShareByTheirSizes) {
    const CGRect frame = CGRectMake(20, 0, 30, 10); // 20, 30 and 50 of 100
    EXPECT_EQ(resized(UIViewAutoresizingFlexibleLeftMargin | UIViewAutoresizingFlexibleWidth |
                          UIViewAutoresizingFlexibleRightMargin,
                      frame, {100, 10}, {200, 10}),
              CGRectMake(40, 0, 60, 10));
    EXPECT_EQ(resized(UIViewAutoresizingFlexibleLeftMargin | UIViewAutoresizingFlexibleWidth, frame,
                      {100, 10}, {200, 10}),
              CGRectMake(60, 0, 90, 10));
    EXPECT_EQ(resized(UIViewAutoresizingFlexibleWidth | UIViewAutoresizingFlexibleRightMargin,
                      frame, {100, 10}, {180, 10}),
              CGRectMake(20, 0, 60, 10));
    EXPECT_EQ(resized(UIViewAutoresizingFlexibleTopMargin | UIViewAutoresizingFlexibleBottomMargin,
                      CGRectMake(0, 10, 5, 10), {5, 50}, {5, 90}),
              CGRectMake(0, 20, 5, 10));
}

TEST(UIViewTest, ShrinkingStopsAtNothing) {
    EXPECT_EQ(resized(UIViewAutoresizingFlexibleWidth, CGRectMake(10, 0, 20, 5), {100, 5}, {50, 5}),
              CGRectMake(10, 0, 0, 5));
}

TEST(UIViewTest, ResizingReachesAllBelowAtOnce) {
    const auto top = makeView(0, 0, 100, 100);
    const auto middle = makeView(0, 0, 100, 100);
    const auto low = makeView(10, 10, 80, 80);
    middle->setAutoresizingMask(18);
    low->setAutoresizingMask(18);
    top->addSubview(middle);
    middle->addSubview(low);
    top->setBounds(CGRectMake(0, 0, 150, 200));
    EXPECT_EQ(low->frame(), CGRectMake(10, 10, 130, 180));
    top->setBounds(CGRectMake(7, 8, 150, 200)); // the size is as before
    EXPECT_EQ(middle->frame(), CGRectMake(0, 0, 150, 200));
}

TEST(UIViewTest, ConvertsPointsWithinATree) {
    const auto top = makeView(1000, 1000, 100, 100);
    const auto left = makeView(10, 20, 50, 50);
    const auto leftLow = makeView(1, 2, 5, 5);
    const auto right = makeView(60, 0, 40, 40);
    top->addSubview(left);
    left->addSubview(leftLow);
    top->addSubview(right);
    left->setBounds(CGRectMake(3, 4, 50, 50));
    EXPECT_EQ(leftLow->convertPointToView({0, 0}, left.get()), (CGPoint{1, 2}));
    EXPECT_EQ(leftLow->convertPointToView({0, 0}, top.get()), (CGPoint{8, 18}));
    EXPECT_EQ(leftLow->convertPointToView({0, 0}, nullptr), (CGPoint{8, 18}));
    EXPECT_EQ(leftLow->convertPointToView({0, 0}, right.get()), (CGPoint{-52, 18}));
    EXPECT_EQ(top->convertPointToView({8, 18}, leftLow.get()), (CGPoint{0, 0}));
}

TEST(UIViewTest, HitsTheDeepestFrontmostView) {
    const auto top = makeView(0, 0, 100, 100);
    const auto back = makeView(0, 0, 50, 50);
    const auto front = makeView(25, 25, 50, 50);
    const auto deep = makeView(10, 10, 100, 100); // reaches outside of its superview
    top->addSubview(back);
    top->addSubview(front);
    front->addSubview(deep);
    EXPECT_EQ(top->hitTest({10, 10}), back);
    EXPECT_EQ(top->hitTest({30, 30}), front);
    EXPECT_EQ(top->hitTest({40, 40}), deep);
    EXPECT_EQ(top->hitTest({90, 90}), top);
    EXPECT_EQ(top->hitTest({75, 75}), top); // the right and bottom edges are outside
    EXPECT_EQ(top->hitTest({100, 0}), nullptr);
    EXPECT_EQ(top->hitTest({-1, 0}), nullptr);
}

TEST(UIViewTest, PassesOverViewsThatTakeNoTouches) {
    const auto top = makeView(0, 0, 100, 100);
    const auto view = makeView(0, 0, 50, 50);
    const auto low = makeView(0, 0, 50, 50);
    top->addSubview(view);
    view->addSubview(low);
    EXPECT_EQ(top->hitTest({1, 1}), low);
    low->setUserInteractionEnabled(false);
    EXPECT_EQ(top->hitTest({1, 1}), view);
    view->setHidden(true);
    EXPECT_EQ(top->hitTest({1, 1}), top);
    view->setHidden(false);
    EXPECT_EQ(top->hitTest({1, 1}), view);
    top->setUserInteractionEnabled(false);
    EXPECT_EQ(top->hitTest({1, 1}), nullptr);
}

TEST(UIViewTest, LaysOutOnlyWhatIsDue) {
    const auto top = std::make_shared<LayoutView>(CGRectMake(0, 0, 10, 10));
    const auto low = std::make_shared<LayoutView>(CGRectMake(0, 0, 10, 10));
    top->addSubview(low);
    top->layoutIfNeeded();
    EXPECT_EQ(top->layouts, 1);
    EXPECT_EQ(low->layouts, 1);
    top->layoutIfNeeded();
    EXPECT_EQ(top->layouts, 1);
    low->setNeedsLayout();
    top->layoutIfNeeded();
    EXPECT_EQ(top->layouts, 1);
    EXPECT_EQ(low->layouts, 2);
    low->setFrame(CGRectMake(5, 5, 10, 10)); // moved, not resized
    top->layoutIfNeeded();
    EXPECT_EQ(low->layouts, 2);
    low->setFrame(CGRectMake(5, 5, 11, 10));
    top->layoutIfNeeded();
    EXPECT_EQ(low->layouts, 3);
    low->setBounds(CGRectMake(1, 0, 11, 10));
    top->layoutIfNeeded();
    EXPECT_EQ(low->layouts, 4);
    low->removeFromSuperview();
    top->layoutIfNeeded();
    EXPECT_EQ(top->layouts, 2);
    EXPECT_EQ(low->layouts, 4);
}

TEST(UIViewTest, LaysOutSuperviewsFirst) {
    const auto top = std::make_shared<LayoutView>();
    const auto low = std::make_shared<LayoutView>();
    top->addSubview(low);
    std::string order;
    top->inLayout = [&] {
        order += "top ";
        low->setFrame(CGRectMake(0, 0, 5, 5));
    };
    low->inLayout = [&] { order += "low "; };
    top->layoutIfNeeded();
    EXPECT_EQ(order, "top low ");
    EXPECT_EQ(low->layouts, 1);
}

TEST(UIViewTest, ALayoutMayRequestAnother) {
    const auto top = std::make_shared<LayoutView>();
    const auto low = std::make_shared<LayoutView>();
    top->addSubview(low);
    low->inLayout = [&] {
        if (low->layouts == 1) {
            top->setNeedsLayout();
        }
    };
    top->layoutIfNeeded();
    EXPECT_EQ(top->layouts, 2);
    EXPECT_EQ(low->layouts, 1);
}

TEST(UIViewTest, LimitsALayoutThatAlwaysRequestsAnother) {
    const auto top = std::make_shared<LayoutView>();
    top->inLayout = [&] { top->setNeedsLayout(); };
    top->layoutIfNeeded();
    EXPECT_EQ(top->layouts, 8);
}

TEST(UIViewTest, ALayoutMayChangeTheTree) {
    const auto top = std::make_shared<LayoutView>();
    const auto gone = std::make_shared<LayoutView>();
    const auto added = std::make_shared<LayoutView>();
    top->addSubview(gone);
    top->inLayout = [&] {
        gone->removeFromSuperview();
        top->addSubview(added);
    };
    top->layoutIfNeeded();
    EXPECT_EQ(gone->layouts, 0);
    EXPECT_GE(added->layouts, 1);
}

TEST(UIViewTest, AViewTakenOutByASiblingsLayoutHasNone) {
    const auto top = makeView(0, 0, 10, 10);
    const auto first = std::make_shared<LayoutView>();
    const auto second = std::make_shared<LayoutView>();
    top->addSubview(first);
    top->addSubview(second);
    first->inLayout = [&] { second->removeFromSuperview(); };
    top->layoutIfNeeded();
    EXPECT_EQ(first->layouts, 1);
    EXPECT_EQ(second->layouts, 0);
}

TEST(UIViewTest, EnteringAWindowMakesALayoutDueEverywhere) {
    const memory::FixedScreen screen;
    const auto window = std::make_shared<UIWindow>(CGRectMake(0, 0, 10, 10), screen);
    const auto view = std::make_shared<LayoutView>();
    const auto low = std::make_shared<LayoutView>();
    view->addSubview(low);
    view->layoutIfNeeded();
    window->addSubview(view);
    window->layoutIfNeeded();
    EXPECT_EQ(view->layouts, 2);
    EXPECT_EQ(low->layouts, 2);
}

TEST(UIViewTest, PaintsBackgroundThenContentThenSubviews) {
    const auto top = std::make_shared<PaintedView>(CGRectMake(50, 60, 100, 80));
    top->setBackgroundColor(UIColor::redColor());
    const auto low = std::make_shared<PaintedView>(CGRectMake(10, 20, 30, 40));
    low->setBounds(CGRectMake(1, 2, 30, 40));
    low->setBackgroundColor(UIColor::clearColor());
    top->addSubview(low);
    EXPECT_EQ(painted(*top),
              (std::vector<std::string>{"saveGState", "setFillColor 1 0 0 1", "fillRect 0 0 100 80",
                                        "setLineWidth 7", "saveGState", "translateCTM 9 18",
                                        "setLineWidth 7", "restoreGState", "restoreGState"}));
}

TEST(UIViewTest, PaintsOnlyVisibleViews) {
    const auto top = makeView(0, 0, 10, 10);
    const auto view = std::make_shared<PaintedView>(CGRectMake(0, 0, 5, 5));
    top->addSubview(view);
    const std::vector<std::string> nothing = {"saveGState", "restoreGState"};
    view->setHidden(true);
    EXPECT_EQ(painted(*top), nothing);
    view->setHidden(false);
    EXPECT_NE(painted(*top), nothing);
    top->setHidden(true);
    EXPECT_TRUE(painted(*top).empty());
}

TEST(UIViewTest, PassesOverClippingViewsOutsideTheClip) {
    const auto top = makeView(0, 0, 10, 10);
    top->setClipsToBounds(true);
    top->setBounds(CGRectMake(0, 100, 10, 10));
    const auto view = std::make_shared<PaintedView>(CGRectMake(0, 90, 5, 10));
    view->setClipsToBounds(true);
    const auto between = makeView(0, 0, 0, 0);
    between->addSubview(view);
    top->addSubview(between);
    const auto unseen = painted(*top);
    EXPECT_EQ(std::count(unseen.begin(), unseen.end(), "setLineWidth 7"), 0);
    between->setFrame(CGRectMake(0, 1, 0, 0)); // one point of it shows
    const auto seen = painted(*top);
    EXPECT_EQ(std::count(seen.begin(), seen.end(), "setLineWidth 7"), 1);
    view->setFrame(CGRectMake(0, 100, 5, 0));
    const auto empty = painted(*top);
    EXPECT_EQ(std::count(empty.begin(), empty.end(), "clipToRect 0 0 5 0"), 0);
}

TEST(UIViewTest, ClipsWithinClipsNarrow) {
    const auto top = makeView(0, 0, 10, 10);
    const auto wide = makeView(0, 0, 100, 100); // sticks out of the top
    const auto low = std::make_shared<PaintedView>(CGRectMake(50, 50, 5, 5));
    for (UIView* view : {top.get(), wide.get(), static_cast<UIView*>(low.get())}) {
        view->setClipsToBounds(true);
    }
    top->addSubview(wide);
    wide->addSubview(low);
    const auto unseen = painted(*top);
    EXPECT_EQ(std::count(unseen.begin(), unseen.end(), "setLineWidth 7"), 0);
    low->setFrame(CGRectMake(5, 5, 5, 5));
    const auto seen = painted(*top);
    EXPECT_EQ(std::count(seen.begin(), seen.end(), "setLineWidth 7"), 1);
}

TEST(UIViewTest, AViewWithoutSizePaintsItsSubviewsOnly) {
    const auto top = std::make_shared<PaintedView>(CGRectMake(0, 0, 0, 10));
    top->setBackgroundColor(UIColor::redColor());
    top->addSubview(std::make_shared<PaintedView>(CGRectMake(0, 0, 1, 1)));
    EXPECT_EQ(painted(*top), (std::vector<std::string>{"saveGState", "saveGState", "setLineWidth 7",
                                                       "restoreGState", "restoreGState"}));
}

TEST(UIViewTest, OnlyMemoryLimitsTheDepth) {
    constexpr int depth = 200000;
    const auto deepest = makeView(0, 0, 1, 1);
    auto top = deepest;
    top->setAutoresizingMask(18);
    for (int i = 0; i < depth; ++i) {
        const auto above = makeView(0, 0, 1, 1);
        above->setAutoresizingMask(18);
        above->addSubview(top);
        top = above;
    }
    top->layoutIfNeeded();
    top->setFrame(CGRectMake(0, 0, 5, 5));
    EXPECT_EQ(deepest->frame(), CGRectMake(0, 0, 5, 5));
    EXPECT_EQ(top->hitTest({4, 4}), deepest);
    EXPECT_EQ(painted(*top).size(), 2U * (depth + 1));
    EXPECT_EQ(deepest->convertPointToView({1, 1}, nullptr), (CGPoint{1, 1}));
    top.reset();
    EXPECT_EQ(deepest->superview(), nullptr);
}

} // namespace
} // namespace quorvel::platform
