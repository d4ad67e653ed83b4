// `quorvel settings` from end to end.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/app/command_fixture.h"

namespace quorvel::app {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

const std::string settingsName = "org.quorvel.quorvelprefs.plist";
const std::string selectionName = "org.quorvel.quorvel.calendars.plist";

class SettingsCommandTest : public CommandTest {
protected:
    RunResult settings(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), "settings");
        arguments.insert(arguments.end(), {"--preferences", preferences()});
        return run(arguments);
    }

    void expectDone(const RunResult& result, const std::string& output = "") const {
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.output, output);
        EXPECT_EQ(result.errors, "");
    }

    std::string contentsOf(const std::string& name) const {
        std::ifstream file(path("preferences/" + name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

    std::string place(const std::string& name) const { return preferences() + "/" + name; }
};

TEST_F(SettingsCommandTest, SetsPrintsAndResetsASetting) {
    expectDone(settings({"textSize"}), "14\n");
    expectDone(settings({"textSize", "20"}));
    expectDone(settings({"textSize"}), "20\n");
    EXPECT_EQ(contentsOf(settingsName), R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0">
<dict>
    <key>textSize</key> <integer>20</integer>
</dict>
</plist>
)");
    expectDone(settings({"--reset", "textSize"}));
    expectDone(settings({"textSize"}), "14\n");
    EXPECT_EQ(files(), std::vector<std::string>{"preferences/" + settingsName});
}

TEST_F(SettingsCommandTest, TakesWordsNamesAndLabels) {
    const std::vector<std::vector<std::string>> cases{
        {"displayLocation", "yes", "true"},
        {"sameHeightRows", "OFF", "false"},
        {"textColor", "calendar", "999"},
        {"dateTextColor", "Orange", "7"},
        {"iconFile", "dot_large", "DOT_LARGE"},
        {"iconFile", "/pictures/a b.png", "/pictures/a b.png"},
        {"swipeAction", "open the day", "2"},
        {"maxHeight", "250.5", "250.5"},
        {"customLaunchAppBundleID", "", ""},
        {"customLaunchAppBundleID", "org.gnome.Calendar", "org.gnome.Calendar"},
    };
    for (const auto& words : cases) {
        expectDone(settings({words[0], words[1]}));
        expectDone(settings({words[0]}), words[2] + "\n");
    }
}

TEST_F(SettingsCommandTest, ListsAllSettingsAndMarksThoseThatAreSet) {
    writeSettings("<key>textColor</key><integer>999</integer>");
    const RunResult result = settings({});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(std::ranges::count(result.output, '\n'), 19);
    EXPECT_THAT(result.output, HasSubstr("SETTING                  VALUE"));
    EXPECT_THAT(result.output, HasSubstr("textColor                999 (calendar)      yes  Title "
                                         "colour\n"));
    EXPECT_THAT(result.output, HasSubstr("textSize                 14                  no   Title "
                                         "size\n"));
    EXPECT_THAT(result.output,
                HasSubstr("iconFile                 Calendar picture    no   Icon\n"));
}

TEST_F(SettingsCommandTest, ListsAllSettingsAsJson) {
    writeSettings("<key>textSize</key><integer>30</integer><key>iconFile</key><true/>");
    const Json list = settings({"--json"}).json();
    ASSERT_EQ(list.size(), 18U);
    EXPECT_EQ(list.at(10), Json::parse(R"({"key": "textSize", "type": "integer", "value": 30,
        "default": 14, "isSet": true, "group": "look", "label": "Title size",
        "meaning": "The size of the title, in points.", "least": 1, "most": 200})"));
    const Json& swipe = list.at(8);
    EXPECT_EQ(swipe.at("key"), "swipeAction");
    EXPECT_EQ(swipe.at("isSet"), false);
    EXPECT_EQ(swipe.at("choices").at(1), Json::parse(R"({"value": 1, "label": "Open the event"})"));
    EXPECT_EQ(list.at(17).at("value"), true);
    EXPECT_EQ(settings({"textSize", "--json"}).json(), list.at(10));
}

TEST_F(SettingsCommandTest, MentionsMistakesBesideTheList) {
    writeSettings("<key>textSize</key><integer>0</integer><key>textsize</key><true/>");
    const RunResult result = settings({});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors,
              "quorvel: 2 mistakes are in the settings: see 'quorvel settings --check'\n");
}

// Each line of arguments with the whole message; "{P}" stands for the folder.
struct WrongLine {
    std::vector<std::string> arguments;
    int status;
    std::string message;
};

const std::string seeHelp = ": see 'quorvel settings --help'";
const std::string wholeSize = ": give a whole number from 1 to 200";
const std::string boolean = ": give true or false";
const std::string colours =
    ": give one of red, black, gray, white, green, blue, yellow, orange, purple, brown";
const std::string actions = ": give one of 0 (Do nothing), 1 (Open the event), 2 (Open the day), "
                            "3 (Bring an application to the front)";
const std::string icons = ": give the full path of a picture or one of DOT (Dot), DOT_LARGE (Large "
                          "dot), NONE (No icon)";
const std::string plainText = ": give a text in UTF-8 without control characters";
const std::string tooMany = " is one argument too many";

const std::vector<WrongLine> wrongLines{
    {{"textsize"}, 2, "there is no setting 'textsize': did you mean 'textSize'?"},
    {{"txtSize", "3"}, 2, "there is no setting 'txtSize': did you mean 'textSize'?"},
    {{"textColour", "red"}, 2, "there is no setting 'textColour': did you mean 'textColor'?"},
    {{"iconfle"}, 2, "there is no setting 'iconfle': did you mean 'iconFile'?"},
    {{"dayToDisplay", "3"}, 2, "there is no setting 'dayToDisplay': did you mean 'daysToDisplay'?"},
    {{"fontFamily"}, 2, "there is no setting 'fontFamily': 'quorvel settings' lists the settings"},
    {{""}, 2, "there is no setting '': 'quorvel settings' lists the settings"},
    {{"calendar"}, 2, "there is no setting 'calendar': 'quorvel settings' lists the settings"},
    {{"--reset", "txtSize"}, 2, "there is no setting 'txtSize': did you mean 'textSize'?"},
    {{"--reset", "x"}, 2, "there is no setting 'x': 'quorvel settings' lists the settings"},
    {{"textSize", "big"}, 2, "textSize cannot be 'big'" + wholeSize},
    {{"textSize", "0"}, 2, "textSize cannot be '0'" + wholeSize},
    {{"textSize", "201"}, 2, "textSize cannot be '201'" + wholeSize},
    {{"textSize", "-3"}, 2, "textSize cannot be '-3'" + wholeSize},
    {{"textSize", "14.5"}, 2, "textSize cannot be '14.5'" + wholeSize},
    {{"textSize", "14 "}, 2, "textSize cannot be '14 '" + wholeSize},
    {{"textSize", ""}, 2, "textSize cannot be ''" + wholeSize},
    {{"textSize", "99999999999999999999"},
     2,
     "textSize cannot be '99999999999999999999'" + wholeSize},
    {{"dateTextSize", "true"}, 2, "dateTextSize cannot be 'true'" + wholeSize},
    {{"maxHeight", "tall"}, 2, "maxHeight cannot be 'tall': give a number from 1 to 10000"},
    {{"maxHeight", "nan"}, 2, "maxHeight cannot be 'nan': give a number from 1 to 10000"},
    {{"maxHeight", "-.5"}, 2, "maxHeight cannot be '-.5': give a number from 1 to 10000"},
    {{"maxHeight", "1e9"}, 2, "maxHeight cannot be '1e9': give a number from 1 to 10000"},
    {{"maxHeight", "300,5"}, 2, "maxHeight cannot be '300,5': give a number from 1 to 10000"},
    {{"daysToDisplay", "3651"},
     2,
     "daysToDisplay cannot be '3651': give a whole number from 0 to 3650"},
    {{"daysToDisplay", "-1"},
     2,
     "daysToDisplay cannot be '-1': give a whole number from 0 to 3650"},
    {{"maxEventsToDisplay", "many"},
     2,
     "maxEventsToDisplay cannot be 'many': give a whole number from 0 to 10000"},
    {{"displayLocation", "maybe"}, 2, "displayLocation cannot be 'maybe'" + boolean},
    {{"displayLocation", "1"}, 2, "displayLocation cannot be '1'" + boolean},
    {{"limitMaxHeight", ""}, 2, "limitMaxHeight cannot be ''" + boolean},
    {{"textColor", "pink"}, 2, "textColor cannot be 'pink'" + colours + ", calendar"},
    {{"textColor", "10"}, 2, "textColor cannot be '10'" + colours + ", calendar"},
    {{"textColor", "#FF0000"}, 2, "textColor cannot be '#FF0000'" + colours + ", calendar"},
    {{"dateTextColor", "calendar"}, 2, "dateTextColor cannot be 'calendar'" + colours},
    {{"subtitleTextColor", "999"}, 2, "subtitleTextColor cannot be '999'" + colours},
    {{"swipeAction", "4"}, 2, "swipeAction cannot be '4'" + actions},
    {{"swipeAction", "-1"}, 2, "swipeAction cannot be '-1'" + actions},
    {{"swipeAction", "open"}, 2, "swipeAction cannot be 'open'" + actions},
    {{"iconFile", "mark.png"}, 2, "iconFile cannot be 'mark.png'" + icons},
    {{"iconFile", ""}, 2, "iconFile cannot be ''" + icons},
    {{"iconFile", "DOTS"}, 2, "iconFile cannot be 'DOTS'" + icons},
    {{"customLaunchAppBundleID", "a\xFF"},
     2,
     "customLaunchAppBundleID cannot be 'a\xEF\xBF\xBD'" + plainText},
    {{"textSize", "14", "15"},
     2,
     "'15'" + tooMany + ": put a value with spaces in quotation marks"},
    {{"calendars", "Home"}, 2, "'Home'" + tooMany + ": name calendars behind --choose"},
    {{"--check", "textSize"}, 2, "--check stands alone" + seeHelp},
    {{"--check", "--reset", "textSize"}, 2, "--check stands alone" + seeHelp},
    {{"--reset", "textSize", "iconFile"},
     2,
     "--reset takes one setting; give it again for more" + seeHelp},
    {{"--reset"}, 2, "the option --reset needs a value" + seeHelp},
    {{"calendars", "--choose"}, 2, "the option --choose needs a value" + seeHelp},
    {{"--all"},
     2,
     "--choose, --all and --follow-desktop are for calendars: write 'quorvel settings calendars'"},
    {{"textSize", "--follow-desktop"},
     2,
     "--choose, --all and --follow-desktop are for calendars: write 'quorvel settings calendars'"},
    {{"calendars", "--all", "--follow-desktop"},
     2,
     "--choose, --all and --follow-desktop exclude each other" + seeHelp},
    {{"calendars", "--check"},
     2,
     "--check and --reset are for settings, not for calendars" + seeHelp},
    {{"--check", "--json"}, 2, "--json is for lists and values" + seeHelp},
    {{"textSize", "15", "--json"}, 2, "--json is for lists and values" + seeHelp},
    {{"--scale", "2"}, 2, "the option --scale is not one of settings" + seeHelp},
    {{"--wrong"}, 2, "unknown option '--wrong': see 'quorvel --help'"},
    {{"--all=no"}, 2, "the option --all takes no value: see 'quorvel --help'"},
    {{"calendars", "--choose", "Homer"}, 2, "there is no calendar 'Homer': did you mean 'Home'?"},
    {{"calendars", "--choose", "Home", "Private"},
     2,
     "there is no calendar 'Private': 'quorvel settings calendars' lists the calendars"},
    {{"calendars", "--choose", "Twin"},
     2,
     "several calendars have the title 'Twin': give one of the identifiers {twins}"},
};

TEST_F(SettingsCommandTest, NamesWhatIsWrongAndWhatToDo) {
    writeCalendar("Home", "");
    write("calendars/a.ics", "BEGIN:VCALENDAR\r\nX-WR-CALNAME:Twin\r\nEND:VCALENDAR\r\n");
    write("calendars/b.ics", "BEGIN:VCALENDAR\r\nX-WR-CALNAME:Twin\r\nEND:VCALENDAR\r\n");
    std::string twins;
    for (const Json& calendar : runHere({"calendars", "--json"}).json()) {
        if (calendar.at("title") == "Twin") {
            twins += (twins.empty() ? "" : ", ") + calendar.at("identifier").get<std::string>();
        }
    }
    EXPECT_GE(wrongLines.size(), 50U);
    for (WrongLine line : wrongLines) {
        if (const std::size_t at = line.message.find("{twins}"); at != std::string::npos) {
            line.message.replace(at, 7, twins);
        }
        line.arguments.insert(line.arguments.end(), {"--calendars", calendars()});
        const RunResult result = settings(line.arguments);
        EXPECT_EQ(result.status, line.status) << line.message;
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors, "quorvel: " + line.message + "\n");
    }
    EXPECT_TRUE(fs::is_empty(path("preferences")));
}

