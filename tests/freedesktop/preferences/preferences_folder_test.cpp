// Settings found in the user's folder and nowhere else.
#include "freedesktop/preferences/preferences_folder.h"

#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvel::freedesktop {
namespace {

namespace fs = std::filesystem;
using platform::PropertyListArray;
using platform::PropertyListDictionary;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string systemFolder = "/var/mobile/Library/Preferences/";

class RecordingLog final : public platform::SystemLog {
public:
    void log(std::string_view message) override { messages.emplace_back(message); }

    std::vector<std::string> messages;
};

class PreferencesFolderTest : public testing::Test {
protected:
    PreferencesFolderTest() { fs::create_directories(m_folder); }
    ~PreferencesFolderTest() override { fs::remove_all(m_base); }

    void write(const std::string& name, std::string_view contents) const {
        std::ofstream(m_folder / name, std::ios::binary) << contents;
    }

    void writeSize(const std::string& name, int size) const {
        write(name, "<plist><dict><key>textSize</key><integer>" + std::to_string(size) +
                        "</integer></dict></plist>");
    }

    static std::int64_t sizeIn(const std::optional<PropertyListDictionary>& dictionary) {
        const auto found =
            dictionary ? dictionary->find("textSize") : PropertyListDictionary::const_iterator();
        return dictionary && found != dictionary->end()
                   ? std::get<std::int64_t>(found->second.value)
                   : -1;
    }

