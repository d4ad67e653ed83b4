// Malformed calendars and settings.
#include <gtest/gtest.h>

#include "tests/app/command_fixture.h"

namespace quorvel::app {
namespace {

class HostileInputTest : public CommandTest {
protected:
    static constexpr const char* good = "DTSTART:20260310T120000Z";
};

TEST_F(HostileInputTest, ReportsAMalformedEventAndShowsTheOthers) {
    writeCalendar("Work",
                  event("bad", "Bad", "DTSTART:20261399T990000Z") + event("good", "Good", good));
    const RunResult result = runHere({"agenda"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "12:00  Good\n");
    EXPECT_NE(result.errors.find("Work.ics:"), std::string::npos) << result.errors;
    EXPECT_TRUE(result.errors.starts_with("quorvel: ")) << result.errors;
}

TEST_F(HostileInputTest, ShowsTheOtherCalendarsBesideGarbage) {
    write("calendars/Garbage.ics", std::string("\x00\xff garbage", 10));
    writeCalendar("Work", event("good", "Good", good));
    const RunResult result = runHere({"agenda"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "12:00  Good\n");
    EXPECT_NE(result.errors.find("Garbage.ics"), std::string::npos) << result.errors;
}

TEST_F(HostileInputTest, ReportsGarbageWithoutOtherCalendars) {
    const std::string file = write("garbage.ics", "garbage\n").string();
    const RunResult result = runHere({"agenda", "--json", "--calendars", file});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.json(), Json::array());
    EXPECT_NE(result.errors.find("garbage.ics:1: "), std::string::npos) << result.errors;
    EXPECT_NE(result.errors.find("not one calendar could be read"), std::string::npos);
}

TEST_F(HostileInputTest, StrangeTitlesBreakNoRowAndNoDocument) {
    std::string marks = "e";
    for (int count = 0; count < 20000; ++count) {
        marks += "\u0301";
    }
    writeCalendar("Work", event("1", std::string(1 << 20, 'x'), good) + event("2", marks, good) +
                              event("3", "bad \xff\xfe bytes", good) +
                              event("4", "\x1b[31mred\x07", good) +
                              event("5", "two\\nlines", good) + event("6", "\u202Eturned", good));
    const RunResult text = runHere({"agenda"});
    EXPECT_EQ(text.status, 0);
    EXPECT_EQ(std::count(text.output.begin(), text.output.end(), '\n'), 6);
    EXPECT_EQ(text.output.find('\x1b'), std::string::npos);
    EXPECT_LT(text.output.size(), 64U * 1024);
    EXPECT_EQ(runHere({"agenda", "--json"}).json().size(), 6U);
    EXPECT_EQ(runHere({"inspect", "--do", "present"}).json().at("items").size(), 6U);
    EXPECT_EQ(runHere({"snapshot", "-o", path("x.png").string()}).status, 0);
}

TEST_F(HostileInputTest, HostileRulesLoseNoOtherEvent) {
    writeCalendar("Work", event("1", "Never",
                                "DTSTART:19700101T000000Z\r\n"
                                "RRULE:FREQ=HOURLY;BYMONTH=2;BYMONTHDAY=30") +
                              event("2", "Often",
                                    "DTSTART:19700101T000000Z\r\n"
                                    "RRULE:FREQ=SECONDLY;COUNT=2000000000") +
                              event("3", "Good", good));
    const RunResult result = runHere({"agenda", "--json"});
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(result.output.find("\"Good\""), std::string::npos);
}

TEST_F(HostileInputTest, LogsTruncatedSettingsAndAppliesDefaults) {
    writeCalendar("Work", event("good", "Good", good));
    write("preferences/org.quorvel.quorvelprefs.plist", "<?xml version=\"1.0\"?><plist><dict><ke");
    const RunResult result = runHere({"inspect", "--do", "present", "--verbose"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.step(0).at("log").at(0), "QRV: unable to load preferences.");
    EXPECT_NE(result.errors.find("org.quorvel.quorvelprefs.plist"), std::string::npos);
    EXPECT_EQ(result.json().at("settings").at("textSize"), 14);
}

TEST_F(HostileInputTest, LogsPropertyListsWithANul) {
    writeCalendar("Work", event("good", "Good", good));
    const std::string list =
        "<plist><array><string>a" + std::string(1, '\0') + "</string></array></plist>";
    const auto expectLogged = [&](const std::string& name) {
        const std::filesystem::path file = write("preferences/" + name, list);
        const RunResult result = runHere({"inspect", "--do", "present", "--verbose"});
        EXPECT_EQ(result.status, 0);
        EXPECT_NE(result.errors.find(name + ":1:24: the XML has a character that XML forbids"),
                  std::string::npos)
            << result.errors;
        std::filesystem::remove(file);
    };
    expectLogged("org.quorvel.quorvelprefs.plist");
    expectLogged("com.apple.mobilecal.plist");
    writeSettings("<key>onlySelectedCalendars</key><false/>");
    expectLogged("org.quorvel.quorvel.calendars.plist");
}

TEST_F(HostileInputTest, SettingsOfTheWrongTypeNeverCrash) {
    writeCalendar("Work", event("good", "Good", good, "Here"));
    writeSettings("<key>textSize</key><array/><key>displayLocation</key><string>YES</string>"
                  "<key>maxHeight</key><date>2026-01-01T00:00:00Z</date>"
                  "<key>iconFile</key><dict/><key>daysToDisplay</key><string> 3 days</string>"
                  "<key>subtitleTextSize</key><real>-1e300</real>");
    const Json document = runHere({"inspect", "--do", "present", "--do", "size"}).json();
    EXPECT_EQ(document.at("settings").at("textSize"), 0);
    EXPECT_EQ(document.at("settings").at("displayLocation"), true);
    EXPECT_EQ(document.at("settings").at("daysToDisplay"), 3);
    EXPECT_EQ(document.at("items").size(), 1U);
}

TEST_F(HostileInputTest, ShowsNoPictureWhereItCannotBeDecoded) {
    writeCalendar("Work", event("good", "Good", good));
    const std::string picture = write("icon.png", "\x89PNG\r\n\x1a\n torn").string();
    writeSettings("<key>iconFile</key><string>" + picture + "</string>");
    const Json document = runHere({"inspect"}).json();
    EXPECT_EQ(viewsOfClass(document.at("view"), "UIImageView").at(0).at("image"), nullptr);
}

} // namespace
} // namespace quorvel::app
