// The controller for older hosts, observed through scripts of host events.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <iterator>

#include "tests/app/inspect_fixture.h"

namespace quorvel::app {
namespace {

class InspectLegacyTest : public InspectCommandTest {
protected:
    static constexpr const char* controller = "QuorvelViewController";

    Json inspectedLegacy(const std::vector<std::string>& steps,
                         std::vector<std::string> more = {}) const {
        more.insert(more.end(), {"--controller", controller});
        return inspected(steps, more);
    }
    RunResult runLegacy(std::vector<std::string> arguments) const {
        arguments.insert(arguments.end(), {"--controller", controller});
        return runHere(arguments);
    }
};

const Json nothing = Json::array();

TEST_F(InspectLegacyTest, LoadCreatesTheControllerOnly) {
    writeEvents(2);
    const Json document = inspectedLegacy({});
    EXPECT_EQ(document.at("controller"), controller);
    const Json load = document.at("steps").at(0);
    EXPECT_EQ(load, Json::parse(R"({"do": "load", "result": null, "host": [], "opened": [],
                                    "activated": [], "touches": [], "log": []})"));
    EXPECT_EQ(document.at("view"),
              Json::parse(R"({"class": "QuorvelView", "frame": [0, 0, 0, 70], "tag": 0,
                              "backgroundColor": null, "autoresizingMask": 2,
                              "userInteractionEnabled": true, "subviews": []})"));
    EXPECT_EQ(document.at("items"), nothing);
    EXPECT_EQ(document.at("totalHeight"), nullptr);
    EXPECT_EQ(document.at("settings").at("swipeAction"), 0);
    EXPECT_EQ(document.at("settings").at("textColor"), nullptr) << "no settings were loaded";
}

TEST_F(InspectLegacyTest, TheHeightIsAlwaysSeventyPoints) {
    writeEvents(8);
    writeSettings(integer("maxHeight", 200) + flag("limitMaxHeight", true));
    const Json document = inspectedLegacy({"size", "full-view", "size", "layout:320,70", "size"});
    for (const std::size_t step : {1U, 3U, 5U}) {
        EXPECT_EQ(document.at("steps")[step].at("result"), 70);
        EXPECT_EQ(document.at("steps")[step].at("host"), nothing);
    }
    EXPECT_EQ(document.at("view").at("frame"), Json::parse("[0, 0, 320, 70]"));
}

TEST_F(InspectLegacyTest, TheFullViewIsTheAgenda) {
    writeEvents(3);
    const Json document = inspectedLegacy({"full-view", "layout:320,70"});
    EXPECT_EQ(document.at("items").size(), 3U);
    EXPECT_EQ(document.at("settings").at("swipeAction"), 1);
    EXPECT_EQ(document.at("steps")[1].at("result"), nullptr);
    EXPECT_EQ(document.at("steps")[1].at("log"),
              Json::parse("[\"QRV: unable to load preferences.\"]"));
    EXPECT_EQ(tableOf(document).at("frame"), Json::parse("[0, 0, 320, 70]"));
    EXPECT_EQ(labelOf(cellsByRow(document).at(0), 0).at("text"), "Event 0");
}

TEST_F(InspectLegacyTest, TheWidthAppliesToEveryViewOnce) {
    const std::vector<std::string> wide{"--width", "400"};
    const auto frame = [&](const std::vector<std::string>& steps) {
        return inspectedLegacy(steps, wide).at("view").at("frame");
    };
    EXPECT_EQ(frame({}), Json::parse("[0, 0, 400, 70]"));
    EXPECT_EQ(frame({"full-view", "unload", "placeholder"}), Json::parse("[0, 0, 400, 70]"));
    EXPECT_EQ(frame({"layout:300,80"}), Json::parse("[0, 0, 300, 80]"));
    EXPECT_EQ(frame({"full-view", "layout:300,80", "present"}), Json::parse("[0, 0, 300, 80]"));
}

TEST_F(InspectLegacyTest, PresentingRefreshesNothing) {
    writeEvents(1);
    write("other.ics", "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n" +
                           event("o", "Other", "DTSTART:20260310T120000Z") + "END:VCALENDAR\r\n");
    const std::string other = "calendars:" + path("other.ics").string();
    const Json shown = inspectedLegacy({"present", "full-view", other, "present", "dismiss"});
    EXPECT_EQ(shown.at("items").at(0).at("title"), "Event 0");
    for (const Json& step : shown.at("steps")) {
        EXPECT_EQ(step.at("result"), nullptr);
        EXPECT_EQ(step.at("host"), nothing);
    }
    const Json again = inspectedLegacy({"full-view", other, "full-view"});
    EXPECT_EQ(again.at("items").at(0).at("title"), "Other");
}

TEST_F(InspectLegacyTest, ThePlaceholderIsAStretchedPicture) {
    const Json document = inspectedLegacy({"placeholder", "layout:320,70"});
    const Json pictures = viewsOfClass(document.at("view"), "UIImageView");
    ASSERT_EQ(pictures.size(), 1U);
    EXPECT_EQ(pictures[0].at("frame"), Json::parse("[2, 0, 316, 70]"));
    const Json image = pictures[0].at("image");
    const double width = image.at("size").at(0);
    const double height = image.at("size").at(1);
    const double left = std::trunc(std::trunc(width) / 2);
    const double top = std::trunc(std::trunc(height) / 2);
    EXPECT_GT(left, 0);
    EXPECT_GT(top, 0);
    EXPECT_EQ(image.at("capInsets"),
              Json::array({top, left, height - (top + 1), width - (left + 1)}));
    EXPECT_EQ(viewsOfClass(document.at("view"), "UITableView").size(), 0U);
    EXPECT_EQ(document.at("steps")[1].at("log"), nothing) << "no settings, no events";
}

TEST_F(InspectLegacyTest, TheFullViewIsAddedToThePlaceholder) {
    writeEvents(1);
    const Json view = inspectedLegacy({"placeholder", "full-view", "layout:320,70"}).at("view");
    ASSERT_EQ(view.at("subviews").size(), 2U);
    EXPECT_EQ(view.at("subviews")[0].at("class"), "UIImageView");
    EXPECT_EQ(view.at("subviews")[1].at("class"), "UITableView");
}

TEST_F(InspectLegacyTest, AfterUnloadEverythingIsCreatedAgain) {
    writeEvents(2);
    const Json unloaded = inspectedLegacy({"full-view", "layout:320,70", "unload"});
    EXPECT_EQ(unloaded.at("steps")[3].at("result"), nullptr);
    EXPECT_EQ(unloaded.at("view").at("frame"), Json::parse("[0, 0, 0, 70]"));
    EXPECT_EQ(unloaded.at("view").at("subviews"), nothing);
    EXPECT_EQ(unloaded.at("items"), nothing);

    write("other.ics", "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n" +
                           event("o", "Other", "DTSTART:20260310T120000Z") + "END:VCALENDAR\r\n");
    const Json again = inspectedLegacy({"placeholder", "full-view", "unload",
                                        "calendars:" + path("other.ics").string(), "full-view"});
    EXPECT_EQ(again.at("items").size(), 1U);
    EXPECT_EQ(again.at("items").at(0).at("title"), "Other");
    EXPECT_EQ(again.at("view").at("subviews").size(), 1U)
        << "the picture was removed with the view";
    inspectedLegacy({"unload", "unload", "size", "present", "scroll:10", "pull:0:90"});
}

TEST_F(InspectLegacyTest, TheControllerDeliversATap) {
    writeEvents(2);
    const Json document = inspectedLegacy({"full-view", "layout:320,70", "tap:60,20"});
    const Json tap = document.at("steps")[3];
    EXPECT_EQ(tap.at("result"), nullptr);
    EXPECT_EQ(tap.at("opened"), nothing);
    EXPECT_EQ(tap.at("touches"),
              Json::parse(R"([{"view": "UIScrollView", "message": "touchesBegan", "phase": 0},
                              {"view": "UIScrollView", "message": "touchesEnded", "phase": 3}])"));
}

TEST_F(InspectLegacyTest, ATapOutsideTheViewIsNotDelivered) {
    writeEvents(1);
    const Json document = inspectedLegacy(
        {"tap:60,20", "full-view", "tap:60,20", "layout:320,70", "tap:60,70", "tap:-1,20"});
    for (const Json& step : document.at("steps")) {
        EXPECT_EQ(step.at("touches"), nothing) << step.at("do");
    }
}

TEST_F(InspectLegacyTest, RowsCanBePulledAndDragged) {
    writeEvents(5);
    const Json document = inspectedLegacy({"full-view", "layout:320,70", "pull:0:80", "pull:0:80.5",
                                           "drag:60,20:204,0", "pull:4:81", "scroll:0"});
    const auto opened = [&](std::size_t step) { return document.at("steps")[step].at("opened"); };
    const auto link = [&](std::size_t row) {
        return Json::array({document.at("items").at(row).at("URL")});
    };
    EXPECT_EQ(opened(3), nothing);
    EXPECT_EQ(opened(4), link(0));
    EXPECT_EQ(opened(5), link(0));
    EXPECT_EQ(opened(6), link(4));
    EXPECT_EQ(tableOf(document).at("contentOffset"), Json::parse("[0, 0]"));
}

TEST_F(InspectLegacyTest, OtherControllersRefuseItsSteps) {
    for (const std::string step : {"full-view", "placeholder", "unload"}) {
        const RunResult result = runHere({"inspect", "--do", "present", "--do", step});
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors, "quorvel: the step '" + step +
                                     "' cannot be run: QuorvelViewControllerNew has no such "
                                     "operation, name a controller for older hosts with "
                                     "--controller\n");
    }
}

TEST_F(InspectLegacyTest, TheOtherCommandsShowItsRows) {
    writeEvents(9);
    EXPECT_EQ(runLegacy({"agenda"}).output, runHere({"agenda"}).output);
    EXPECT_EQ(runLegacy({"agenda", "--json"}).output, runHere({"agenda", "--json"}).output);
    EXPECT_EQ(runLegacy({"calendars"}).output, runHere({"calendars"}).output);
    const std::string file = path("legacy.svg").string();
    const RunResult snapshot = runLegacy({"snapshot", "-o", file, "--width", "250"});
    EXPECT_EQ(snapshot.status, 0) << snapshot.errors;
    std::ifstream stream(file);
    const std::string svg(std::istreambuf_iterator<char>(stream), {});
    EXPECT_NE(svg.find("viewBox=\"0 0 250 70\""), std::string::npos) << svg.substr(0, 300);
}

} // namespace
} // namespace quorvel::app