struct WrongFile {
    std::string name;
    std::string contents;
    std::string message; // behind the path
};

std::string dictionary(const std::string& entries) {
    return "<plist>\n<dict>\n" + entries + "</dict>\n</plist>\n";
}

const std::string mend = ": mend the file, or move it away";

const std::vector<WrongFile> wrongFiles{
    {settingsName, "<plist>\n<dict>\n  <key>textSize</key>\n", ":4:1: the XML breaks off" + mend},
    {settingsName, dictionary("  <key>textSize</key>\n"),
     ":4:1: the XML has a key without a value, or a value without a key" + mend},
    {settingsName, dictionary("  <key>textSize</key> <number>5</number>\n"),
     ":3:23: the XML has elements that are not those of a property list" + mend},
    {settingsName, dictionary("  <key>textSize</key>\n  <integer>ten</integer>\n"),
     ":4:15: the XML has an invalid value" + mend},
    {settingsName, dictionary("  <key>textSize</string>\n"),
     ":3:18: the elements of the XML do not match" + mend},
    {settingsName, "", ": it is empty" + mend},
    {settingsName, "<plist><array/></plist>", ": it holds no dictionary" + mend},
    {settingsName, "bplist00torn", ": the binary list is damaged" + mend},
    {settingsName, "{\n textSize = 14\n}\n", ":3:1: it is not a property list" + mend},
    {settingsName, "textSize: 14\n", ":1:11: it is not a property list" + mend},
    {settingsName, dictionary("  <key>textsize</key>  <integer>14</integer>\n"),
     ":3:3: there is no setting 'textsize': did you mean 'textSize'?"},
    {settingsName, dictionary("\n\n  <key>whatever</key>  <true/>\n"),
     ":5:3: there is no setting 'whatever': remove it with 'quorvel settings --reset whatever'"},
    {settingsName, dictionary("  <key>textSize</key>  <string>14</string>\n"),
     ":3:3: textSize is a text" + wholeSize},
    {settingsName, dictionary("  <key>textSize</key>  <integer>400</integer>\n"),
     ":3:3: textSize cannot be '400'" + wholeSize},
    {settingsName, dictionary("  <key>displayLocation</key>  <integer>1</integer>\n"),
     ":3:3: displayLocation is a whole number" + boolean},
    {settingsName, dictionary("  <key>maxHeight</key>  <array/>\n"),
     ":3:3: maxHeight is an array: give a number from 1 to 10000"},
    {settingsName, dictionary("  <key>dateTextColor</key>  <integer>999</integer>\n"),
     ":3:3: dateTextColor cannot be '999'" + colours},
    {settingsName, dictionary("  <key>swipeAction</key>  <integer>7</integer>\n"),
     ":3:3: swipeAction cannot be '7'" + actions},
    {settingsName, dictionary("  <key>iconFile</key>  <string>dot</string>\n"),
     ":3:3: iconFile cannot be 'dot'" + icons},
    {settingsName, dictionary("  <key>iconFile</key>  <string>/no/such.png</string>\n"),
     ":3:3: '/no/such.png' is no picture" + icons},
    {settingsName, "{ rightAlignedDate = on; }", ":1:3: rightAlignedDate is a text" + boolean},
    {selectionName, "<plist>\n<array>\n<string>a", ":3:10: the XML breaks off" + mend},
    {selectionName, "<plist><dict/></plist>", ": it holds no array" + mend},
    {selectionName, "<plist><array><string>a</string><integer>1</integer></array></plist>",
     ": entry 2 is no identifier of a calendar: 'quorvel calendars' lists the identifiers"},
    {"com.apple.mobilecal.plist", "<plist><array/></plist>", ": it holds no dictionary" + mend},
    {"com.apple.mobilecal.plist",
     dictionary("<key>LastDeselectedCalendars</key><string>a</string>"),
     ": LastDeselectedCalendars is no array: write the identifiers of the calendars into an array"},
};

