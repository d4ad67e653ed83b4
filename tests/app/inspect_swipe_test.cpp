// What pulling, dragging and tapping rows does, as it can be seen from outside.
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/app/inspect_fixture.h"

namespace quorvel::app {
namespace {

class InspectSwipeTest : public InspectCommandTest {
protected:
    // The links that each step after the load opened.
    static std::vector<Json> openedBySteps(const Json& document) {
        std::vector<Json> opened;
        for (const Json& step : document.at("steps")) {
            EXPECT_TRUE(step.at("touches").empty() || step.at("do") != "load");
            opened.push_back(step.at("opened"));
        }
        opened.erase(opened.begin());
        return opened;
    }
    std::vector<Json> opened(const std::vector<std::string>& steps) const {
        return openedBySteps(inspected(steps));
    }
    static Json link(const Json& document, std::size_t row) {
        return Json::array({document.at("items").at(row).at("URL")});
    }
    static Json rowScrollView(const Json& document, int row) {
        return viewsOfClass(cellsByRow(document).at(row), "UIScrollView").at(0);
    }
};

const Json nothing = Json::array();

TEST_F(InspectSwipeTest, MoreThanEightyPointsToTheRightOpenTheEvent) {
    writeEvents(3);
    const Json document =
        inspected({"pull:0:80", "pull:0:80.5", "pull:2:81", "pull:0:80.00000001"});
    EXPECT_EQ(openedBySteps(document), (std::vector<Json>{nothing, link(document, 0),
                                                          link(document, 2), link(document, 0)}));
    EXPECT_TRUE(link(document, 0)[0].get<std::string>().starts_with("x-apple-calevent://"));
    for (const Json& step : document.at("steps")) {
        EXPECT_EQ(step.at("result"), nullptr);
        EXPECT_EQ(step.at("activated"), nothing);
        EXPECT_EQ(step.at("touches"), nothing) << "a pull sends no touches";
    }
}

TEST_F(InspectSwipeTest, APulledRowSpringsBackWithinItsStep) {
    writeEvents(1);
    for (const char* step : {"pull:0:300", "pull:0:-300", "pull:0:1e6", "drag:60,20:300,0"}) {
        const Json document = inspected({step});
        EXPECT_EQ(rowScrollView(document, 0).at("contentOffset"), Json::parse("[0, 0]")) << step;
    }
}

TEST_F(InspectSwipeTest, APullToTheLeftOpensNothing) {
    writeEvents(1);
    for (const char* step : {"pull:0:-80.5", "pull:0:-1e6", "pull:0:0", "pull:0:-0.0"}) {
        EXPECT_EQ(opened({step}), std::vector<Json>{nothing}) << step;
    }
}

TEST_F(InspectSwipeTest, EveryPullRunsTheActionAndReloadsNothing) {
    writeEvents(1);
    write("none.ics", "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nEND:VCALENDAR\r\n");
    const Json document = inspected(
        {"pull:0:90", "calendars:" + path("none.ics").string(), "pull:0:90", "pull:0:90"});
    EXPECT_EQ(openedBySteps(document), (std::vector<Json>{link(document, 0), nothing,
                                                          link(document, 0), link(document, 0)}));
    EXPECT_EQ(document.at("items").size(), 1U);
}

TEST_F(InspectSwipeTest, APullOfAMissingRowDoesNothing) {
    writeEvents(2);
    const Json document = inspected({"pull:2:90", "pull:18446744073709551615:90"});
    EXPECT_EQ(openedBySteps(document), (std::vector<Json>{nothing, nothing}));
    write("none.ics", "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nEND:VCALENDAR\r\n");
    EXPECT_EQ(opened({"calendars:" + path("none.ics").string(), "present", "pull:0:90"}),
              (std::vector<Json>{nothing, nothing, nothing}));
}

TEST_F(InspectSwipeTest, APullScrollsToItsRowOnlyWhereNecessary) {
    writeEvents(10);
    const Json far = inspected({"layout:320,100", "pull:9:90"});
    EXPECT_EQ(openedBySteps(far).at(1), link(far, 9));
    EXPECT_TRUE(cellsByRow(far).contains(9));
    const Json near = inspected({"layout:320,60", "scroll:10", "pull:0:90", "pull:1:90"});
    EXPECT_EQ(openedBySteps(near).at(2), link(near, 0));
    EXPECT_EQ(openedBySteps(near).at(3), link(near, 1));
    EXPECT_EQ(tableOf(near).at("contentOffset"), Json::parse("[0, 10]"));
}

TEST_F(InspectSwipeTest, ActionTwoOpensTheDayOfTheEvent) {
    writeCalendar("Work", event("1", "Supper", "DTSTART:20140307T184500Z"));
    writeSettings(integer("swipeAction", 2));
    const Json document =
        inspected({"pull:0:80", "pull:0:80.5"}, {"--now", "2014-03-07T10:00:00Z"});
    EXPECT_EQ(openedBySteps(document),
              (std::vector<Json>{nothing, Json::array({"fantastical2://show?date=2014-3-7"})}));
    const Json auckland = inspected(
        {"pull:0:90"}, {"--now", "2014-03-07T10:00:00Z", "--timezone", "Pacific/Auckland"});
    EXPECT_EQ(openedBySteps(auckland).at(0), Json::array({"fantastical2://show?date=2014-3-8"}));
}

TEST_F(InspectSwipeTest, ActionThreeActivatesTheApplication) {
    writeEvents(1);
    writeSettings(integer("swipeAction", 3) +
                  text("customLaunchAppBundleID", "org.gnome.Calendar"));
    const Json document = inspected({"pull:0:80", "pull:0:80.5", "pull:0:-90"});
    EXPECT_EQ(openedBySteps(document), (std::vector<Json>{nothing, nothing, nothing}));
    EXPECT_EQ(document.at("steps")[1].at("activated"), nothing);
    EXPECT_EQ(document.at("steps")[2].at("activated"), Json::array({"org.gnome.Calendar"}));
    EXPECT_EQ(document.at("steps")[3].at("activated"), nothing);
}

TEST_F(InspectSwipeTest, ActivatesAnyIdentifier) {
    writeEvents(1);
    writeSettings(integer("swipeAction", 3) + text("customLaunchAppBundleID", "no; $(such) \"app"));
    EXPECT_EQ(inspected({"pull:0:90"}).at("steps")[1].at("activated"),
              Json::array({"no; $(such) \"app"}));
}

TEST_F(InspectSwipeTest, ActionThreeWithoutAnIdentifierDoesNothing) {
    writeEvents(1);
    for (const std::string& identifier : {std::string(), text("customLaunchAppBundleID", "")}) {
        writeSettings(integer("swipeAction", 3) + identifier);
        const Json step = inspected({"pull:0:90"}).at("steps")[1];
        EXPECT_EQ(step.at("opened"), nothing);
        EXPECT_EQ(step.at("activated"), nothing);
    }
}

TEST_F(InspectSwipeTest, ARowWithoutALinkCannotBePulled) {
    writeCalendar("Work", event("not a link", "x", "DTSTART:20260310T120000Z"));
    for (const int action : {1, 2, 3}) {
        writeSettings(integer("swipeAction", action) +
                      text("customLaunchAppBundleID", "org.gnome.Calendar"));
        const Json document = inspected({"pull:0:90", "drag:60,20:300,0"});
        for (const Json& step : document.at("steps")) {
            EXPECT_EQ(step.at("opened"), nothing) << action;
            EXPECT_EQ(step.at("activated"), nothing) << action;
        }
    }
}

TEST_F(InspectSwipeTest, ARowCreatedWithAnActionStillMovesWithoutOne) {
    writeEvents(1);
    const std::string none = otherSettings("none", integer("swipeAction", 0));
    const Json document =
        inspected({"pull:0:90", none, "present", "pull:0:90", "drag:60,20:300,0", "tap:60,20"});
    const std::vector<Json> opened = openedBySteps(document);
    EXPECT_EQ(opened.at(0), link(document, 0));
    EXPECT_EQ(opened.at(3), nothing);
    EXPECT_EQ(opened.at(4), nothing);
    EXPECT_EQ(document.at("steps")[6].at("touches").at(0).at("view"), "UIScrollView");
    EXPECT_EQ(document.at("settings").at("swipeAction"), 0);
}

TEST_F(InspectSwipeTest, ARowCreatedWithoutAnActionCannotBeDragged) {
    writeEvents(1);
    writeSettings(integer("swipeAction", 0));
    const std::string first = otherSettings("first", integer("swipeAction", 1));
    const Json document = inspected({"pull:0:90", "drag:60,20:300,0", "tap:60,20", first, "present",
                                     "pull:0:90", "drag:60,20:300,0"});
    for (const Json& opened : openedBySteps(document)) {
        EXPECT_EQ(opened, nothing);
    }
    EXPECT_NE(document.at("steps")[3].at("touches").at(0).at("view"), "UIScrollView");
    EXPECT_EQ(document.at("settings").at("swipeAction"), 1);
}

TEST_F(InspectSwipeTest, AFingerMovesFartherThanItsRow) {
    // A row 320 points wide moves past its edge by 80 points while the finger moves by 193.94
    // points, in addition to the first 10 points, which move nothing.
    writeEvents(3);
    const Json document = inspected({"drag:60,20:203.9,0", "drag:60,20:204,0"});
    EXPECT_EQ(openedBySteps(document), (std::vector<Json>{nothing, link(document, 0)}));
    // A row of 200 points: 242.42 points.
    const Json narrow = inspected({"layout:200,300", "drag:60,20:252.4,0", "drag:60,20:252.5,0"});
    EXPECT_EQ(openedBySteps(narrow).at(1), nothing);
    EXPECT_EQ(openedBySteps(narrow).at(2), link(narrow, 0));
}

TEST_F(InspectSwipeTest, AFingerPullsTheRowWhereItCameDown) {
    writeEvents(3);
    const auto heights = tableOf(inspected({})).at("rowHeights").get<std::vector<double>>();
    const std::string second = std::to_string(heights[0] + 20);
    const Json document =
        inspected({"drag:60," + second + ":250,0", "drag:60," + second + ":250,-40"});
    EXPECT_EQ(openedBySteps(document), (std::vector<Json>{link(document, 1), link(document, 1)}));
}

TEST_F(InspectSwipeTest, OtherDragsOpenNothing) {
    writeEvents(9);
    for (const char* step :
         {"drag:60,20:100,0", "drag:300,20:-250,0", "drag:60,20:0,250", "drag:60,20:0,-250",
          "drag:60,20:250,260", "drag:60,20:-1e6,0", "drag:60,20:0,0", "drag:60,20:9,0",
          "drag:-5,20:300,0", "drag:60,1000:300,0", "drag:1e6,1e6:1e6,1e6"}) {
        EXPECT_EQ(opened({step}), std::vector<Json>{nothing}) << step;
    }
}

TEST_F(InspectSwipeTest, AVerticalDragScrollsTheListWithoutAFling) {
    writeEvents(10);
    const Json document = inspected({"layout:320,100", "drag:60,80:0,-60"});
    EXPECT_EQ(tableOf(document).at("contentOffset"), Json::parse("[0, 50]"));
    const Json past = inspected({"layout:320,100", "drag:60,20:0,60"});
    EXPECT_EQ(tableOf(past).at("contentOffset"), Json::parse("[0, 0]")) << "it springs back";
}

TEST_F(InspectSwipeTest, ATapIsATouchThatBeginsAndEnds) {
    writeEvents(2);
    const Json document = inspected({"tap:60,20", "tap:319.5,20", "tap:320,20", "present"});
    const Json touches = Json::parse(
        R"([{"view": "UIScrollView", "message": "touchesBegan", "phase": 0},
            {"view": "UIScrollView", "message": "touchesEnded", "phase": 3}])");
    EXPECT_EQ(document.at("steps")[1].at("touches"), touches);
    EXPECT_EQ(document.at("steps")[2].at("touches"), touches);
    EXPECT_EQ(document.at("steps")[3].at("touches"), nothing) << "outside the view";
    EXPECT_EQ(document.at("steps")[4].at("touches"), nothing);
    EXPECT_EQ(document.at("steps")[1].at("result"), nullptr);
    EXPECT_EQ(openedBySteps(document), (std::vector<Json>{nothing, nothing, nothing, nothing}));
}

TEST_F(InspectSwipeTest, ADragIsATouchThatMovesInBetween) {
    writeEvents(1);
    EXPECT_EQ(inspected({"drag:60,20:204,0"}).at("steps")[1].at("touches"),
              Json::parse(
                  R"([{"view": "UIScrollView", "message": "touchesBegan", "phase": 0},
            {"view": "UIScrollView", "message": "touchesMoved", "phase": 1},
            {"view": "UIScrollView", "message": "touchesEnded", "phase": 3}])"));
}

TEST_F(InspectSwipeTest, TheTodayControllerSwipesToo) {
    writeEvents(2);
    const Json document =
        inspected({"present", "pull:1:80.5"}, {"--controller", "QuorvelViewControllerNewToday"});
    EXPECT_EQ(openedBySteps(document).at(1), link(document, 1));
}

TEST_F(InspectSwipeTest, OpensNothingOnTheDesktop) {
    // A handler for both schemes that would create a file.
    write("home/.local/share/applications/recorder.desktop",
          "[Desktop Entry]\nType=Application\nName=Recorder\nExec=/usr/bin/touch " +
              path("opened").string() +
              "\nMimeType=x-scheme-handler/x-apple-calevent;"
              "x-scheme-handler/fantastical2;\n");
    write("home/.config/mimeapps.list",
          "[Default Applications]\nx-scheme-handler/x-apple-calevent=recorder.desktop\n"
          "x-scheme-handler/fantastical2=recorder.desktop\n");
    writeEvents(1);
    for (const int action : {1, 2, 3}) {
        writeSettings(integer("swipeAction", action) + text("customLaunchAppBundleID", "recorder"));
        const Json step = inspected({"pull:0:90"}).at("steps")[1];
        EXPECT_EQ(step.at("opened").size() + step.at("activated").size(), 1U) << action;
        EXPECT_EQ(step.at("log"), nothing) << action;
    }
    EXPECT_FALSE(std::filesystem::exists(path("opened")));
}

} // namespace
} // namespace quorvel::app
