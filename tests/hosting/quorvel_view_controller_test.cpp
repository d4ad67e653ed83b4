// The older hosts' controller: its lifecycle, its placeholder and its taps.
#include "hosting/quorvel_view_controller.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "agenda/quorvel_view.h"
#include "platform/ui/ui_event.h"
#include "platform/ui/ui_image_view.h"
#include "platform/ui/ui_window.h"
#include "tests/agenda/agenda_fixture.h"

namespace quorvel {
namespace {

using namespace platform;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

// A message of a touch to a view. It owns nothing that owns the view.
struct TouchMessage {
    std::string name;
    std::weak_ptr<UITouch> touch;
    std::weak_ptr<UIView> touchedView;
    std::weak_ptr<UIWindow> window;
    UITouchPhase phase; // at that moment, as everything below
    CGPoint locationInWindow;
    CGPoint location; // in the coordinates of the view
    double timestamp;
    std::size_t recordSize;
};

bool isSameTouch(const TouchMessage& one, const TouchMessage& other) {
    return !one.touch.owner_before(other.touch) && !other.touch.owner_before(one.touch);
}

class TouchRecorder : public UIView {
public:
    using UIView::UIView;

    void touchesBegan(const UITouchSet& touches, UIEvent& event) override {
        add("began", touches, event);
    }
    void touchesMoved(const UITouchSet& touches, UIEvent& event) override {
        add("moved", touches, event);
    }
    void touchesEnded(const UITouchSet& touches, UIEvent& event) override {
        add("ended", touches, event);
    }
    void touchesCancelled(const UITouchSet& touches, UIEvent& event) override {
        add("cancelled", touches, event);
    }

    std::vector<TouchMessage> messages;

private:
    void add(const char* name, const UITouchSet& touches, UIEvent& event) {
        EXPECT_EQ(touches, event.allTouches());
        ASSERT_THAT(touches, SizeIs(1));
        const UITouch& touch = *touches[0];
        const auto* made = dynamic_cast<const UITouchesEvent*>(&event);
        messages.push_back({name, touches[0], touch.view(), touch.window(), touch.phase(),
                            touch.fields().locationInWindow, touch.locationInView(this),
                            touch.timestamp(), made != nullptr ? made->record().size() : 0});
    }
};

class QuorvelViewControllerTest : public AgendaFixture {
protected:
    QuorvelViewControllerTest() {
        setStockPreferences();
        window->addSubview(place);
    }

    std::shared_ptr<QuorvelView> agenda() {
        return std::dynamic_pointer_cast<QuorvelView>(controller.view());
    }

    // As the host does it.
    void show() {
        place->addSubview(controller.view());
        controller.view()->setFrame(CGRectMake(0, 0, 320, controller.viewHeight()));
        window->layoutIfNeeded();
    }

    void setBackground(std::shared_ptr<const UIImage> picture) {
        const auto bundle = std::make_shared<memory::MemoryBundle>();
        bundle->resources["Background.png"] = "/b/Background@2x.png";
        controller.setBundle(bundle);
        memory.imageFiles.images["/b/Background@2x.png"] = std::move(picture);
    }