TEST_F(SettingsCommandTest, ChecksTheFiles) {
    expectDone(settings({"--check"}), "The settings in '" + preferences() + "' are right.\n");
    for (const WrongFile& file : wrongFiles) {
        write("preferences/" + file.name, file.contents);
        const RunResult result = settings({"--check"});
        EXPECT_EQ(result.status, 1) << file.message;
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors, "quorvel: " + place(file.name) + file.message + "\n");
        fs::remove(path("preferences/" + file.name));
    }
}

TEST_F(SettingsCommandTest, ChecksEverythingAtOnce) {
    writeSettings("<key>onlySelectedCalendars</key><false/><key>textSize</key><real>5</real>");
    const RunResult result = settings({"--check"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors,
              "quorvel: " + place(settingsName) + ":2:68: textSize is a number" + wholeSize +
                  "\nquorvel: " + place(selectionName) +
                  ": no calendars are chosen, so no events are shown: choose some with 'quorvel "
                  "settings calendars --choose NAME'\n");
}

TEST_F(SettingsCommandTest, AcceptsARightFile) {
    write("preferences/" + settingsName,
          "{ textSize = 20; displayLocation = YES; iconFile = DOT; }");
    EXPECT_EQ(settings({"--check"}).status, 0);
    EXPECT_EQ(run({"settings", "--check", "--sample"}).status, 0);
}

TEST_F(SettingsCommandTest, ResetsAKeyThatOnlyTheFileKnows) {
    writeSettings("<key>textsize</key><integer>20</integer><key>other</key><true/>");
    expectDone(settings({"--reset", "textsize"}));
    EXPECT_EQ(contentsOf(settingsName), propertyList("<dict><key>other</key><true/></dict>"));
    expectDone(settings({"--reset", "textSize", "--reset", "other"}));
    EXPECT_EQ(contentsOf(settingsName), propertyList("<dict></dict>"));
}

TEST_F(SettingsCommandTest, EveryOtherCommandMentionsSettingsThatItCannotRead) {
    writeCalendar("Home", event("1", "Tea", "DTSTART:20260310T120000Z"));
    const std::string before = runHere({"agenda"}).output;
    write("preferences/" + settingsName, "<plist>\n<dict>\n  <key>textSize");
    const std::string message = "quorvel: " + place(settingsName) +
                                ":3:16: the settings cannot be read (the XML breaks off): mend the "
                                "file, or move it away\n";
    for (const auto& arguments :
         std::vector<std::vector<std::string>>{{"agenda"},
                                               {"agenda", "--json"},
                                               {"calendars"},
                                               {"inspect", "--do", "present", "--do", "present"},
                                               {"snapshot", "-o", path("x.png").string()},
                                               {"settings", "calendars"}}) {
        const RunResult result = runHere(arguments);
        EXPECT_EQ(result.status, 0) << arguments[0];
        EXPECT_EQ(result.errors, message) << arguments[0];
    }
    EXPECT_EQ(runHere({"agenda"}).output, before);
}

TEST_F(SettingsCommandTest, NeedsAFolderThatIsThereUnlessItWrites) {
    const std::string missing = path("new/folder").string();
    for (const char* command : {"agenda", "calendars", "inspect", "settings"}) {
        const RunResult result =
            run({command, "--preferences", missing, "--calendars", calendars()});
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.errors, "quorvel: there is no folder '" + missing +
                                     "': name another with --preferences\n");
    }
    const std::string file = write("file", "x").string();
    EXPECT_EQ(run({"settings", "--check", "--preferences", file}).errors,
              "quorvel: '" + file + "' is no folder: name another with --preferences\n");
    EXPECT_EQ(run({"settings", "textSize", "20", "--preferences", file}).errors,
              "quorvel: " + file +
                  ": the folder cannot be made (Not a directory): name another "
                  "with --preferences\n");
    expectDone(run({"settings", "textSize", "20", "--preferences", missing}));
    expectDone(run({"settings", "textSize", "--preferences", missing}), "20\n");
}

