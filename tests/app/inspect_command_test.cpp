// Details of the widget that scripts of host events can observe.
#include <gtest/gtest.h>

#include <numeric>

#include "tests/app/inspect_fixture.h"

namespace quorvel::app {
namespace {

TEST_F(InspectCommandTest, TheDocumentHasEveryKey) {
    writeEvents(2);
    const Json document = inspected({"present", "layout:320,100"});
    for (const char* key : {"controller", "steps", "settings", "items", "totalHeight", "view"}) {
        EXPECT_TRUE(document.contains(key)) << key;
    }
    ASSERT_EQ(document.at("steps").size(), 3U);
    EXPECT_EQ(document.at("steps")[0].at("do"), "load");
    EXPECT_EQ(document.at("steps")[2].at("do"), "layout:320,100");
    for (const Json& step : document.at("steps")) {
        EXPECT_EQ(step.size(), 7U);
        for (const char* key : {"host", "opened", "activated", "touches", "log"}) {
            EXPECT_TRUE(step.at(key).is_array()) << key;
        }
        EXPECT_EQ(step.at("result"), nullptr);
    }
    EXPECT_EQ(document.size(), 6U);
    EXPECT_EQ(document.at("items").at(0).size(), 7U);
    EXPECT_EQ(document.dump().find("captions"), std::string::npos);
    EXPECT_EQ(document.at("items").at(0).at("calendarColor"), "#336699FF");
    const Json& view = document.at("view");
    EXPECT_EQ(view.at("class"), "QuorvelView");
    EXPECT_EQ(view.at("frame"), Json::parse("[0, 0, 320, 100]"));
    EXPECT_EQ(view.at("backgroundColor"), "#00000000");
    const Json table = tableOf(document);
    EXPECT_EQ(table.at("autoresizingMask"), 18);
    EXPECT_EQ(table.at("frame"), Json::parse("[0, 0, 320, 100]"));
    const Json cell = cellsByRow(document).at(0);
    EXPECT_EQ(cell.at("reuseIdentifier"), "Dynamic Cell");
    EXPECT_EQ(cell.at("calendarColor"), "#336699FF");
    EXPECT_TRUE(labelOf(cell, 0).at("textSize").at(0).get<double>() > 0);
    EXPECT_EQ(labelOf(cell, 0).at("attributedText"),
              Json::parse(R"({"string": "Event 0", "foregroundColor": "#FFFFFFFF"})"));
    EXPECT_EQ(labelOf(cell, 1).at("text"), nullptr);
    EXPECT_EQ(labelOf(cell, 1).at("textSize"), Json::parse("[0, 0]"));
    const Json icon = viewsOfClass(cell, "UIImageView").at(0);
    EXPECT_EQ(icon.at("frame"), Json::parse("[13, 10, 20, 20]"));
    EXPECT_EQ(icon.at("contentMode"), "scaleAspectFit");
    EXPECT_GT(icon.at("image").at("size").at(0).get<double>(), 0);
}

TEST_F(InspectCommandTest, WithoutEventsTheSizeIsFirstZeroAndThenTheLimit) {
    const Json document = inspected({"size", "size", "present", "size"});
    EXPECT_EQ(document.at("view").at("frame"), Json::parse("[0, 0, 320, 300]"));
    const Json& steps = document.at("steps");
    EXPECT_EQ(steps[0].at("host"),
              Json::parse(R"([{"message": "widget:didUpdatePreferredSize:", "size": [320, 0]}])"));
    EXPECT_EQ(steps[0].at("log").at(0), "QRV: unable to load preferences.");
    EXPECT_EQ(steps[1].at("result"), Json::parse("[320, 300]"));
    EXPECT_EQ(steps[2].at("result"), Json::parse("[320, 300]"));
    EXPECT_EQ(steps[3].at("host"),
              Json::parse(R"([{"message": "widget:didUpdatePreferredSize:", "size": [320, 0]},
                              {"message": "invalidatePreferredViewSize"}])"));
    EXPECT_EQ(steps[4].at("result"), Json::parse("[320, 300]"));
    EXPECT_EQ(document.at("totalHeight"), 300);
}

TEST_F(InspectCommandTest, TheHeightIsLimitedOnlyByTheSetting) {
    writeEvents(8);
    const double total = inspected({}).at("totalHeight");
    const auto heightWith = [&](const std::string& entries) {
        writeSettings(entries);
        return inspected({"present", "size"}).at("steps")[2].at("result")[1].get<double>();
    };
    EXPECT_EQ(heightWith(integer("maxHeight", 200)), total);
    EXPECT_EQ(heightWith(integer("maxHeight", 200) + flag("limitMaxHeight", true)), 200);
    EXPECT_EQ(heightWith(text("maxHeight", "250.5") + flag("limitMaxHeight", true)), 250.5);
    EXPECT_EQ(heightWith(integer("maxHeight", 2000)), total);
    EXPECT_EQ(heightWith(integer("maxHeight", 2000) + flag("limitMaxHeight", true)), total);
}

TEST_F(InspectCommandTest, TheTotalHeightIsTheSumOfTheRows) {
    writeEvents(3);
    const Json document = inspected({"present"});
    const auto heights = tableOf(document).at("rowHeights").get<std::vector<double>>();
    ASSERT_EQ(heights.size(), 3U);
    EXPECT_DOUBLE_EQ(std::accumulate(heights.begin(), heights.end(), 0.0),
                     document.at("totalHeight").get<double>());
    EXPECT_NEAR(heights[0] - 26, labelOf(cellsByRow(document).at(0), 0).at("textSize")[1], 1e-9);
}

TEST_F(InspectCommandTest, TheTodayControllerNeverResizes) {
    writeEvents(9);
    const Json document =
        inspected({"present", "size"}, {"--controller", "QuorvelViewControllerNewToday"});
    EXPECT_EQ(document.at("controller"), "QuorvelViewControllerNewToday");
    EXPECT_EQ(document.at("view").at("frame"), Json::parse("[0, 0, 320, 270]"));
    EXPECT_EQ(document.at("steps")[2].at("result"), Json::parse("[320, 270]"));
    EXPECT_EQ(document.at("totalHeight"), nullptr);
    for (const Json& step : document.at("steps")) {
        EXPECT_EQ(step.at("host"), Json::array());
    }
}

TEST_F(InspectCommandTest, AnEmptyDictionaryGivesTheDefaults) {
    const Json settings = settingsWith("");
    EXPECT_EQ(settings.at("limitMaxHeight"), false);
    EXPECT_EQ(settings.at("customLaunchAppBundleID"), "");
    EXPECT_EQ(settings.at("showSeparatorLines"), true);
    EXPECT_EQ(settings.at("rightAlignedDate"), false);
    EXPECT_EQ(settings.at("onlySelectedCalendars"), true);
    EXPECT_EQ(settings.at("displayLocation"), false);
    EXPECT_EQ(settings.at("sameHeightRows"), true);
    EXPECT_EQ(settings.at("swipeAction"), 1);
    EXPECT_EQ(settings.at("textColor"), "#FFFFFFFF");
    EXPECT_EQ(settings.at("subtitleTextColor"), "#808080FF");
    EXPECT_EQ(settings.at("dateTextColor"), "#808080FF");
    EXPECT_EQ(settings.at("textSize"), 14);
    EXPECT_EQ(settings.at("daysToDisplay"), 2);
    EXPECT_EQ(settings.at("maxEventsToDisplay"), 0);
    EXPECT_EQ(settings.at("iconFile"), "/Applications/MobileCal.app/icon-about@2x.png");
    EXPECT_EQ(settings.at("iconRoundingNeeded"), true);
}

TEST_F(InspectCommandTest, SwipeActionsOutsideTheirRangeAreTheFirst) {
    for (const auto& [stored, read] :
         std::map<int, int>{{0, 0}, {1, 1}, {2, 2}, {3, 3}, {7, 1}, {-2, 1}}) {
        EXPECT_EQ(settingsWith(integer("swipeAction", stored)).at("swipeAction"), read) << stored;
    }
}

TEST_F(InspectCommandTest, WithoutASwipeActionNewCellsTakeNoTouches) {
    writeEvents(1);
    writeSettings(integer("swipeAction", 0));
    const auto scrollView = [](const Json& document) {
        return viewsOfClass(cellsByRow(document).at(0), "UIScrollView").at(0);
    };
    EXPECT_EQ(scrollView(inspected({})).at("userInteractionEnabled"), false);
    writeSettings("");
    const std::string none = otherSettings("none", integer("swipeAction", 0));
    const Json later = inspected({none, "present"});
    EXPECT_EQ(scrollView(later).at("userInteractionEnabled"), true)
        << "a cell that was created before";
    EXPECT_EQ(scrollView(later).at("scrollEnabled"), true);
    EXPECT_EQ(scrollView(later).at("alwaysBounceHorizontal"), true);
    EXPECT_EQ(later.at("settings").at("swipeAction"), 0);
}

TEST_F(InspectCommandTest, AnEventWithoutALinkDoesNotScroll) {
    writeCalendar("Work", event("not a link", "x", "DTSTART:20260310T120000Z"));
    const Json document = inspected({});
    EXPECT_EQ(document.at("items").at(0).at("URL"), nullptr);
    EXPECT_EQ(viewsOfClass(cellsByRow(document).at(0), "UIScrollView").at(0).at("scrollEnabled"),
              false);
}

TEST_F(InspectCommandTest, ColourCodesBecomeColours) {
    EXPECT_EQ(settingsWith(integer("textColor", 3)).at("textColor"), "#FFFFFFFF");
    EXPECT_EQ(settingsWith(integer("textColor", 4)).at("textColor"), "#00FF00FF");
    EXPECT_EQ(settingsWith(integer("textColor", 10)).at("textColor"), "#FFFFFFFF");
    EXPECT_EQ(settingsWith(integer("textColor", -1)).at("textColor"), "#FFFFFFFF");
    EXPECT_EQ(settingsWith(integer("dateTextColor", 7)).at("dateTextColor"), "#FF8000FF");
    EXPECT_EQ(settingsWith(integer("subtitleTextColor", 999)).at("subtitleTextColor"), "#FFFFFFFF");
}

TEST_F(InspectCommandTest, TheCalendarColourSettingSurvivesAMissingKey) {
    writeEvents(1);
    writeSettings(integer("textColor", 999));
    const std::string absent = otherSettings("absent", "");
    const std::string gray = otherSettings("gray", integer("textColor", 2));
    const Json kept = inspected({absent, "present"});
    EXPECT_EQ(kept.at("settings").at("titleColorSameAsCalendarColor"), true);
    EXPECT_EQ(kept.at("settings").at("textColor"), "#FFFFFFFF");
    EXPECT_EQ(labelOf(cellsByRow(kept).at(0), 0).at("textColor"), "#336699FF");
    const Json reset = inspected({gray, "present"});
    EXPECT_EQ(reset.at("settings").at("titleColorSameAsCalendarColor"), false);
    EXPECT_EQ(labelOf(cellsByRow(reset).at(0), 0).at("textColor"), "#808080FF");
}

TEST_F(InspectCommandTest, TheServiceWithoutADomainLeavesTheZeroState) {
    const Json document = inspected({"present"}, {"--foundation-version", "1200"});
    EXPECT_EQ(document.at("steps")[1].at("log").at(0), "QRV: unable to get preferences");
    const Json& settings = document.at("settings");
    for (const char* key : {"textColor", "subtitleTextColor", "dateTextColor", "iconFile"}) {
        EXPECT_EQ(settings.at(key), nullptr) << key;
    }
    EXPECT_EQ(settings.at("textSize"), 0);
    EXPECT_EQ(settings.at("showSeparatorLines"), false);
    EXPECT_EQ(settings.at("swipeAction"), 0);
}

TEST_F(InspectCommandTest, FromFoundation1048OnTheServiceIsRead) {
    const auto firstLine = [&](const std::string& version) {
        const Json document = inspected({"present"}, {"--foundation-version", version});
        return document.at("steps")[1].at("log").at(0);
    };
    EXPECT_EQ(firstLine("1047.99"), "QRV: unable to load preferences.");
    EXPECT_EQ(firstLine("1048"), "QRV: unable to get preferences");
}

TEST_F(InspectCommandTest, TheServiceReadsTheSameDomain) {
    writeSettings(integer("textSize", 20));
    const std::string gone = otherSettings("gone", "");
    const Json document = inspected({gone, "present"}, {"--foundation-version", "1200"});
    EXPECT_EQ(document.at("settings").at("textSize"), 20) << "an empty domain changes nothing";
    EXPECT_EQ(document.at("settings").at("daysToDisplay"), 2);
}

TEST_F(InspectCommandTest, IconsFollowTheirSetting) {
    writeEvents(1);
    const auto imageWith = [&](const std::string& icon) {
        writeSettings(text("iconFile", icon));
        return viewsOfClass(cellsByRow(inspected({})).at(0), "UIImageView").at(0).at("image");
    };
    const Json dot = Json::parse(R"({"size": [80, 80], "scale": 1})");
    EXPECT_EQ(imageWith("DOT"), dot);
    EXPECT_EQ(imageWith("DOT_LARGE"), dot);
    EXPECT_EQ(imageWith("NONE"), nullptr);
    EXPECT_EQ(imageWith("dot"), nullptr);
}

TEST_F(InspectCommandTest, TheListScrollsAsTheLimitSaysFromTheFirstReloadOn) {
    writeEvents(1);
    EXPECT_EQ(tableOf(inspected({})).at("scrollEnabled"), true);
    EXPECT_EQ(tableOf(inspected({"present"})).at("scrollEnabled"), false);
    writeSettings(flag("limitMaxHeight", true));
    EXPECT_EQ(tableOf(inspected({"present"})).at("scrollEnabled"), true);
}

TEST_F(InspectCommandTest, SeparatorsChangeAtTheNextPresentation) {
    writeEvents(1);
    const std::string none = otherSettings("none", flag("showSeparatorLines", false));
    EXPECT_EQ(tableOf(inspected({})).at("separatorStyle"), 1);
    EXPECT_EQ(tableOf(inspected({none})).at("separatorStyle"), 1);
    EXPECT_EQ(tableOf(inspected({none, "present"})).at("separatorStyle"), 0);
}

TEST_F(InspectCommandTest, RowsOfDifferentHeights) {
    writeCalendar("Work", event("1", "With", "DTSTART:20260310T110000Z", "Here") +
                              event("2", "Without", "DTSTART:20260310T120000Z"));
    const auto heightsWith = [&](const std::string& entries) {
        writeSettings(entries);
        return tableOf(inspected({})).at("rowHeights").get<std::vector<double>>();
    };
    const auto plain = heightsWith("");
    EXPECT_EQ(plain[0], plain[1]);
    const auto same = heightsWith(flag("displayLocation", true));
    EXPECT_EQ(same[0], same[1]);
    EXPECT_GT(same[0], plain[0]);
    const auto uneven = heightsWith(flag("displayLocation", true) + flag("sameHeightRows", false));
    EXPECT_EQ(uneven[0], same[0]);
    EXPECT_EQ(uneven[1], plain[1]);
}

TEST_F(InspectCommandTest, AReusedCellKeepsTheLocationThatItShowed) {
    // Six rows with a location fill the view, four without come after them.
    std::string events;
    for (int number = 0; number < 10; ++number) {
        events += event(std::to_string(number), "Event " + std::to_string(number),
                        "DTSTART:20260310T1" + std::to_string(number) + "1500Z",
                        number < 6 ? "Here" : "");
    }
    writeCalendar("Work", events);
    writeSettings(flag("displayLocation", true));
    const auto cells = cellsByRow(inspected({"layout:320,50", "scroll:450"}));
    ASSERT_FALSE(cells.empty());
    for (const auto& [row, cell] : cells) {
        EXPECT_GE(row, 6);
        EXPECT_EQ(labelOf(cell, 0).at("text"), "Event " + std::to_string(row));
        EXPECT_EQ(labelOf(cell, 1).at("text"), "Here");
    }
}

TEST_F(InspectCommandTest, OnlyVisibleRowsHaveCells) {
    writeEvents(10);
    const Json top = inspected({"layout:320,100"});
    EXPECT_LE(cellsByRow(top).size(), 4U);
    EXPECT_TRUE(cellsByRow(top).contains(0));
    const Json scrolled = inspected({"layout:320,100", "scroll:200"});
    EXPECT_FALSE(cellsByRow(scrolled).contains(0));
    EXPECT_EQ(tableOf(scrolled).at("contentOffset"), Json::parse("[0, 200]"));
    EXPECT_EQ(tableOf(scrolled).at("rowHeights").size(), 10U);
}

TEST_F(InspectCommandTest, TheDateMeetsTheTitleOnOneLine) {
    writeEvents(1);
    const auto cellWith = [&](const std::string& entries) {
        writeSettings(entries);
        return cellsByRow(inspected({})).at(0);
    };
    const Json left = cellWith("");
    const Json title = labelOf(left, 0).at("frame");
    const Json date = labelOf(left, 2).at("frame");
    EXPECT_EQ(title[0], 47);
    EXPECT_EQ(title[1], 13);
    EXPECT_NEAR(date[0].get<double>(), 47 + title[2].get<double>() + 10, 1e-9);
    const Json right = labelOf(cellWith(flag("rightAlignedDate", true)), 2).at("frame");
    EXPECT_NEAR(right[0].get<double>() + right[2].get<double>(), 310, 1e-9);
    const Json large = cellWith(integer("dateTextSize", 30));
    EXPECT_EQ(labelOf(large, 2).at("frame")[1], 13);
    EXPECT_NEAR(labelOf(large, 0).at("frame")[1].get<double>() +
                    labelOf(large, 0).at("frame")[3].get<double>(),
                13 + labelOf(large, 2).at("frame")[3].get<double>(), 1e-9);
}

TEST_F(InspectCommandTest, TheNumberOfRowsIsLimited) {
    writeEvents(5);
    writeSettings(integer("maxEventsToDisplay", 3));
    EXPECT_EQ(inspected({}).at("items").size(), 3U);
    writeSettings(integer("maxEventsToDisplay", -5));
    EXPECT_EQ(inspected({}).at("items").size(), 5U);
}

TEST_F(InspectCommandTest, OnlySelectedCalendarsAreSearched) {
    writeEvents(1);
    writeSettings(flag("onlySelectedCalendars", false));
    const Json none = inspected({});
    EXPECT_EQ(none.at("items"), Json::array());
    EXPECT_EQ(none.at("steps")[0].at("log").at(0),
              "QRV: no enabled calendars found, not searching the DB!");
    writeSelection({"nobody"});
    const Json unknown = inspected({});
    EXPECT_EQ(unknown.at("items"), Json::array());
    EXPECT_EQ(unknown.at("steps")[0].at("log").at(0),
              "QRV: unable to find calendar with UUID nobody, skipping");
}

TEST_F(InspectCommandTest, ChangedCalendarsAndClocksShowAtTheNextPresentation) {
    writeEvents(1);
    write("other.ics", "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n" +
                           event("o", "Other", "DTSTART:20260410T120000Z") + "END:VCALENDAR\r\n");
    const std::vector<std::string> steps{"calendars:" + path("other.ics").string(),
                                         "now:2026-04-10T08:00:00Z"};
    EXPECT_EQ(inspected(steps).at("items").at(0).at("title"), "Event 0");
    const Json shown = inspected({steps[0], steps[1], "present"});
    EXPECT_EQ(shown.at("items").at(0).at("title"), "Other");
    EXPECT_EQ(labelOf(cellsByRow(shown).at(0), 2).at("text"), "12:00");
}

TEST_F(InspectCommandTest, CaptionsCountCalendarDays) {
    writeCalendar("Work", event("1", "Next day", "DTSTART:20260330T070000Z") +
                              event("2", "Eight days on", "DTSTART:20260406T070000Z"));
    writeSettings(integer("daysToDisplay", 10));
    const std::vector<std::string> berlin{"--timezone", "Europe/Berlin", "--locale",
                                          "de_DE",      "--now",         "2026-03-29T12:00:00"};
    const auto cells = cellsByRow(inspected({}, berlin));
    EXPECT_EQ(labelOf(cells.at(0), 2).at("text"), "09:00") << "the clocks go forward on this day";
    EXPECT_EQ(labelOf(cells.at(1), 2).at("text"), "Mo., 09:00");
}

TEST_F(InspectCommandTest, TheWidthAppliesToTheViewOnce) {
    writeEvents(1);
    EXPECT_EQ(inspected({}, {"--width", "400"}).at("view").at("frame"),
              Json::parse("[0, 0, 400, 300]"));
}

} // namespace
} // namespace quorvel::app
