// QuorvelView's loadPreferences: every key, the zero state and the early return.
#include <gmock/gmock.h>

#include "agenda/quorvel_view.h"
#include "tests/agenda/agenda_fixture.h"

namespace quorvel {
namespace {

using namespace platform;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string defaultIcon = "/Applications/MobileCal.app/icon-about@2x.png";

class LoadingTest : public AgendaFixture {
protected:
    void load(PropertyListDictionary dictionary) {
        setSettings(std::move(dictionary));
        view->loadPreferences();
    }

    void expectDefaults() {
        EXPECT_FALSE(settings::limitMaxHeight);
        EXPECT_EQ(settings::customLaunchAppBundleID, "");
        EXPECT_TRUE(settings::showSeparatorLines);
        EXPECT_FALSE(settings::rightAlignedDate);
        EXPECT_TRUE(settings::onlySelectedCalendars);
        EXPECT_FALSE(settings::displayLocation);
        EXPECT_TRUE(settings::sameHeightRows);
        EXPECT_EQ(view->swipeAction(), 1);
        EXPECT_EQ(settings::textColor, UIColor::whiteColor());
        EXPECT_EQ(settings::textSize, 14);
        EXPECT_EQ(settings::subtitleTextColor, UIColor::grayColor());
        EXPECT_EQ(settings::subtitleTextSize, 14);
        EXPECT_EQ(settings::dateTextColor, UIColor::grayColor());
        EXPECT_EQ(settings::dateTextSize, 14);
        EXPECT_EQ(settings::daysToDisplay, 2);
        EXPECT_EQ(settings::maxEventsToDisplay, 0);
        EXPECT_EQ(settings::iconFile, defaultIcon);
        EXPECT_TRUE(settings::iconRoundingNeeded);
    }

    void expectZeroState() {
        EXPECT_FALSE(settings::limitMaxHeight);
        EXPECT_EQ(settings::customLaunchAppBundleID, std::nullopt);
        EXPECT_FALSE(settings::showSeparatorLines);
        EXPECT_FALSE(settings::onlySelectedCalendars);
        EXPECT_FALSE(settings::sameHeightRows);
        EXPECT_EQ(settings::textColor, std::nullopt);
        EXPECT_EQ(settings::subtitleTextColor, std::nullopt);
        EXPECT_EQ(settings::dateTextColor, std::nullopt);
        EXPECT_EQ(settings::textSize, 0);
        EXPECT_EQ(settings::subtitleTextSize, 0);
        EXPECT_EQ(settings::dateTextSize, 0);
        EXPECT_EQ(settings::daysToDisplay, 0);
        EXPECT_EQ(settings::iconFile, std::nullopt);
        EXPECT_FALSE(settings::iconRoundingNeeded);
        EXPECT_EQ(view->swipeAction(), 0);
        EXPECT_EQ(view->icon(), nullptr);
    }