    std::shared_ptr<UIWindow> window =
        std::make_shared<UIWindow>(CGRectMake(0, 0, 320, 480), memory.screen);
    // Gets the messages that no view below it takes.
    std::shared_ptr<TouchRecorder> place =
        std::make_shared<TouchRecorder>(CGRectMake(0, 100, 320, 300));
    QuorvelViewController controller{platform()};
};

TEST_F(QuorvelViewControllerTest, KnowsItsBundle) {
    EXPECT_EQ(controller.bundle(), nullptr);
    const auto bundle = std::make_shared<memory::MemoryBundle>();
    memory.bundles.bundles["QuorvelViewController"] = bundle;
    EXPECT_EQ(QuorvelViewController(platform()).bundle(), bundle);
    controller.setBundle(bundle);
    EXPECT_EQ(controller.bundle(), bundle);
}

TEST_F(QuorvelViewControllerTest, HasOneHeight) {
    EXPECT_EQ(controller.viewHeight(), 70);
    setSettings({{"maxHeight", plist(30)}, {"limitMaxHeight", plist(true)}});
    addEvent("Lunch", at(0, 12));
    controller.loadFullView();
    EXPECT_EQ(controller.viewHeight(), 70);
    EXPECT_EQ(controller.view()->frame().size.height, 70);
}

TEST_F(QuorvelViewControllerTest, MakesItsViewAtFirstUseAndLeavesItEmpty) {
    const auto view = agenda();
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(view->frame(), CGRectMake(0, 0, 0, 70));
    EXPECT_EQ(view->autoresizingMask(), 2U);
    EXPECT_EQ(view->backgroundColor(), std::nullopt);
    EXPECT_EQ(view->itemsTableView(), nullptr);
    EXPECT_THAT(view->subviews(), IsEmpty());
    EXPECT_THAT(memory.preferences.reads, IsEmpty());
    EXPECT_EQ(memory.calendarStores.storesMade, 0U);
    EXPECT_EQ(controller.view(), view);
}

TEST_F(QuorvelViewControllerTest, TakesItsWidthFromTheHost) {
    const auto host = std::make_shared<UIView>(CGRectMake(0, 0, 0, 70));
    addEvent("Lunch", at(0, 12));
    controller.loadFullView();
    host->addSubview(controller.view());
    host->setFrame(CGRectMake(0, 0, 320, 90));
    EXPECT_EQ(controller.view()->frame(), CGRectMake(0, 0, 320, 70));
    EXPECT_EQ(agenda()->itemsTableView()->frame(), CGRectMake(0, 0, 320, 70));
}

TEST_F(QuorvelViewControllerTest, TakesAnotherView) {
    const auto other = std::make_shared<QuorvelView>(platform(), CGRectMake(1, 2, 3, 4));
    controller.setView(other);
    EXPECT_EQ(controller.view(), other);
    EXPECT_EQ(other->frame(), CGRectMake(1, 2, 3, 4));
    controller.setView(nullptr);
    EXPECT_NE(controller.view(), nullptr);
    EXPECT_NE(controller.view(), other);
}

TEST_F(QuorvelViewControllerTest, GathersWhenTheFullViewIsAskedFor) {
    addEvent("Lunch", at(0, 12));
    controller.loadFullView();
    EXPECT_THAT(*agenda()->items(), SizeIs(1));
    ASSERT_NE(agenda()->itemsTableView(), nullptr);
    EXPECT_EQ(memory.calendarStores.storesMade, 1U);
}

TEST_F(QuorvelViewControllerTest, DoesNothingWhenItAppearsOrDisappears) {
    controller.viewWillAppear();
    controller.viewDidAppear();
    EXPECT_THAT(memory.preferences.reads, IsEmpty());
    controller.loadFullView();
    addEvent("Lunch", at(0, 12));
    const auto reads = memory.preferences.reads;
    controller.viewWillAppear();
    controller.viewDidAppear();
    controller.viewWillDisappear();
    controller.viewDidDisappear();
    EXPECT_EQ(memory.preferences.reads, reads);
    EXPECT_THAT(*agenda()->items(), IsEmpty());
}

TEST_F(QuorvelViewControllerTest, BuildsANewViewAfterTheOldOneIsUnloaded) {
    controller.loadFullView();
    show();
    const auto old = agenda();
    EXPECT_EQ(old->superview(), place.get());
    addEvent("Lunch", at(0, 12));

    controller.unloadView();
    EXPECT_EQ(old->superview(), nullptr);
    EXPECT_THAT(place->subviews(), IsEmpty());
    controller.unloadView(); // there is none now

    controller.loadFullView();
    EXPECT_NE(agenda(), old);
    EXPECT_THAT(*agenda()->items(), SizeIs(1));
    EXPECT_THAT(*old->items(), IsEmpty());
    EXPECT_EQ(memory.calendarStores.storesMade, 2U);
}

// The placeholder.

TEST_F(QuorvelViewControllerTest, StretchesThePlaceholderInItsMiddle) {
    const auto caps = [this](CGSize size) {
        setBackground(memory::makeImage(size));
        controller.loadPlaceholderView();
        const auto& subviews = agenda()->subviews();
        EXPECT_THAT(subviews, SizeIs(1));
        const auto imageView = std::dynamic_pointer_cast<UIImageView>(subviews.front());
        EXPECT_EQ(imageView->image()->size(), size);
        return *imageView->image()->capInsets();
    };
    EXPECT_EQ(caps({300, 100}), (UIEdgeInsets{50, 150, 49, 149}));
    EXPECT_EQ(caps({301, 101}), (UIEdgeInsets{50, 150, 50, 150}));
    EXPECT_EQ(caps({301.5, 100.5}), (UIEdgeInsets{50, 150, 49.5, 150.5}));
    EXPECT_EQ(caps({1, 1}), UIEdgeInsets{});
    EXPECT_EQ(memory.imageFiles.reads.front(), "/b/Background@2x.png");
}

TEST_F(QuorvelViewControllerTest, ShowsThePlaceholderInsetAndNothingElse) {
    setBackground(memory::makeImage({300, 100}));
    controller.loadPlaceholderView();
    show();
    ASSERT_THAT(agenda()->subviews(), SizeIs(1));
    EXPECT_EQ(agenda()->subviews()[0]->frame(), CGRectMake(2, 0, 316, 70));
    EXPECT_EQ(agenda()->itemsTableView(), nullptr);
    EXPECT_THAT(memory.preferences.reads, IsEmpty());
}

TEST_F(QuorvelViewControllerTest, ShowsTheListOverThePlaceholder) {
    setBackground(memory::makeImage({300, 100}));
    controller.loadPlaceholderView();
    const auto picture = agenda()->subviews()[0];
    controller.loadFullView();
    EXPECT_THAT(agenda()->subviews(), ElementsAre(picture, agenda()->itemsTableView()));
}

TEST_F(QuorvelViewControllerTest, ShowsNoPlaceholderThatIsMissing) {
    setBackground(memory::makeImage({300, 100}));
    controller.loadPlaceholderView();
    EXPECT_THAT(agenda()->subviews(), SizeIs(1));

    memory.imageFiles.images.clear(); // the file cannot be read
    controller.loadPlaceholderView();
    EXPECT_THAT(agenda()->subviews(), IsEmpty());

    setBackground(memory::makeImage({300, 100}));
    controller.loadPlaceholderView();
    EXPECT_THAT(agenda()->subviews(), SizeIs(1));
    controller.setBundle(std::make_shared<memory::MemoryBundle>()); // without the resource
    controller.loadPlaceholderView();
    EXPECT_THAT(agenda()->subviews(), IsEmpty());

    setBackground(memory::makeImage({300, 100}));
    controller.loadPlaceholderView();
    controller.setBundle(nullptr);
    controller.loadPlaceholderView();
    EXPECT_THAT(agenda()->subviews(), IsEmpty());
}

// Taps.

TEST_F(QuorvelViewControllerTest, TapsTheViewUnderThePoint) {
    memory.clock.setNow(at(0, 10));
    controller.loadFullView();
    show();
    const auto target = std::make_shared<TouchRecorder>(CGRectMake(50, 10, 40, 40));
    controller.view()->addSubview(target);

    EXPECT_EQ(controller.launchURLForTapLocation({60, 20}), std::nullopt);
    ASSERT_THAT(target->messages, SizeIs(2));
    const TouchMessage& began = target->messages[0];
    const TouchMessage& ended = target->messages[1];
    EXPECT_EQ(began.name, "began");
    EXPECT_EQ(static_cast<int>(began.phase), 0);
    EXPECT_EQ(began.recordSize, 128U);
    EXPECT_EQ(ended.name, "ended");
    EXPECT_EQ(static_cast<int>(ended.phase), 3);
    EXPECT_EQ(ended.recordSize, 128U);
    EXPECT_TRUE(isSameTouch(began, ended));
    EXPECT_EQ(began.touchedView.lock(), target);
    EXPECT_EQ(began.window.lock(), window);
    EXPECT_EQ(began.locationInWindow, (CGPoint{60, 120}));
    EXPECT_EQ(began.location, (CGPoint{10, 10}));
    EXPECT_EQ(ended.location, (CGPoint{10, 10}));
    EXPECT_EQ(began.timestamp, at(0, 10).timeIntervalSinceReferenceDate);
    EXPECT_THAT(place->messages, IsEmpty());
}

TEST_F(QuorvelViewControllerTest, TapsARow) {
    addEvent("Lunch", at(0, 12));
    controller.loadFullView();
    show();
    const auto cell = std::dynamic_pointer_cast<QVL_UITableViewCell>(
        agenda()->itemsTableView()->cellForRowAtIndexPath({0, 0}));
    ASSERT_NE(cell, nullptr);
    EXPECT_EQ(controller.launchURLForTapLocation({160, 20}), std::nullopt);
    ASSERT_THAT(place->messages, SizeIs(2)); // handed up from the row
    EXPECT_EQ(place->messages[0].name, "began");
    EXPECT_EQ(place->messages[0].touchedView.lock(), cell->scrollView());
    EXPECT_EQ(place->messages[1].name, "ended");
    EXPECT_THAT(memory.application.opened, IsEmpty()); // a tap is no pull
}

TEST_F(QuorvelViewControllerTest, TapsNothingOutsideEveryView) {
    controller.loadFullView();
    show();
    EXPECT_EQ(controller.launchURLForTapLocation({-1, 20}), std::nullopt);
    EXPECT_EQ(controller.launchURLForTapLocation({10, 1000}), std::nullopt);
    EXPECT_THAT(place->messages, IsEmpty());
    window->setHidden(true);
    EXPECT_EQ(controller.launchURLForTapLocation({10, 20}), std::nullopt);
    EXPECT_THAT(place->messages, IsEmpty());
}

TEST_F(QuorvelViewControllerTest, TapsWhatElseLiesUnderThePoint) {
    controller.loadFullView();
    show();
    controller.launchURLForTapLocation({10, 200}); // below the view, within its place
    ASSERT_THAT(place->messages, SizeIs(2));
    EXPECT_EQ(place->messages[0].touchedView.lock(), place);
}

TEST_F(QuorvelViewControllerTest, TapsNothingWithoutAWindow) {
    const auto target = std::make_shared<TouchRecorder>(CGRectMake(0, 0, 100, 70));
    controller.view()->addSubview(target);
    EXPECT_EQ(controller.launchURLForTapLocation({10, 10}), std::nullopt);
    EXPECT_THAT(target->messages, IsEmpty());
    controller.unloadView();
    EXPECT_EQ(controller.launchURLForTapLocation({10, 10}), std::nullopt);
}

// A host may react to the touch by taking the view away.
TEST_F(QuorvelViewControllerTest, SurvivesATapThatUnloadsTheView) {
    class Unloader : public UIView {
    public:
        Unloader(QuorvelViewController& owner, const CGRect& frame)
            : UIView(frame)
            , m_owner(owner) {}
        void touchesBegan(const UITouchSet&, UIEvent&) override { m_owner.unloadView(); }
        void touchesEnded(const UITouchSet&, UIEvent&) override { ended = true; }
        bool ended = false;

    private:
        QuorvelViewController& m_owner;
    };
    controller.loadFullView();
    show();
    const auto target = std::make_shared<Unloader>(controller, CGRectMake(0, 0, 320, 70));
    controller.view()->addSubview(target);
    controller.launchURLForTapLocation({10, 10});
    EXPECT_TRUE(target->ended);
}

} // namespace
} // namespace quorvel
