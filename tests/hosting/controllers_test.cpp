// Both controllers: creation, sizing and presentation.
#include <gmock/gmock.h>

#include "agenda/quorvel_view.h"
#include "hosting/quorvel_view_controller_new.h"
#include "hosting/quorvel_view_controller_new_today.h"
#include "tests/agenda/agenda_fixture.h"
#include "tests/hosting/recording_host.h"

namespace quorvel {
namespace {

using namespace platform;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

template <class Controller>
class ControllerFixture : public AgendaFixture {
protected:
    ControllerFixture() { setStockPreferences(); }

    std::shared_ptr<Controller> makeController() {
        auto made = std::make_shared<Controller>(platform());
        made->setWidgetHost(&host);
        return made;
    }

    // Rows of 43.5 points.
    void addEvents(int count) {
        for (int i = 0; i < count; ++i) {
            addEvent("event", at(0, 12));
        }
    }

    static std::shared_ptr<QuorvelView> agendaOf(Controller& controller) {
        return std::dynamic_pointer_cast<QuorvelView>(controller.view());
    }

    RecordingHost host;
};

class ControllerNewTest : public ControllerFixture<QuorvelViewControllerNew> {
protected:
    std::shared_ptr<QuorvelViewControllerNew> controller = makeController();
};

class ControllerNewTodayTest : public ControllerFixture<QuorvelViewControllerNewToday> {
protected:
    std::shared_ptr<QuorvelViewControllerNewToday> controller = makeController();
};

// Creation.

TEST_F(ControllerNewTest, KnowsItsBundle) {
    EXPECT_EQ(controller->bundle(), nullptr);
    const auto bundle = std::make_shared<memory::MemoryBundle>();
    memory.bundles.bundles["QuorvelViewControllerNew"] = bundle;
    EXPECT_EQ(QuorvelViewControllerNew(platform()).bundle(), bundle);
    controller->setBundle(bundle);
    EXPECT_EQ(controller->bundle(), bundle);
}

TEST_F(ControllerNewTodayTest, KnowsItsBundle) {
    const auto bundle = std::make_shared<memory::MemoryBundle>();
    memory.bundles.bundles["QuorvelViewControllerNewToday"] = bundle;
    EXPECT_EQ(QuorvelViewControllerNewToday(platform()).bundle(), bundle);
    controller->setBundle(bundle);
    EXPECT_EQ(controller->bundle(), bundle);
}

TEST_F(ControllerNewTest, AsksForNothingBeforeItIsUsed) {
    EXPECT_FALSE(controller->isViewLoaded());
    EXPECT_EQ(controller->totalHeight(), 0);
    EXPECT_EQ(controller->maxHeight(), 0);
    EXPECT_FALSE(controller->limitMaxHeight());
    EXPECT_THAT(memory.preferences.reads, IsEmpty());
}

// Settings and sizing.

TEST_F(ControllerNewTest, IsUsuallyAsLargeAsItMayBeBeforeItIsMeasured) {
    EXPECT_EQ(controller->preferredViewSize(), (CGSize{320, 300}));
    EXPECT_EQ(controller->totalHeight(), 300);
    EXPECT_THAT(memory.systemLog.lines, ElementsAre("QRV: unable to load preferences."));
}

TEST_F(ControllerNewTest, ReadsOnlyItsTwoSettings) {
    setSettings(
        {{"maxHeight", plist("250.5")}, {"limitMaxHeight", plist(1)}, {"textSize", plist(30)}});
    controller->loadPreferences();
    EXPECT_EQ(controller->maxHeight(), 250.5);
    EXPECT_TRUE(controller->limitMaxHeight());
    EXPECT_EQ(settings::textSize, 0);
    EXPECT_FALSE(settings::limitMaxHeight);
    setSettings({{"maxHeight", plist(250.5)}});
    controller->loadPreferences();
    EXPECT_EQ(controller->maxHeight(), 250.5);
    EXPECT_FALSE(controller->limitMaxHeight());
}

TEST_F(ControllerNewTest, ReadsItsSettingsAtEverySizeQuery) {
    setSettings({{"maxHeight", plist(200)}});
    EXPECT_EQ(controller->preferredViewSize(), (CGSize{320, 200}));
    setSettings({{"maxHeight", plist(100)}, {"limitMaxHeight", plist(true)}});
    EXPECT_EQ(controller->preferredViewSize(), (CGSize{320, 100}));
    EXPECT_THAT(memory.preferences.reads, SizeIs(2));
}

TEST_F(ControllerNewTest, LeavesItsSettingsWhereTheServiceFails) {
    memory.preferences.foundationVersion = 1048;
    EXPECT_EQ(controller->preferredViewSize(), (CGSize{320, 0}));
    EXPECT_THAT(memory.systemLog.lines, ElementsAre("QRV: unable to get preferences"));

    memory.preferences.setDomain("org.quorvel.quorvelprefs",
                                 {{"maxHeight", plist(200)}, {"limitMaxHeight", plist(true)}});
    controller->loadPreferences();
    memory.preferences.domains.at("org.quorvel.quorvelprefs").values.reset();
    controller->loadPreferences();
    EXPECT_EQ(controller->maxHeight(), 200);
    EXPECT_TRUE(controller->limitMaxHeight());
    EXPECT_EQ(memory.systemLog.lines.back(), "QRV: preferences dictionary error");
}

// Presentation.

TEST_F(ControllerNewTest, LoadsAViewOfThePreferredSize) {
    const auto view = agendaOf(*controller);
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(view->frame(), CGRectMake(0, 0, 320, 300));
    EXPECT_EQ(view->backgroundColor(), UIColor::clearColor());
    EXPECT_NE(view->itemsTableView(), nullptr);
    EXPECT_EQ(view->itemsTableView()->frame(), CGRectMake(0, 0, 320, 300));
}

TEST_F(ControllerNewTest, CollapsesOnceWithoutEvents) {
    controller->view();
    EXPECT_THAT(host.sizes, ElementsAre(CGSize{320, 0}));
    EXPECT_EQ(controller->totalHeight(), 0);
    EXPECT_EQ(controller->preferredViewSize(), (CGSize{320, 300}));
}

TEST_F(ControllerNewTest, ReportsItsHeightWhenItIsLoaded) {
    addEvents(10);
    controller->view();
    EXPECT_THAT(host.messages, ElementsAre("update"));
    EXPECT_THAT(host.sizes, ElementsAre(CGSize{320, 435}));
    EXPECT_EQ(controller->totalHeight(), 435);
}

TEST_F(ControllerNewTest, IsNoHigherThanItMayBe) {
    addEvents(10);
    setSettings({{"maxHeight", plist(200)}});
    controller->view();
    setSettings({{"maxHeight", plist(200)}, {"limitMaxHeight", plist(true)}});
    EXPECT_EQ(controller->preferredViewSize(), (CGSize{320, 200}));
    EXPECT_EQ(controller->totalHeight(), 435);
    EXPECT_THAT(host.sizes, ElementsAre(CGSize{320, 435}));
}

TEST_F(ControllerNewTest, StaysBelowWhatItMayBe) {
    addEvents(3);
    for (const bool limit : {false, true}) {
        setSettings({{"maxHeight", plist(200)}, {"limitMaxHeight", plist(limit)}});
        controller->hostWillPresent();
        EXPECT_EQ(host.sizes.back(), (CGSize{320, 130.5}));
    }
}

TEST_F(ControllerNewTest, GathersAndMeasuresAgainWhenItIsPresented) {
    addEvents(1);
    controller->view();
    host.messages.clear();
    addEvents(1);
    controller->hostWillPresent();
    EXPECT_THAT(host.messages, ElementsAre("update", "invalidate"));
    EXPECT_EQ(host.sizes.back(), (CGSize{320, 87}));
    EXPECT_THAT(*agendaOf(*controller)->items(), SizeIs(2));
    EXPECT_EQ(controller->totalHeight(), 87);
}

TEST_F(ControllerNewTest, AnswersTheQueryAfterAnEmptyPresentationInFull) {
    controller->view();
    controller->hostWillPresent();
    EXPECT_THAT(host.messages, ElementsAre("update", "update", "invalidate"));
    EXPECT_EQ(host.sizes.back(), (CGSize{320, 0}));
    EXPECT_EQ(controller->preferredViewSize(), (CGSize{320, 300}));
}

TEST_F(ControllerNewTest, LoadsItsViewWhenItIsPresentedWithoutOne) {
    addEvents(1);
    controller->hostWillPresent();
    EXPECT_TRUE(controller->isViewLoaded());
    EXPECT_THAT(host.messages, ElementsAre("update", "update", "invalidate"));
}

TEST_F(ControllerNewTest, DoesNothingWhenItIsShownOrDismissed) {
    addEvents(1);
    controller->view();
    host.messages.clear();
    memory.preferences.reads.clear();
    addEvents(1);
    controller->hostDidPresent();
    controller->hostDidDismiss();
    EXPECT_THAT(host.messages, IsEmpty());
    EXPECT_THAT(memory.preferences.reads, IsEmpty());
    EXPECT_THAT(*agendaOf(*controller)->items(), SizeIs(1));
    EXPECT_EQ(controller->totalHeight(), 43.5);
}

TEST_F(ControllerNewTest, SendsAHostOnlyWhatItKnows) {
    host.updates = false;
    controller->view();
    controller->hostWillPresent();
    EXPECT_THAT(host.messages, ElementsAre("invalidate"));
    // Nothing has requested the size, so it still has the mark for no rows.
    EXPECT_EQ(controller->totalHeight(), -1);

    host.updates = true; // the controller checks the host each time
    host.invalidates = false;
    host.messages.clear();
    controller->hostWillPresent();
    EXPECT_THAT(host.messages, ElementsAre("update"));

    host.hasDelegate = false;
    host.messages.clear();
    controller->hostWillPresent();
    EXPECT_THAT(host.messages, IsEmpty());

    controller->setWidgetHost(nullptr);
    controller->hostWillPresent();
    EXPECT_THAT(host.messages, IsEmpty());
}

TEST_F(ControllerNewTest, CopesWithAnotherView) {
    controller->setView(std::make_shared<UIView>());
    controller->viewDidLoad();
    EXPECT_EQ(controller->view()->backgroundColor(), UIColor::clearColor());
    controller->hostWillPresent();
    EXPECT_THAT(host.messages, ElementsAre("update", "update", "invalidate"));
}

TEST_F(ControllerNewTest, LeavesAViewThatOutlivesItAlone) {
    addEvents(1);
    const auto view = agendaOf(*controller);
    controller.reset();
    view->reloadItems();
    view->layoutIfNeeded();
    EXPECT_THAT(view->itemsTableView()->visibleCells(), SizeIs(1));
}

TEST_F(ControllerNewTest, NamesItsValues) {
    setSettings({{"maxHeight", plist(200)}, {"limitMaxHeight", plist(true)}});
    addEvents(1);
    controller->view();
    EXPECT_EQ(controller->className(), "QuorvelViewControllerNew");
    EXPECT_THAT(controller->keys(), ElementsAre("totalHeight", "maxHeight", "limitMaxHeight"));
    EXPECT_EQ(std::get<CGFloat>(controller->valueForKey("totalHeight")), 43.5);
    EXPECT_EQ(std::get<CGFloat>(controller->valueForKey("maxHeight")), 200);
    EXPECT_TRUE(std::get<bool>(controller->valueForKey("limitMaxHeight")));
    EXPECT_EQ(controller->valueForKey("bundle").index(), 0U);
}

// Today.

TEST_F(ControllerNewTodayTest, HasOneSize) {
    setSettings({{"maxHeight", plist(100)}, {"limitMaxHeight", plist(true)}});
    EXPECT_EQ(controller->preferredViewSize(), (CGSize{320, 270}));
    EXPECT_THAT(memory.preferences.reads, IsEmpty());
    addEvents(10);
    controller->view();
    EXPECT_EQ(controller->preferredViewSize(), (CGSize{320, 270}));
}

TEST_F(ControllerNewTodayTest, LoadsTheAgenda) {
    addEvents(2);
    const auto view = agendaOf(*controller);
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(view->frame(), CGRectMake(0, 0, 320, 270));
    EXPECT_EQ(view->backgroundColor(), UIColor::clearColor());
    EXPECT_THAT(*view->items(), SizeIs(2));
}

TEST_F(ControllerNewTodayTest, ReloadsWithoutAMessage) {
    addEvents(1);
    controller->view();
    addEvents(1);
    controller->hostWillPresent();
    controller->hostDidPresent();
    controller->hostDidDismiss();
    EXPECT_THAT(*agendaOf(*controller)->items(), SizeIs(2));
    EXPECT_THAT(host.messages, IsEmpty());
}

TEST_F(ControllerNewTodayTest, ScrollsWhereTheHeightIsLimited) {
    setSettings({{"limitMaxHeight", plist(true)}});
    addEvents(10);
    controller->hostWillPresent();
    EXPECT_TRUE(agendaOf(*controller)->itemsTableView()->isScrollEnabled());
    setSettings({});
    controller->hostWillPresent();
    EXPECT_FALSE(agendaOf(*controller)->itemsTableView()->isScrollEnabled());
}

} // namespace
} // namespace quorvel