TEST_F(SettingsCommandTest, UsesTheUsersFolder) {
    expectDone(run({"settings", "textSize"}), "14\n");
    EXPECT_TRUE(files().empty());
    expectDone(run({"settings", "textSize", "30"}));
    EXPECT_EQ(files(),
              std::vector<std::string>{"home/.config/quorvel/Preferences/" + settingsName});
}

TEST_F(SettingsCommandTest, LeavesTheSampleAlone) {
    expectDone(run({"settings", "iconFile", "--sample"}), "DOT_LARGE\n");
    const RunResult result = run({"settings", "iconFile", "NONE", "--sample"});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.errors, "quorvel: the settings of the sample cannot be changed: name a folder "
                             "with --preferences\n");
}

class SettingsCalendarsTest : public SettingsCommandTest {
protected:
    SettingsCalendarsTest() {
        writeCalendar("Home", "");
        writeCalendar("Work", "");
        write("calendars/third.ics",
              "BEGIN:VCALENDAR\r\nX-WR-CALNAME:Far Away\r\nEND:VCALENDAR\r\n");
    }

    RunResult calendarsCommand(std::vector<std::string> arguments = {}) const {
        arguments.insert(arguments.begin(), "calendars");
        arguments.insert(arguments.end(), {"--calendars", calendars()});
        return settings(arguments);
    }

