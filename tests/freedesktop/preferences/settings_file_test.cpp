// The file of the settings, read and changed.
#include "freedesktop/preferences/settings_file.h"

#include <cstdint>

#include <gtest/gtest.h>

#include "tests/freedesktop/preferences/preferences_fixture.h"

namespace quorvel::freedesktop {
namespace {

namespace fs = std::filesystem;

const std::string name(settingsFileName);

class SettingsFileTest : public PreferencesFixture {
protected:
    std::string readError() const {
        const auto settings = m_file.read();
        return settings ? "" : message(settings.error());
    }

    const SettingsFile m_file{m_folder.string()};
};

TEST_F(SettingsFileTest, IsEmptyWithoutAFile) {
    EXPECT_EQ(m_file.path(), pathOf(name));
    ASSERT_TRUE(m_file.read());
    EXPECT_TRUE(m_file.read()->empty());
    EXPECT_TRUE(SettingsFile("/nowhere/at/all").read()->empty());
}

TEST_F(SettingsFileTest, ReadsADictionary) {
    write(name, "<plist><dict><key>textSize</key><integer>20</integer></dict></plist>");
    const auto settings = m_file.read();
    ASSERT_TRUE(settings);
    EXPECT_EQ(std::get<std::int64_t>(settings->at("textSize").value), 20);
}

TEST_F(SettingsFileTest, NamesThePlaceOfAnError) {
    write(name, "<plist>\n<dict>\n<key>textSize</key>\n</dict></plist>");
    EXPECT_EQ(readError(), pathOf(name) + ":4:1: the XML has a key without a value, or a value "
                                          "without a key: mend the file, or move it away");
    write(name, "");
    EXPECT_EQ(readError(), pathOf(name) + ": it is empty: mend the file, or move it away");
    write(name, "<plist><array/></plist>");
    EXPECT_EQ(readError(),
              pathOf(name) + ": it holds no dictionary: mend the file, or move it away");
    fs::remove(m_folder / name);
    fs::create_directory(m_folder / name);
    EXPECT_EQ(readError(),
              pathOf(name) + ": it is not a regular file: mend the file, or move it away");
}

} // namespace
} // namespace quorvel::freedesktop
