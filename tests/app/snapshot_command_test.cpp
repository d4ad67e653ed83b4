// The command `snapshot`.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "tests/app/command_fixture.h"

namespace quorvel::app {
namespace {

class SnapshotCommandTest : public CommandTest {
protected:
    std::string drawn(const std::string& name, std::vector<std::string> more = {}) const {
        std::vector<std::string> arguments{"snapshot", "-o", path(name).string()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const RunResult result = runHere(arguments);
        EXPECT_EQ(result.status, 0) << result.errors;
        EXPECT_EQ(result.output, "");
        std::ifstream file(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

    void SetUp() override {
        writeCalendar("Work", event("a", "Review", "DTSTART:20260310T120000Z"));
    }
};

unsigned bigEndian(const std::string& bytes, std::size_t offset) {
    unsigned number = 0;
    for (std::size_t index = 0; index < 4; ++index) {
        number = number * 256 + static_cast<unsigned char>(bytes.at(offset + index));
    }
    return number;
}

TEST_F(SnapshotCommandTest, DrawsEachKindOfFile) {
    EXPECT_TRUE(drawn("x.png").starts_with("\x89PNG"));
    EXPECT_TRUE(drawn("x.svg").starts_with("<?xml"));
    EXPECT_TRUE(drawn("x.pdf").starts_with("%PDF"));
}

TEST_F(SnapshotCommandTest, HasTheSizeOfTheWidgetTimesTheScale) {
    const double height = runHere({"inspect", "--do", "present"}).json().at("totalHeight");
    const std::string once = drawn("x.png");
    EXPECT_EQ(bigEndian(once, 16), 320U);
    EXPECT_NEAR(bigEndian(once, 20), height, 1);
    const std::string twice = drawn("x.png", {"--scale", "2", "--width", "400"});
    EXPECT_EQ(bigEndian(twice, 16), 800U);
    EXPECT_NEAR(bigEndian(twice, 20), height * 2, 1);
}

TEST_F(SnapshotCommandTest, ATooLargePictureNamesWhatWouldHelp) {
    std::string events;
    for (int index = 0; index < 40; ++index) {
        events += event("e" + std::to_string(index), "Review", "DTSTART:20260310T120000Z");
    }
    writeCalendar("Many", events);
    const RunResult png = runHere({"snapshot", "-o", path("x.png").string(), "--scale", "40"});
    EXPECT_EQ(png.status, 1);
    EXPECT_NE(png.errors.find(" pixels is too large: draw a .pdf instead; the settings "
                              "maxEventsToDisplay and limitMaxHeight, and --scale, make it "
                              "smaller\n"),
              std::string::npos)
        << png.errors;
    EXPECT_FALSE(std::filesystem::exists(path("x.png")));
    drawn("x.pdf", {"--scale", "40"});

    const RunResult pdf =
        runHere({"snapshot", "-o", path("y.pdf").string(), "--scale", "64", "--width", "100000"});
    EXPECT_EQ(pdf.status, 1);
    EXPECT_NE(pdf.errors.find(" pixels is too large: the settings maxEventsToDisplay"),
              std::string::npos)
        << pdf.errors;
}

TEST_F(SnapshotCommandTest, WarnsWhereThereAreNoFonts) {
    m_environment["FONTCONFIG_FILE"] =
        write("fonts.conf", "<?xml version=\"1.0\"?>\n<fontconfig/>\n").string();
    const RunResult result = runHere({"snapshot", "-o", path("x.png").string()});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors,
              "quorvel: there are no fonts, so that the texts cannot be read: install "
              "one, such as DejaVu Sans (on Debian the package fonts-dejavu-core)\n");
    EXPECT_TRUE(std::filesystem::exists(path("x.png")));
}

TEST_F(SnapshotCommandTest, RepeatsTheSameBytesAndPaintsTheBackground) {
    const std::string standard = drawn("x.png");
    EXPECT_EQ(drawn("x.png"), standard);
    EXPECT_NE(drawn("x.png", {"--background", "none"}), standard);
    EXPECT_NE(drawn("x.png", {"--background", "#f00"}), standard);
    EXPECT_EQ(drawn("x.png", {"--background", "#F00"}), drawn("x.png", {"--background", "red"}));
}

TEST_F(SnapshotCommandTest, TheAppearanceChoosesTheBackdropAndTheOpenColours) {
    const std::string dark = drawn("x.png");
    EXPECT_EQ(drawn("x.png", {"--appearance", "dark"}), dark);
    const std::string light = drawn("x.png", {"--appearance", "light"});
    const std::string highContrast = drawn("x.png", {"--appearance", "high-contrast"});
    EXPECT_NE(light, dark);
    EXPECT_NE(highContrast, dark);
    EXPECT_NE(highContrast, light);
    EXPECT_EQ(drawn("x.png", {"--appearance", "high-contrast", "--background", "black"}),
              highContrast);
    EXPECT_NE(drawn("x.png", {"--appearance", "light", "--background", "black"}), light);
}

TEST_F(SnapshotCommandTest, TheTextScaleEnlargesTextsAndRows) {
    const std::string once = drawn("x.png", {"--scale", "8"});
    EXPECT_EQ(drawn("x.png", {"--scale", "8", "--text-scale", "1"}), once);
    const std::string twice = drawn("x.png", {"--scale", "8", "--text-scale", "2"});
    const std::string half = drawn("x.png", {"--scale", "8", "--text-scale", "0.5"});
    const double margins = 26.0 * 8;
    EXPECT_NEAR(bigEndian(twice, 20) - margins, 2 * (bigEndian(once, 20) - margins), 2);
    EXPECT_NEAR(bigEndian(half, 20) - margins, (bigEndian(once, 20) - margins) / 2, 2);
    EXPECT_EQ(bigEndian(twice, 16), bigEndian(once, 16)) << "the width";
}

TEST_F(SnapshotCommandTest, DrawsAnEmptyAgenda) {
    writeCalendar("Work", "");
    EXPECT_EQ(bigEndian(drawn("x.png"), 20), 300U);
}

TEST_F(SnapshotCommandTest, AnEmptyAgendaHasALineInsteadOfEmptyRows) {
    writeCalendar("Work", "");
    const std::string until = drawn("x.svg");
    writeSettings("<key>showSeparatorLines</key><false/>");
    EXPECT_EQ(drawn("x.svg"), until) << "no separators either way";
    writeSettings("<key>daysToDisplay</key><integer>0</integer>");
    EXPECT_NE(drawn("x.svg"), until) << "another day";
    writeSettings("<key>maxHeight</key><integer>0</integer>");
    EXPECT_EQ(bigEndian(drawn("x.png"), 20), 44U);
}

TEST_F(SnapshotCommandTest, ACalendarThatCannotBeReadAddsAMark) {
    const unsigned before = bigEndian(drawn("x.png"), 20);
    write("calendars/Broken.ics", "hello");
    const RunResult result = runHere({"snapshot", "-o", path("x.png").string()});
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(result.errors.find("Broken.ics"), std::string::npos) << "as before";
    std::ifstream file(path("x.png"), std::ios::binary);
    const std::string marked{std::istreambuf_iterator<char>(file), {}};
    EXPECT_GT(bigEndian(marked, 20), before + 20);
}

TEST_F(SnapshotCommandTest, MissingCalendarsAreDrawnAndReported) {
    const RunResult result = run({"snapshot", "-o", path("x.svg").string()});
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.errors.find("there are no calendars"), std::string::npos);
    EXPECT_GT(std::filesystem::file_size(path("x.svg")), 1000U) << "the glyphs of the line";
}

TEST_F(SnapshotCommandTest, WritesNothingElse) {
    drawn("x.png");
    EXPECT_EQ(files(), (std::vector<std::string>{"calendars/Work.ics", "x.png"}));
}

} // namespace
} // namespace quorvel::app
