// Long scripts of random host events: in every order, the program succeeds and documents each step.
// The same seed repeats the same scripts.
#include <gtest/gtest.h>

#include <array>
#include <random>

#include "tests/app/inspect_fixture.h"
#include "tests/test_seed.h"

namespace quorvel::app {
namespace {

constexpr std::size_t steps = 1000;

class InspectRandomTest : public InspectCommandTest {
protected:
    InspectRandomTest() {
        writeEvents(9, "Somewhere");
        write("many/many.ics", manyEvents());
        write("broken/broken.ics", "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nSUMMARY:\xED\xA0\x80\r\n");
        std::filesystem::create_directory(path("empty"));
        m_settings = {
            otherSettings("plain", ""),
            otherSettings("limited", integer("maxHeight", 120) + flag("limitMaxHeight", true) +
                                         integer("swipeAction", 2)),
            otherSettings("launching", integer("swipeAction", 3) +
                                           text("customLaunchAppBundleID", "org.App") +
                                           flag("displayLocation", true)),
            otherSettings("hostile", integer("swipeAction", -7) + integer("textSize", -40) +
                                         text("maxHeight", "1e300") +
                                         text("textColor", "\xC3\x28#") +
                                         integer("daysToDisplay", 2147483647)),
            "preferences:" + path("nowhere").string()};
        write("garbage/org.quorvel.quorvelprefs.plist", "bplist00 and no more");
        m_settings.push_back("preferences:" + path("garbage").string());
    }

    static std::string manyEvents() {
        std::string events = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n";
        for (int i = 0; i < 200; ++i) {
            events += event("m" + std::to_string(i), "Many " + std::to_string(i),
                            "DTSTART:20260310T120000Z\r\nRRULE:FREQ=DAILY;COUNT=40");
        }
        return events + "END:VCALENDAR\r\n";
    }

    std::size_t below(std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(m_random);
    }
    // The first entry, which shows rows, in about half of the calls.
    template <class List>
    const auto& choice(const List& list) {
        return list[below(2) == 0 ? 0 : below(list.size())];
    }
    // Mostly a coordinate of a finger, sometimes an unusual number.
    std::string number() {
        static constexpr std::array<const char*, 8> odd{"0",  "-0.0", "80",   "80.5",
                                                        "-1", "1e6",  "-1e6", "1e-300"};
        return below(5) == 0 ? odd[below(odd.size())]
                             : std::to_string(static_cast<int>(below(700)) - 100);
    }
    std::string row() { return std::to_string(below(10) == 0 ? below(1000000) : below(9)); }
    std::string instant() {
        static constexpr std::array<const char*, 6> instants{
            "2026-03-10T10:00:00Z", "2026-03-10T23:59:59.999Z",  "2026-03-29T00:30:00Z",
            "1970-01-01T00:00:00Z", "2026-12-31T23:00:00-11:00", "9999-12-31T00:00:00Z"};
        return choice(instants);
    }
    std::string legacyStep() {
        static constexpr std::array<const char*, 3> names{"full-view", "placeholder", "unload"};
        return choice(names);
    }
    std::string calendarsStep() {
        static constexpr std::array<const char*, 4> folders{"calendars", "many", "broken", "empty"};
        return "calendars:" + path(choice(folders)).string();
    }
    std::string step(bool isLegacy) {
        switch (below(isLegacy ? 15 : 13)) {
        case 0:
        case 1:
            return "present";
        case 2:
            return "dismiss";
        case 3:
            return "size";
        case 4:
            return "layout:" + number() + "," + number();
        case 5:
            return "scroll:" + number();
        case 6:
        case 7:
            return "pull:" + row() + ":" + number();
        case 8:
        case 9:
            return "drag:" + number() + "," + number() + ":" + number() + "," + number();
        case 10:
            return "tap:" + number() + "," + number();
        case 11:
            return below(2) == 0 ? calendarsStep() : "now:" + instant();
        case 12:
            return choice(m_settings);
        default:
            return legacyStep();
        }
    }
    void runAThousandSteps(const std::string& controller, bool isLegacy = false) {
        std::vector<std::string> script;
        while (script.size() < steps) {
            script.push_back(step(isLegacy));
        }
        const Json document = inspected(script, {"--controller", controller});
        const Json& entries = document.at("steps");
        ASSERT_EQ(entries.size(), steps + 1);
        std::size_t opened = 0;
        for (std::size_t index = 0; index < steps; ++index) {
            EXPECT_EQ(entries[index + 1].at("do"), script[index]);
            opened += entries[index + 1].at("opened").size();
        }
        EXPECT_GT(opened, 0U) << "no pull went far enough";
        EXPECT_EQ(document.at("view").at("class"), "QuorvelView");
    }

    std::mt19937 m_random{testSeed()};
    std::vector<std::string> m_settings;
};

TEST_F(InspectRandomTest, RunsTheNotificationController) {
    runAThousandSteps("QuorvelViewControllerNew");
}

TEST_F(InspectRandomTest, RunsTheTodayController) {
    runAThousandSteps("QuorvelViewControllerNewToday");
}

TEST_F(InspectRandomTest, RunsTheLegacyController) {
    runAThousandSteps("QuorvelViewController", true);
}

} // namespace
} // namespace quorvel::app
