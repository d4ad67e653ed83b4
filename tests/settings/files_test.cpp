// What the window does with files of settings that it cannot use, and that others change.
#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>

#include "tests/settings/settings_fixture.h"

namespace quorvel::window {
namespace {

namespace fs = std::filesystem;

class SettingsFilesTest : public SettingsTest {
protected:
    SettingsFilesTest() { writeThreeEvents(); }

    fs::path file() const { return path("preferences/org.quorvel.quorvelprefs.plist"); }
    void write(const std::string& content) const { std::ofstream(file()) << content; }
};

TEST_F(SettingsFilesTest, ShowsWhatOthersHaveChanged) {
    openSettings();
    EXPECT_TRUE(numberBecomes("Title size", 14));
    writeSettings("<key>textSize</key><integer>33</integer>");
    EXPECT_TRUE(numberBecomes("Title size", 33));
    fs::remove(file());
    EXPECT_TRUE(numberBecomes("Title size", 14));
}

TEST_F(SettingsFilesTest, ATornFileIsNamedAndLeftAlone) {
    const std::string torn = "<plist version=\"1.0\"><dict><key>textSize</key><integer>2";
    write(torn);
    openSettings();
    EXPECT_TRUE(appears(ATSPI_ROLE_LIST_ITEM, "The settings cannot be changed"));
    EXPECT_FALSE(tryAction(ATSPI_ROLE_CHECK_BOX, "Show locations"));
    EXPECT_EQ(settingsContent(), torn);
    writeSettings("<key>textSize</key><integer>25</integer>");
    EXPECT_TRUE(numberBecomes("Title size", 25));
    EXPECT_FALSE(isThere(ATSPI_ROLE_LIST_ITEM, "The settings cannot be changed"));
    toggle("Show locations");
    EXPECT_TRUE(contentBecomes("displayLocation"));
}

TEST_F(SettingsFilesTest, AFileThatIsNoDictionaryIsLeftAlone) {
    openSettings();
    write("<plist version=\"1.0\"><array/></plist>");
    EXPECT_TRUE(appears(ATSPI_ROLE_LIST_ITEM, "The settings cannot be changed"));
    EXPECT_FALSE(tryAction(ATSPI_ROLE_CHECK_BOX, "Show locations"));
    EXPECT_EQ(settingsContent(), "<plist version=\"1.0\"><array/></plist>");
}

TEST_F(SettingsFilesTest, AFullDiskLosesNothing) {
    const std::string entries = "<key>textSize</key><integer>25</integer>";
    writeSettings(entries);
    const std::string before = settingsContent();
    openSettingsOnAFullDisk();
    toggle("Show locations");
    EXPECT_TRUE(appears(ATSPI_ROLE_LIST_ITEM, "The settings cannot be changed"));
    EXPECT_EQ(settingsContent(), before);
}

// The rights of files mean nothing to the administrator, unless without that power.
TEST_F(SettingsFilesTest, AReadOnlyFileIsNamedAndStays) {
    writeSettings("<key>textSize</key><integer>25</integer>");
    const std::string before = settingsContent();
    fs::permissions(file(), fs::perms(0444));
    openSettingsBy(
        {"/bin/sh", "-c",
         "[ $(id -u) != 0 ] || set -- setpriv --bounding-set -all --inh-caps -all \"$@\"; "
         "exec \"$@\"",
         "sh", QUORVEL_SETTINGS, "--preferences", path("preferences").string()});
    EXPECT_TRUE(numberBecomes("Title size", 25));
    toggle("Show locations");
    EXPECT_TRUE(appears(ATSPI_ROLE_LIST_ITEM, "The settings cannot be changed"));
    EXPECT_EQ(settingsContent(), before);
}

TEST_F(SettingsFilesTest, ALinkStaysALink) {
    fs::rename(file(), path("elsewhere.plist"));
    fs::create_symlink(path("elsewhere.plist"), file());
    openSettings();
    toggle("Show locations");
    EXPECT_TRUE(contentBecomes("displayLocation"));
    EXPECT_TRUE(fs::is_symlink(file()));
}

TEST_F(SettingsFilesTest, TheFolderIsMadeByTheFirstChange) {
    fs::remove_all(path("preferences"));
    openSettings();
    EXPECT_FALSE(fs::exists(path("preferences")));
    toggle("Show locations");
    EXPECT_TRUE(contentBecomes("displayLocation"));
}

} // namespace
} // namespace quorvel::window