    // The titles of those that the widget shows.
    std::vector<std::string> shown() const {
        std::vector<std::string> titles;
        for (const Json& calendar : calendarsCommand({"--json"}).json()) {
            if (calendar.at("selected") == true) {
                titles.push_back(calendar.at("title"));
            }
        }
        return titles;
    }
};

TEST_F(SettingsCalendarsTest, ListsTheCalendars) {
    const RunResult result = calendarsCommand();
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(std::ranges::count(result.output, '\n'), 6);
    EXPECT_THAT(result.output, HasSubstr("SELECTED"));
    EXPECT_THAT(result.output, HasSubstr("third.ics"));
    EXPECT_THAT(result.output,
                HasSubstr("\nShown are those that the calendar application has switched on.\n"));
}

TEST_F(SettingsCalendarsTest, ChoosesByTitleAndIdentifier) {
    const std::string identifier = calendarsCommand({"--json"}).json().at(1).at("identifier");
    expectDone(calendarsCommand({"--choose", "far away", identifier}));
    EXPECT_THAT(shown(), testing::SizeIs(2));
    EXPECT_THAT(shown(), testing::Contains("Far Away"));
    expectDone(settings({"onlySelectedCalendars"}), "false\n");
    EXPECT_THAT(calendarsCommand().output, HasSubstr("\nShown are those that were chosen.\n"));
    expectDone(calendarsCommand({"--choose", "Home"}));
    EXPECT_THAT(shown(), ElementsAre("Home"));
}

