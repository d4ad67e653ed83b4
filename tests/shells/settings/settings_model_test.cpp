// The settings behind the pages: values, changes, undo, and files that cannot be used.
#include "shells/settings/settings_model.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include <gmock/gmock.h>

#include "tests/freedesktop/session/session_testing.h"

namespace quorvel::settings_pages {
namespace {

using freedesktop::CalendarSelection;
using freedesktop::SettingDescription;
using std::chrono::hours;
using testing::ElementsAre;
using testing::HasSubstr;
using testing_session::TemporaryFolder;

const SettingDescription& settingOf(const char* key) {
    return *freedesktop::settingDescription(key);
}

class SettingsModelTest : public testing::Test {
protected:
    void write(const std::string& content) const { testing_session::write(file(), content); }
    void writeEntries(const std::string& entries) const {
        write("<plist version=\"1.0\"><dict>" + entries + "</dict></plist>");
    }
    std::string content() const {
        std::ifstream stream(file(), std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    }
    std::string file() const { return m_folder / "org.quorvel.quorvelprefs.plist"; }
    SettingsModel makeModel(SettingsModel::Duration mergeTime = {}) const {
        return SettingsModel(m_folder.path().string(), mergeTime);
    }

    TemporaryFolder m_folder;
};

TEST_F(SettingsModelTest, HasTheDefaultsWithoutAFile) {
    const SettingsModel model = makeModel();
    EXPECT_EQ(model.textOf(settingOf("textSize")), "14");
    EXPECT_EQ(model.textOf(settingOf("showSeparatorLines")), "true");
    EXPECT_FALSE(model.isSet("textSize"));
    EXPECT_FALSE(model.canReset());
    EXPECT_FALSE(model.canUndo());
    EXPECT_FALSE(model.problem());
    EXPECT_TRUE(model.calendarSelection().followsDesktop);
}

TEST_F(SettingsModelTest, ConvertsStoredValuesAsTheWidgetDoes) {
    writeEntries("<key>textSize</key><string>17 points</string>"
                 "<key>displayLocation</key><string>YES</string>"
                 "<key>maxHeight</key><integer>420</integer>");
    const SettingsModel model = makeModel();
    EXPECT_EQ(model.textOf(settingOf("textSize")), "17");
    EXPECT_EQ(model.textOf(settingOf("displayLocation")), "true");
    EXPECT_EQ(model.textOf(settingOf("maxHeight")), "420");
    EXPECT_TRUE(model.problemOf(settingOf("textSize")));
    EXPECT_FALSE(model.problemOf(settingOf("maxHeight")));
}

TEST_F(SettingsModelTest, WritesAChangeAndNothingElse) {
    writeEntries("<key>other</key><string>stays</string>");
    SettingsModel model = makeModel();
    model.set(settingOf("textSize"), "20");
    EXPECT_EQ(model.textOf(settingOf("textSize")), "20");
    EXPECT_THAT(content(), HasSubstr("<key>other</key><string>stays</string>"));
    EXPECT_THAT(content(), HasSubstr("<integer>20</integer>"));
    EXPECT_EQ(makeModel().textOf(settingOf("textSize")), "20");
}

TEST_F(SettingsModelTest, ReportsEachChangeByItsLabel) {
    SettingsModel model = makeModel();
    std::vector<std::string> labels;
    int changes = 0;
    model.setWrittenHandler([&](const std::string& label) { labels.push_back(label); });
    model.setChangedHandler([&] { ++changes; });
    model.set(settingOf("textSize"), "20");
    model.reset(settingOf("textSize"));
    EXPECT_THAT(labels, ElementsAre("Title size", "Title size"));
    EXPECT_EQ(changes, 2);
    model.undo();
    EXPECT_EQ(labels.size(), 2U);
    EXPECT_EQ(changes, 3);
}

TEST_F(SettingsModelTest, UndoesOneChangeAfterTheOther) {
    writeEntries("<key>textSize</key><integer>16</integer>");
    SettingsModel model = makeModel();
    model.set(settingOf("textSize"), "20");
    model.set(settingOf("displayLocation"), "true");
    model.set(settingOf("textSize"), "22");
    model.undo();
    EXPECT_EQ(model.textOf(settingOf("textSize")), "20");
    model.undo();
    EXPECT_FALSE(model.isSet("displayLocation"));
    model.undo();
    EXPECT_EQ(model.textOf(settingOf("textSize")), "16");
    EXPECT_FALSE(model.canUndo());
    model.undo();
    EXPECT_EQ(model.textOf(settingOf("textSize")), "16");
}

TEST_F(SettingsModelTest, UndoesQuickStepsOfOneSettingTogether) {
    SettingsModel model = makeModel(hours(1));
    for (const char* size : {"15", "16", "17"}) {
        model.set(settingOf("textSize"), size);
    }
    model.set(settingOf("dateTextSize"), "11");
    model.undo();
    EXPECT_EQ(model.textOf(settingOf("textSize")), "17");
    model.undo();
    EXPECT_EQ(model.textOf(settingOf("textSize")), "14");
    EXPECT_FALSE(model.isSet("textSize"));
}

TEST_F(SettingsModelTest, ResetsAllAndUndoesThat) {
    writeEntries("<key>textSize</key><integer>16</integer><key>other</key><true/>"
                 "<key>iconFile</key><string>DOT</string>");
    SettingsModel model = makeModel();
    EXPECT_TRUE(model.canReset());
    model.resetAll();
    EXPECT_FALSE(model.canReset());
    EXPECT_THAT(content(), HasSubstr("other"));
    EXPECT_THAT(content(), testing::Not(HasSubstr("iconFile")));
    model.undo();
    EXPECT_EQ(model.textOf(settingOf("textSize")), "16");
    EXPECT_EQ(model.textOf(settingOf("iconFile")), "DOT");
}

TEST_F(SettingsModelTest, ChoosesCalendarsAndUndoesThat) {
    SettingsModel model = makeModel();
    model.selectCalendars({false, {"home", "work"}});
    EXPECT_FALSE(model.calendarSelection().followsDesktop);
    EXPECT_THAT(model.calendarSelection().identifiers, ElementsAre("home", "work"));
    EXPECT_EQ(model.textOf(settingOf("onlySelectedCalendars")), "false");
    model.selectCalendars({false, {"home"}});
    model.undo();
    EXPECT_THAT(model.calendarSelection().identifiers, ElementsAre("home", "work"));
    model.undo();
    EXPECT_TRUE(model.calendarSelection().followsDesktop);
    EXPECT_FALSE(model.isSet("onlySelectedCalendars"));
}

TEST_F(SettingsModelTest, TheSameSelectionIsNoChange) {
    SettingsModel model = makeModel();
    model.selectCalendars(CalendarSelection{});
    EXPECT_FALSE(model.canUndo());
    EXPECT_FALSE(std::filesystem::exists(file()));
}

TEST_F(SettingsModelTest, FollowsTheFile) {
    SettingsModel model = makeModel();
    writeEntries("<key>textSize</key><integer>30</integer>");
    model.reload();
    EXPECT_EQ(model.textOf(settingOf("textSize")), "30");
}

TEST_F(SettingsModelTest, ATornFileIsReportedAndNeverLost) {
    const std::string torn = "<plist version=\"1.0\"><dict><key>textSize</key><integer>3";
    write(torn);
    SettingsModel model = makeModel();
    ASSERT_TRUE(model.problem());
    EXPECT_THAT(message(*model.problem()), HasSubstr("org.quorvel.quorvelprefs.plist"));
    model.set(settingOf("textSize"), "20");
    EXPECT_TRUE(model.problem());
    EXPECT_FALSE(model.canUndo());
    EXPECT_EQ(content(), torn);
    writeEntries("<key>textSize</key><integer>30</integer>");
    model.reload();
    EXPECT_FALSE(model.problem());
    EXPECT_EQ(model.textOf(settingOf("textSize")), "30");
}

TEST_F(SettingsModelTest, AnArrayIsNoSettingsFile) {
    const std::string array = "<plist version=\"1.0\"><array/></plist>";
    write(array);
    SettingsModel model = makeModel();
    ASSERT_TRUE(model.problem());
    model.resetAll();
    model.set(settingOf("textSize"), "20");
    EXPECT_EQ(content(), array);
}

// A folder at the place of the file can be replaced by nobody, whoever runs the test.
TEST_F(SettingsModelTest, AFailedWriteChangesNothing) {
    SettingsModel model = makeModel();
    std::filesystem::create_directory(file());
    model.set(settingOf("textSize"), "20");
    ASSERT_TRUE(model.problem());
    EXPECT_EQ(model.textOf(settingOf("textSize")), "14");
    EXPECT_FALSE(model.canUndo());
    std::filesystem::remove(file());
    model.reload();
    EXPECT_FALSE(model.problem());
    model.set(settingOf("textSize"), "20");
    EXPECT_EQ(model.textOf(settingOf("textSize")), "20");
}

TEST_F(SettingsModelTest, AFailedUndoCanBeTriedAgain) {
    SettingsModel model = makeModel();
    model.set(settingOf("textSize"), "20");
    const std::string written = content();
    write("torn");
    model.undo();
    EXPECT_TRUE(model.problem());
    EXPECT_TRUE(model.canUndo());
    write(written);
    model.reload();
    model.undo();
    EXPECT_FALSE(model.isSet("textSize"));
}

} // namespace
} // namespace quorvel::settings_pages
