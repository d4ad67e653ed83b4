// The commands `agenda` and `calendars`, and the files that they write.
#include <sstream>

#include <gtest/gtest.h>

#include "tests/app/command_fixture.h"

namespace quorvel::app {
namespace {

class AgendaCommandTest : public CommandTest {
protected:
    void writeWeek() const {
        writeCalendar("Work", event("past", "Breakfast",
                                    "DTSTART:20260310T080000Z\r\n"
                                    "DTEND:20260310T090000Z") +
                                  event("now", "Review",
                                        "DTSTART:20260310T093000Z\r\n"
                                        "DTEND:20260310T110000Z",
                                        "Fjord") +
                                  event("weekly", "Pilates",
                                        "DTSTART:20260311T183000Z\r\n"
                                        "DTEND:20260311T193000Z\r\n"
                                        "RRULE:FREQ=DAILY;COUNT=2"));
        writeCalendar("Home", event("day", "Birthday", "DTSTART;VALUE=DATE:20260311"));
    }
};

TEST_F(AgendaCommandTest, PrintsTheRowsAsJson) {
    writeWeek();
    const RunResult result = runHere({"agenda", "--json"});
    ASSERT_EQ(result.status, 0) << result.errors;
    const Json rows = result.json();
    ASSERT_EQ(rows.size(), 4U);
    for (const Json& row : rows) {
        EXPECT_EQ(row.size(), 8U);
    }
    EXPECT_EQ(rows[0].at("title"), "Review");
    EXPECT_EQ(rows[0].at("caption"), "09:30");
    EXPECT_EQ(rows[0].at("location"), "Fjord");
    EXPECT_EQ(rows[0].at("start"), "2026-03-10T09:30:00+00:00");
    EXPECT_EQ(rows[0].at("end"), "2026-03-10T11:00:00+00:00");
    EXPECT_EQ(rows[0].at("allDay"), false);
    EXPECT_EQ(rows[0].at("calendar"), "Work");
    EXPECT_EQ(rows[1].at("title"), "Birthday");
    EXPECT_EQ(rows[1].at("caption"), "Tomorrow");
    EXPECT_EQ(rows[1].at("location"), nullptr);
    EXPECT_EQ(rows[1].at("allDay"), true);
    EXPECT_EQ(rows[1].at("end"), "2026-03-11T23:59:59+00:00");
    EXPECT_EQ(rows[1].at("calendar"), "Home");
    EXPECT_EQ(rows[3].at("caption"), "Thu, 18:30");
    const std::string url = rows[3].at("url").get<std::string>();
    EXPECT_TRUE(url.starts_with("x-apple-calevent://")) << url;
    EXPECT_TRUE(url.ends_with("/weekly?o=795033000.0")) << url;
}

TEST_F(AgendaCommandTest, WritesTimesInTheChosenZone) {
    writeWeek();
    const Json rows = runHere({"agenda", "--json", "--timezone", "Asia/Kolkata"}).json();
    EXPECT_EQ(rows.at(0).at("start"), "2026-03-10T15:00:00+05:30");
}

TEST_F(AgendaCommandTest, PrintsLocationsWhereTheSettingsShowThem) {
    writeWeek();
    EXPECT_EQ(runHere({"agenda"}).output, "09:30            Review\n"
                                          "Tomorrow         Birthday\n"
                                          "Tomorrow, 18:30  Pilates\n"
                                          "Thu, 18:30       Pilates\n");
    writeSettings("<key>displayLocation</key><true/><key>daysToDisplay</key><integer>0</integer>");
    EXPECT_EQ(runHere({"agenda"}).output, "09:30  Review  Fjord\n");
}

TEST_F(AgendaCommandTest, ReportsThatThereAreNoEvents) {
    writeCalendar("Empty", "");
    const RunResult result = runHere({"agenda"});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.output, "No events.\n");
    EXPECT_EQ(runHere({"agenda", "--json"}).json(), Json::array());
}

TEST_F(AgendaCommandTest, ReadsAThousandRowsPageByPage) {
    std::string events;
    for (int number = 0; number < 1000; ++number) {
        events += event("e" + std::to_string(number), std::to_string(number),
                        "DTSTART:2026031" + std::to_string(number % 3) + "T120000Z");
    }
    writeCalendar("Many", events);
    const Json rows = runHere({"agenda", "--json"}).json();
    ASSERT_EQ(rows.size(), 1000U);
    for (const Json& row : rows) {
        const std::string day = row.at("start").get<std::string>().substr(8, 2);
        EXPECT_EQ(row.at("caption"),
                  day == "10" ? "12:00" : (day == "11" ? "Tomorrow, 12:00" : "Thu, 12:00"));
    }
}

TEST_F(AgendaCommandTest, PrintsTheSameRowsForTheTodayController) {
    writeWeek();
    EXPECT_EQ(runHere({"agenda", "--controller", "QuorvelViewControllerNewToday"}).output,
              runHere({"agenda"}).output);
}

TEST_F(AgendaCommandTest, ListsCalendarsAndWhetherTheyAreSearched) {
    writeWeek();
    const Json all = runHere({"calendars", "--json"}).json();
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[0].size(), 4U);
    EXPECT_EQ(all[0].at("title"), "Home");
    EXPECT_EQ(all[0].at("color"), "#336699FF");
    EXPECT_EQ(all[0].at("selected"), true);
    EXPECT_EQ(all[1].at("selected"), true);

