#include "hosting/bundle_classes.h"

#include <gmock/gmock.h>

#include "agenda/quorvel_view.h"
#include "hosting/process_wide_values.h"
#include "hosting/quorvel_view_controller.h"
#include "hosting/quorvel_view_controller_new.h"
#include "hosting/quorvel_view_controller_new_today.h"
#include "platform/cg_color.h"
#include "tests/agenda/agenda_fixture.h"

namespace quorvel {
namespace {

using namespace platform;
using testing::ElementsAre;

class BundleClassesTest : public AgendaFixture {};

TEST_F(BundleClassesTest, MakesItsControllersByName) {
    const WidgetBundle& bundle = widgetBundle();
    EXPECT_EQ(bundle.interfaceVersion, widgetBundleInterfaceVersion);
    EXPECT_THAT(bundle.controllerClassNames(),
                ElementsAre("QuorvelViewControllerNew", "QuorvelViewControllerNewToday",
                            "QuorvelViewController"));
    EXPECT_NE(std::dynamic_pointer_cast<QuorvelViewControllerNew>(
                  bundle.makeController("QuorvelViewControllerNew", platform())),
              nullptr);
    EXPECT_NE(std::dynamic_pointer_cast<QuorvelViewControllerNewToday>(
                  bundle.makeController("QuorvelViewControllerNewToday", platform())),
              nullptr);
    EXPECT_NE(std::dynamic_pointer_cast<QuorvelViewController>(
                  bundle.makeWeeAppController("QuorvelViewController", platform())),
              nullptr);
    for (const char* name : {"", "QuorvelView", "quorvelViewControllerNew", "EKEventQRV"}) {
        EXPECT_EQ(bundle.makeController(name, platform()), nullptr) << name;
        EXPECT_EQ(bundle.makeWeeAppController(name, platform()), nullptr) << name;
    }
}

TEST_F(BundleClassesTest, MakesEachControllerAsOfOneKind) {
    const WidgetBundle& bundle = widgetBundle();
    for (const std::string_view name : bundle.controllerClassNames()) {
        const bool isLegacy = name == "QuorvelViewController";
        EXPECT_EQ(bundle.makeController(name, platform()) == nullptr, isLegacy) << name;
        EXPECT_EQ(bundle.makeWeeAppController(name, platform()) != nullptr, isLegacy) << name;
    }
}

TEST_F(BundleClassesTest, ConvertsColours) {
    const WidgetBundle& bundle = widgetBundle();
    EXPECT_EQ(bundle.colorFromHexString("#00FF00"), UIColor::greenColor());
    EXPECT_EQ(bundle.colorFromHexString(std::nullopt), UIColor::whiteColor());
    const auto agenda = std::make_shared<QuorvelView>(platform(), CGRect{});
    EXPECT_EQ(bundle.hexStringForColor(*agenda, {{0, 0, 1, 1}}), "#0000FF");
    EXPECT_EQ(memory.systemLog.lines.size(), 2U);
    EXPECT_EQ(bundle.hexStringForColor(*std::make_shared<UIView>(), {}), std::nullopt);
    EXPECT_EQ(memory.systemLog.lines.size(), 2U);
}

TEST_F(BundleClassesTest, ListsTheProcessWideValues) {
    const KeyValueCoding& values = widgetBundle().processWideValues();
    EXPECT_THAT(values.keys(),
                ElementsAre("limitMaxHeight", "customLaunchAppBundleID", "showSeparatorLines",
                            "rightAlignedDate", "onlySelectedCalendars", "displayLocation",
                            "sameHeightRows", "titleColorSameAsCalendarColor", "textColor",
                            "subtitleTextColor", "dateTextColor", "textSize", "subtitleTextSize",
                            "dateTextSize", "daysToDisplay", "maxEventsToDisplay", "iconFile",
                            "iconRoundingNeeded", "cellWithoutSubtitleHeight",
                            "cellWithSubtitleHeight"));
}

TEST_F(BundleClassesTest, ReadsTheZeroState) {
    const ProcessWideValues values;
    for (const char* key : {"customLaunchAppBundleID", "textColor", "subtitleTextColor",
                            "dateTextColor", "iconFile"}) {
        EXPECT_EQ(values.valueForKey(key).index(), 0U) << key;
    }
    EXPECT_EQ(values.valueForKey("textSize"), KeyValue(std::int64_t{0}));
    EXPECT_EQ(values.valueForKey("showSeparatorLines"), KeyValue(false));
    EXPECT_EQ(values.valueForKey("cellWithSubtitleHeight"), KeyValue(0.0));
    EXPECT_EQ(values.valueForKey("maxHeight").index(), 0U);
}

TEST_F(BundleClassesTest, ReadsTheVariablesThemselves) {
    const ProcessWideValues values;
    settings::titleColorSameAsCalendarColor = true;
    settings::textColor = UIColor::greenColor();
    settings::subtitleTextColor = UIColor::redColor();
    settings::dateTextColor = UIColor::blueColor();
    settings::textSize = 11;
    settings::subtitleTextSize = 12;
    settings::dateTextSize = 13;
    settings::daysToDisplay = -4;
    settings::maxEventsToDisplay = 5;
    settings::iconFile = "DOT";
    settings::customLaunchAppBundleID = "org.example";
    settings::iconRoundingNeeded = true;
    settings::cellWithoutSubtitleHeight = 43.5;
    settings::cellWithSubtitleHeight = 61;
    EXPECT_EQ(values.valueForKey("titleColorSameAsCalendarColor"), KeyValue(true));
    EXPECT_EQ(values.valueForKey("textColor"), KeyValue(UIColor::greenColor()));
    EXPECT_EQ(values.valueForKey("subtitleTextColor"), KeyValue(UIColor::redColor()));
    EXPECT_EQ(values.valueForKey("dateTextColor"), KeyValue(UIColor::blueColor()));
    EXPECT_EQ(values.valueForKey("textSize"), KeyValue(std::int64_t{11}));
    EXPECT_EQ(values.valueForKey("subtitleTextSize"), KeyValue(std::int64_t{12}));
    EXPECT_EQ(values.valueForKey("dateTextSize"), KeyValue(std::int64_t{13}));
    EXPECT_EQ(values.valueForKey("daysToDisplay"), KeyValue(std::int64_t{-4}));
    EXPECT_EQ(values.valueForKey("maxEventsToDisplay"), KeyValue(std::int64_t{5}));
    EXPECT_EQ(values.valueForKey("iconFile"), KeyValue(std::string("DOT")));
    EXPECT_EQ(values.valueForKey("customLaunchAppBundleID"), KeyValue(std::string("org.example")));
    EXPECT_EQ(values.valueForKey("iconRoundingNeeded"), KeyValue(true));
    EXPECT_EQ(values.valueForKey("cellWithoutSubtitleHeight"), KeyValue(43.5));
    EXPECT_EQ(values.valueForKey("cellWithSubtitleHeight"), KeyValue(61.0));

    const std::pair<const char*, bool*> flags[] = {
        {"limitMaxHeight", &settings::limitMaxHeight},
        {"showSeparatorLines", &settings::showSeparatorLines},
        {"rightAlignedDate", &settings::rightAlignedDate},
        {"onlySelectedCalendars", &settings::onlySelectedCalendars},
        {"displayLocation", &settings::displayLocation},
        {"sameHeightRows", &settings::sameHeightRows}};
    for (const auto& [name, flag] : flags) {
        EXPECT_EQ(values.valueForKey(name), KeyValue(false)) << name;
        *flag = true;
        EXPECT_EQ(values.valueForKey(name), KeyValue(true)) << name;
    }
}

} // namespace
} // namespace quorvel