    std::shared_ptr<QuorvelView> view = std::make_shared<QuorvelView>(platform(), CGRect{});
};

TEST_F(LoadingTest, TakesEveryDefaultFromAnEmptyDictionary) {
    memory.imageFiles.images[defaultIcon] = memory::makeImage({29, 29}, 2);
    load({});
    expectDefaults();
    EXPECT_FALSE(settings::titleColorSameAsCalendarColor);
    EXPECT_THAT(memory.systemLog.lines, IsEmpty());
    ASSERT_NE(view->icon(), nullptr);
    EXPECT_EQ(view->icon()->size(), (CGSize{29, 29}));
    EXPECT_THAT(memory::recordedPixels(*view->icon())->operations,
                testing::Contains("scaleCTM 3 3"));
}

TEST_F(LoadingTest, TakesEveryDefaultWithoutAFile) {
    view->loadPreferences();
    expectDefaults();
    EXPECT_THAT(memory.systemLog.lines, ElementsAre("QRV: unable to load preferences."));
}

TEST_F(LoadingTest, TakesEveryValueThatIsStored) {
    memory.imageFiles.images["/pictures/star.png"] = memory::makeImage({20, 20});
    load({{"limitMaxHeight", plist(true)},
          {"customLaunchAppBundleID", plist("org.example.notes")},
          {"showSeparatorLines", plist(false)},
          {"rightAlignedDate", plist(true)},
          {"onlySelectedCalendars", plist(false)},
          {"displayLocation", plist(true)},
          {"sameHeightRows", plist(false)},
          {"swipeAction", plist(2)},
          {"textColor", plist(5)},
          {"textSize", plist(18)},
          {"subtitleTextColor", plist(6)},
          {"subtitleTextSize", plist(16)},
          {"dateTextColor", plist(0)},
          {"dateTextSize", plist(12)},
          {"daysToDisplay", plist(9)},
          {"maxEventsToDisplay", plist(4)},
          {"iconFile", plist("/pictures/star.png")}});
    EXPECT_TRUE(settings::limitMaxHeight);
    EXPECT_EQ(settings::customLaunchAppBundleID, "org.example.notes");
    EXPECT_FALSE(settings::showSeparatorLines);
    EXPECT_TRUE(settings::rightAlignedDate);
    EXPECT_FALSE(settings::onlySelectedCalendars);
    EXPECT_TRUE(settings::displayLocation);
    EXPECT_FALSE(settings::sameHeightRows);
    EXPECT_EQ(view->swipeAction(), 2);
    EXPECT_EQ(settings::textColor, UIColor::blueColor());
    EXPECT_EQ(settings::textSize, 18);
    EXPECT_EQ(settings::subtitleTextColor, UIColor::yellowColor());
    EXPECT_EQ(settings::subtitleTextSize, 16);
    EXPECT_EQ(settings::dateTextColor, UIColor::redColor());
    EXPECT_EQ(settings::dateTextSize, 12);
    EXPECT_EQ(settings::daysToDisplay, 9);
    EXPECT_EQ(settings::maxEventsToDisplay, 4);
    EXPECT_EQ(settings::iconFile, "/pictures/star.png");
    EXPECT_FALSE(settings::iconRoundingNeeded);
    // Only the stock picture gets rounded corners.
    EXPECT_EQ(view->icon(), memory.imageFiles.images["/pictures/star.png"]);
}

TEST_F(LoadingTest, ReadsThroughTheServiceToo) {
    memory.preferences.foundationVersion = 1048;
    memory.preferences.setDomain("org.quorvel.quorvelprefs", {{"textSize", plist(21)}});
    view->loadPreferences();
    EXPECT_EQ(settings::textSize, 21);
    EXPECT_EQ(settings::dateTextSize, 14);
}

TEST_F(LoadingTest, StaysInTheZeroStateWithoutAKeyList) {
    memory.preferences.foundationVersion = 1048;
    view->loadPreferences();
    expectZeroState();
    EXPECT_THAT(memory.systemLog.lines, ElementsAre("QRV: unable to get preferences"));
    EXPECT_EQ(view->getIconForItemNumber(0), nullptr);
}

TEST_F(LoadingTest, StaysInTheZeroStateWithoutValues) {
    memory.preferences.foundationVersion = 1048;
    memory.preferences.domains["org.quorvel.quorvelprefs"].keyList =
        std::vector<std::string>{"textSize"};
    view->loadPreferences();
    expectZeroState();
    EXPECT_THAT(memory.systemLog.lines, ElementsAre("QRV: preferences dictionary error"));
}

TEST_F(LoadingTest, LeavesTheLastValuesWhereTheServiceFails) {
    memory.imageFiles.images[defaultIcon] = memory::makeImage({29, 29});
    load({{"textSize", plist(18)}, {"swipeAction", plist(3)}});
    const auto icon = view->icon();
    memory.preferences.foundationVersion = 1048;
    view->loadPreferences();
    EXPECT_EQ(settings::textSize, 18);
    EXPECT_EQ(settings::textColor, UIColor::whiteColor());
    EXPECT_EQ(view->swipeAction(), 3);
    EXPECT_EQ(view->icon(), icon);
}

TEST_F(LoadingTest, AcceptsOnlyThreeSwipeActionsBesideTheDefault) {
    const auto loaded = [this](int stored) {
        load({{"swipeAction", plist(stored)}});
        return view->swipeAction();
    };
    EXPECT_EQ(loaded(0), 0);
    EXPECT_EQ(loaded(1), 1);
    EXPECT_EQ(loaded(2), 2);
    EXPECT_EQ(loaded(3), 3);
    EXPECT_EQ(loaded(7), 1);
    EXPECT_EQ(loaded(4), 1);
    EXPECT_EQ(loaded(-2), 1);
}

TEST_F(LoadingTest, ReadsTheTitlesColour) {
    load({{"textColor", plist(3)}});
    EXPECT_EQ(settings::textColor, UIColor::whiteColor());
    load({{"textColor", plist(10)}});
    EXPECT_EQ(settings::textColor, UIColor::whiteColor());
    load({{"textColor", plist(-1)}});
    EXPECT_EQ(settings::textColor, UIColor::whiteColor());
    EXPECT_FALSE(settings::titleColorSameAsCalendarColor);

    load({{"textColor", plist(999)}});
    EXPECT_EQ(settings::textColor, UIColor::whiteColor());
    EXPECT_TRUE(settings::titleColorSameAsCalendarColor);
    load({{"textColor", plist(2)}});
    EXPECT_EQ(settings::textColor, UIColor::grayColor());
    EXPECT_FALSE(settings::titleColorSameAsCalendarColor);
}

TEST_F(LoadingTest, LeavesTheTitlesFlagWithoutTheKey) {
    load({{"textColor", plist(999)}});
    load({});
    EXPECT_EQ(settings::textColor, UIColor::whiteColor());
    EXPECT_TRUE(settings::titleColorSameAsCalendarColor);
    load({{"textColor", plist(2)}});
    load({});
    EXPECT_EQ(settings::textColor, UIColor::whiteColor());
    EXPECT_FALSE(settings::titleColorSameAsCalendarColor);
}

TEST_F(LoadingTest, KnowsTheCalendarColourOnlyForTheTitle) {
    load({{"subtitleTextColor", plist(999)}, {"dateTextColor", plist(999)}});
    EXPECT_EQ(settings::subtitleTextColor, UIColor::whiteColor());
    EXPECT_EQ(settings::dateTextColor, UIColor::whiteColor());
    EXPECT_FALSE(settings::titleColorSameAsCalendarColor);
}

TEST_F(LoadingTest, ConvertsValuesOfTheWrongKind) {
    load({{"limitMaxHeight", {PropertyListArray{plist(1)}}},
          {"showSeparatorLines", {NSDate{1}}},
          {"customLaunchAppBundleID", plist(7)},
          {"swipeAction", {PropertyListDictionary{}}},
          {"textColor", {PropertyListData{}}},
          {"textSize", plist("16pt")},
          {"daysToDisplay", {PropertyListArray{}}},
          {"iconFile", {PropertyListDictionary{}}}});
    EXPECT_FALSE(settings::limitMaxHeight);
    EXPECT_FALSE(settings::showSeparatorLines);
    EXPECT_EQ(settings::customLaunchAppBundleID, "7");
    EXPECT_EQ(view->swipeAction(), 0);
    EXPECT_EQ(settings::textColor, UIColor::redColor());
    EXPECT_EQ(settings::textSize, 16);
    EXPECT_EQ(settings::daysToDisplay, 0);
    EXPECT_EQ(settings::iconFile, "");
    EXPECT_EQ(view->icon(), nullptr);
}

TEST_F(LoadingTest, SharesTheSettingsBetweenViewsButNotTheSwipeAction) {
    const auto other = std::make_shared<QuorvelView>(platform(), CGRect{});
    load({{"textSize", plist(18)}, {"swipeAction", plist(2)}});
    setSettings({{"textSize", plist(20)}, {"swipeAction", plist(3)}});
    other->loadPreferences();
    EXPECT_EQ(settings::textSize, 20);
    EXPECT_EQ(view->swipeAction(), 2);
    EXPECT_EQ(other->swipeAction(), 3);
}

// The picture of the rows.

TEST_F(LoadingTest, RoundsTheStockPictureWhereItIsNamed) {
    memory.imageFiles.images[defaultIcon] = memory::makeImage({29, 29}, 2);
    load({{"iconFile", plist(defaultIcon.c_str())}});
    EXPECT_EQ(settings::iconFile, defaultIcon);
    EXPECT_FALSE(settings::iconRoundingNeeded);
    ASSERT_NE(view->icon(), nullptr);
    EXPECT_NE(view->icon(), memory.imageFiles.images[defaultIcon]);
    EXPECT_THAT(memory::recordedPixels(*view->icon())->operations,
                testing::Contains("scaleCTM 3 3"));
}

TEST_F(LoadingTest, NeverTurnsRoundingOffAgain) {
    load({});
    load({{"iconFile", plist("DOT")}});
    EXPECT_TRUE(settings::iconRoundingNeeded);
}

TEST_F(LoadingTest, LeavesThePictureUnderAWord) {
    memory.imageFiles.images["/star.png"] = memory::makeImage({20, 20});
    load({{"iconFile", plist("/star.png")}});
    for (const char* word : {"DOT", "DOT_LARGE", "NONE"}) {
        load({{"iconFile", plist(word)}});
        EXPECT_EQ(settings::iconFile, word);
        EXPECT_EQ(view->icon(), memory.imageFiles.images["/star.png"]);
    }
    EXPECT_THAT(memory.imageFiles.reads, ElementsAre("/star.png"));
}

TEST_F(LoadingTest, DropsThePictureForAPathThatCannotBeLoaded) {
    memory.imageFiles.images["/star.png"] = memory::makeImage({20, 20});
    load({{"iconFile", plist("/star.png")}});
    load({{"iconFile", plist("dot")}}); // no word in this spelling
    EXPECT_EQ(view->icon(), nullptr);
    EXPECT_EQ(view->getIconForItemNumber(0), nullptr);
    EXPECT_THAT(memory.imageFiles.reads, ElementsAre("/star.png", "dot"));
}

TEST_F(LoadingTest, HasNoPictureWhereTheStockOneIsMissing) {
    load({});
    EXPECT_EQ(view->icon(), nullptr);
    EXPECT_THAT(memory.imageFiles.reads, ElementsAre(defaultIcon));
}

} // namespace
} // namespace quorvel