    fs::path m_base =
        fs::temp_directory_path() / ("quorvel_preferences_" + std::to_string(getpid()));
    fs::path m_folder = m_base / "Preferences";
    RecordingLog m_log;
    PreferencesFolder m_preferences{m_folder, defaultFoundationVersionNumber, m_log};
};

TEST_F(PreferencesFolderTest, StandsForThePlatformsDirectories) {
    writeSize("a.plist", 18);
    EXPECT_EQ(sizeIn(m_preferences.dictionaryWithContentsOfFile(systemFolder + "a.plist")), 18);
    EXPECT_EQ(
        sizeIn(m_preferences.dictionaryWithContentsOfFile("/private" + systemFolder + "a.plist")),
        18);
    EXPECT_EQ(sizeIn(m_preferences.dictionaryWithContentsOfFile((m_folder / "a.plist").string())),
              18);
    EXPECT_THAT(m_log.messages, IsEmpty());
}

TEST_F(PreferencesFolderTest, IsReadAgainEachTime) {
    writeSize("a.plist", 18);
    EXPECT_EQ(sizeIn(m_preferences.dictionaryWithContentsOfFile(systemFolder + "a.plist")), 18);
    writeSize("a.plist", 20);
    EXPECT_EQ(sizeIn(m_preferences.dictionaryWithContentsOfFile(systemFolder + "a.plist")), 20);
    m_preferences.setFolder(m_base / "other");
    EXPECT_EQ(m_preferences.dictionaryWithContentsOfFile(systemFolder + "a.plist"), std::nullopt);
}

TEST_F(PreferencesFolderTest, IsNeverLeft) {
    std::ofstream(m_base / "secret.plist") << "{ a = b; }";
    for (const char* name :
         {"../secret.plist", "x/../../secret.plist", "..", "", "./../secret.plist"}) {
        EXPECT_EQ(m_preferences.dictionaryWithContentsOfFile(systemFolder + name), std::nullopt)
            << name;
    }
    EXPECT_EQ(m_preferences.copyKeyList("../secret"), std::nullopt);
    EXPECT_EQ(m_preferences.copyKeyList(""), std::nullopt);
    EXPECT_TRUE(
        m_preferences.dictionaryWithContentsOfFile((m_base / "secret.plist").string()).has_value());
    EXPECT_THAT(m_log.messages, IsEmpty());
}

TEST_F(PreferencesFolderTest, MissingFilesAreNothingAndNotWorthALine) {
    EXPECT_EQ(m_preferences.dictionaryWithContentsOfFile(systemFolder + "a.plist"), std::nullopt);
    EXPECT_EQ(m_preferences.arrayWithContentsOfFile(systemFolder + "a.plist"), std::nullopt);
    EXPECT_EQ(m_preferences.arrayWithContentsOfFile("/nowhere/at/all"), std::nullopt);
    EXPECT_EQ(m_preferences.arrayWithContentsOfFile(std::string("/etc/hosts\0", 11)), std::nullopt);
    EXPECT_THAT(m_log.messages, IsEmpty());
}

TEST_F(PreferencesFolderTest, DamagedFilesAreLoggedOnceUntilTheyChange) {
    const std::string path = systemFolder + "a.plist";
    const std::string local = m_folder / "a.plist";
    write("a.plist", "<plist><dict><key>textSi");
    EXPECT_EQ(m_preferences.dictionaryWithContentsOfFile(path), std::nullopt);
    EXPECT_EQ(m_preferences.dictionaryWithContentsOfFile(path), std::nullopt);
    EXPECT_THAT(m_log.messages, ElementsAre("cannot read " + local + ":1:25: the XML breaks off"));
    writeSize("a.plist", 18);
    EXPECT_EQ(sizeIn(m_preferences.dictionaryWithContentsOfFile(path)), 18);
    write("a.plist", "<plist><dict><key>textSi");
    EXPECT_EQ(m_preferences.dictionaryWithContentsOfFile(path), std::nullopt);
    write("a.plist", "");
    EXPECT_EQ(m_preferences.dictionaryWithContentsOfFile(path), std::nullopt);
    EXPECT_THAT(m_log.messages, ElementsAre("cannot read " + local + ":1:25: the XML breaks off",
                                            "cannot read " + local + ":1:25: the XML breaks off",
                                            "cannot read " + local + ": it is empty"));
}

TEST_F(PreferencesFolderTest, ListsWithANulAreUnreadableInEveryWay) {
    const std::string list =
        "<plist><array><string>a" + std::string(1, '\0') + "</string></array></plist>";
    for (const char* name : {"a.plist", "com.apple.mobilecal.plist"}) {
        write(name, list);
        EXPECT_EQ(m_preferences.dictionaryWithContentsOfFile(systemFolder + name), std::nullopt);
        EXPECT_EQ(m_preferences.arrayWithContentsOfFile(systemFolder + name), std::nullopt);
        EXPECT_THAT(m_log.messages.back(), testing::EndsWith("a character that XML forbids"));
    }
    EXPECT_EQ(m_preferences.copyKeyList("a"), std::nullopt);
    EXPECT_EQ(m_log.messages.size(), 2U);
}

TEST_F(PreferencesFolderTest, AnotherTypeIsNothing) {
    write("list.plist", "(one, two)");
    writeSize("dictionary.plist", 1);
    EXPECT_EQ(m_preferences.dictionaryWithContentsOfFile(systemFolder + "list.plist"),
              std::nullopt);
    EXPECT_EQ(m_preferences.arrayWithContentsOfFile(systemFolder + "dictionary.plist"),
              std::nullopt);
    const auto list = m_preferences.arrayWithContentsOfFile(systemFolder + "list.plist");
    ASSERT_TRUE(list);
    EXPECT_EQ(list->size(), 2U);
    EXPECT_EQ(m_log.messages.size(), 2U);
}

TEST_F(PreferencesFolderTest, OnlyRegularFilesAreRead) {
    ASSERT_EQ(mkfifo((m_folder / "pipe.plist").c_str(), 0600), 0);
    fs::create_directory(m_folder / "folder.plist");
    EXPECT_EQ(m_preferences.dictionaryWithContentsOfFile(systemFolder + "pipe.plist"),
              std::nullopt);
    EXPECT_EQ(m_preferences.dictionaryWithContentsOfFile(systemFolder + "folder.plist"),
              std::nullopt);
    EXPECT_EQ(m_preferences.dictionaryWithContentsOfFile("/dev/zero"), std::nullopt);
    EXPECT_EQ(m_log.messages.size(), 3U);
    EXPECT_EQ(m_log.messages.back(), "cannot read /dev/zero: it is not a regular file");
}

TEST_F(PreferencesFolderTest, StockCalendarsAreAllSelectedByDefault) {
    const std::string path = systemFolder + "com.apple.mobilecal.plist";
    const auto unsaid = m_preferences.dictionaryWithContentsOfFile(path);
    ASSERT_TRUE(unsaid);
    ASSERT_EQ(unsaid->size(), 1U);
    EXPECT_THAT(std::get<PropertyListArray>(unsaid->at("LastDeselectedCalendars").value),
                IsEmpty());
    write("com.apple.mobilecal.plist", "{ LastDeselectedCalendars = (work); }");
    const auto said = m_preferences.dictionaryWithContentsOfFile(path);
    ASSERT_TRUE(said);
    EXPECT_EQ(std::get<PropertyListArray>(said->at("LastDeselectedCalendars").value).size(), 1U);
    write("com.apple.mobilecal.plist", "{ LastDes");
    EXPECT_EQ(m_preferences.dictionaryWithContentsOfFile(path), std::nullopt);
}

TEST_F(PreferencesFolderTest, StockCalendarsAreDeselectedAsOnTheDesktopByDefault) {
    const std::string path = systemFolder + "com.apple.mobilecal.plist";
    std::vector<std::string> deselected{"home", "work"};
    m_preferences.setDeselectedCalendars([&] { return deselected; });
    const auto listed = [&] {
        std::vector<std::string> result;
        const auto dictionary = m_preferences.dictionaryWithContentsOfFile(path).value();
        for (const auto& entry :
             std::get<PropertyListArray>(dictionary.at("LastDeselectedCalendars").value)) {
            result.push_back(std::get<std::string>(entry.value));
        }
        return result;
    };
    EXPECT_EQ(listed(), deselected);
    deselected = {"other"};
    EXPECT_EQ(listed(), deselected);
    write("com.apple.mobilecal.plist", "{ LastDeselectedCalendars = (mine); }");
    EXPECT_EQ(listed(), std::vector<std::string>{"mine"});
}

TEST_F(PreferencesFolderTest, ServiceReadsTheSameFile) {
    write("org.example.plist", "{ b = 2; a = 1; }");
    const auto keys = m_preferences.copyKeyList("org.example");
    ASSERT_TRUE(keys);
    EXPECT_THAT(*keys, ElementsAre("a", "b"));
    const auto values = m_preferences.copyMultiple({"a", "c"}, "org.example");
    ASSERT_TRUE(values);
    ASSERT_EQ(values->size(), 1U);
    EXPECT_EQ(std::get<std::string>(values->at("a").value), "1");
}

TEST_F(PreferencesFolderTest, ServiceHasNoListForAnAbsentTornOrEmptyDomain) {
    write("empty.plist", "{}");
    write("torn.plist", "{");
    write("list.plist", "()");
    for (const char* domain : {"missing", "empty", "torn", "list"}) {
        EXPECT_EQ(m_preferences.copyKeyList(domain), std::nullopt) << domain;
        const auto values = m_preferences.copyMultiple({"a"}, domain);
        ASSERT_TRUE(values) << domain;
        EXPECT_TRUE(values->empty()) << domain;
    }
}

TEST_F(PreferencesFolderTest, ReturnsTheFoundationVersion) {
    EXPECT_EQ(m_preferences.foundationVersionNumber(), 1047.25);
    EXPECT_EQ(PreferencesFolder(m_folder, 1140.11, m_log).foundationVersionNumber(), 1140.11);
}

} // namespace
} // namespace quorvel::freedesktop