    writeSettings("<key>onlySelectedCalendars</key><false/>");
    EXPECT_EQ(runHere({"calendars", "--json"}).json().at(0).at("selected"), false);
    writeSelection({all[1].at("identifier").get<std::string>(), "unknown"});
    const Json chosen = runHere({"calendars", "--json"}).json();
    EXPECT_EQ(chosen[0].at("selected"), false);
    EXPECT_EQ(chosen[1].at("selected"), true);
    EXPECT_NE(runHere({"calendars"}).output.find("#336699FF"), std::string::npos);
}

TEST_F(AgendaCommandTest, ListsWhereEachCalendarIs) {
    write("calendars/Single.ics", "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nEND:VCALENDAR\r\n");
    write("calendars/Folder/displayname", "Shared");
    const auto lines = [this] {
        std::istringstream output(runHere({"calendars"}).output);
        std::vector<std::string> result;
        for (std::string line; std::getline(output, line);) {
            result.push_back(line.substr(line.rfind(' ') + 1));
        }
        return result;
    };
    const std::vector<std::string> expected{"STORE", calendars() + "/Single.ics",
                                            calendars() + "/Folder"};
    EXPECT_EQ(lines(), expected);
    EXPECT_EQ(lines(), expected); // from the index, if that is stored
    EXPECT_NE(run({"calendars", "--sample"}).output.find("yes       in memory\n"),
              std::string::npos);
}

TEST_F(AgendaCommandTest, ShowsTheSample) {
    for (const char* now :
         {"2026-03-10T00:05:00Z", "2026-03-10T12:00:00Z", "2026-03-10T23:55:00Z"}) {
        const RunResult result =
            run({"agenda", "--sample", "--json", "--now", now, "--timezone", "UTC"});
        ASSERT_EQ(result.status, 0) << result.errors;
        EXPECT_EQ(result.errors, "");
        const Json rows = result.json();
        EXPECT_GE(rows.size(), 12U);
        EXPECT_TRUE(rows.at(0).at("allDay").get<bool>() || rows.at(1).at("allDay").get<bool>());
    }
}

TEST_F(AgendaCommandTest, LogsToTheChosenFile) {
    writeCalendar("Empty", "");
    const RunResult quiet = runHere({"agenda", "--log", path("widget.log").string()});
    EXPECT_EQ(quiet.errors, "");
    const RunResult verbose = runHere({"agenda", "--verbose"});
    EXPECT_NE(verbose.errors.find("QRV: unable to load preferences."), std::string::npos);
    EXPECT_EQ(files(), (std::vector<std::string>{"calendars/Empty.ics", "widget.log"}));
}

TEST_F(AgendaCommandTest, WritesNothing) {
    writeWeek();
    const std::vector<std::string> before = files();
    runHere({"agenda"});
    runHere({"calendars"});
    runHere({"inspect", "--do", "present"});
    run({"agenda", "--sample"});
    EXPECT_EQ(files(), before);
}

TEST_F(AgendaCommandTest, ReadsTheCalendarsOfTheUser) {
    write("home/.local/share/calendars/personal/a.ics",
          "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n" + event("a", "Dentist", "DTSTART:20260310T120000Z") +
              "END:VCALENDAR\r\n");
    write("home/.config/quorvel/Preferences/org.quorvel.quorvelprefs.plist",
          propertyList("<dict><key>daysToDisplay</key><integer>0</integer></dict>"));
    const RunResult result = run({"agenda", "--now", "2026-03-10T10:00:00Z", "--json"});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.json().at(0).at("title"), "Dentist");
}

} // namespace
} // namespace quorvel::app