TEST_F(SettingsCalendarsTest, ChoosesAllAndFollowsTheDesktopAgain) {
    expectDone(calendarsCommand({"--all"}));
    EXPECT_THAT(shown(), testing::SizeIs(3));
    expectDone(calendarsCommand({"--choose", "Work"}));
    expectDone(calendarsCommand({"--follow-desktop"}));
    expectDone(settings({"onlySelectedCalendars"}), "true\n");
    EXPECT_THAT(shown(), testing::SizeIs(3));
    EXPECT_THAT(contentsOf(selectionName), HasSubstr("<string>"));
}

TEST_F(SettingsCalendarsTest, MentionsChosenCalendarsThatAreNotThere) {
    writeSettings("<key>onlySelectedCalendars</key><false/>");
    writeSelection({"gone"});
    EXPECT_EQ(calendarsCommand().errors,
              "quorvel: the chosen calendar 'gone' is not there: choose others with --choose\n");
}

TEST_F(SettingsCalendarsTest, ChangesNothingWithoutCalendars) {
    fs::create_directory(path("none"));
    const RunResult result = settings({"calendars", "--all", "--calendars", path("none").string()});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "quorvel: there are no calendars: name them with --calendars\n");
    EXPECT_TRUE(fs::is_empty(path("preferences")));
}

} // namespace
} // namespace quorvel::app
