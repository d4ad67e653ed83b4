// The file of the settings, read and changed.
#include "freedesktop/preferences/settings_file.h"

#include <cstdint>
#include <thread>
#include <vector>

#include <csignal>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include "freedesktop/preferences/property_list_edit.h"
#include "tests/freedesktop/preferences/preferences_fixture.h"

namespace quorvel::freedesktop {
namespace {

namespace fs = std::filesystem;
using platform::PropertyListValue;

const std::string name(settingsFileName);

class SettingsFileTest : public PreferencesFixture {
protected:
    std::string readError() const {
        const auto settings = m_file.read();
        return settings ? "" : message(settings.error());
    }

    // What went wrong, without the place.
    std::string changeError(const SettingChanges& changes) const {
        const auto changed = m_file.change(changes);
        return changed ? "" : changed.error().what + ": " + changed.error().toDo;
    }

    // The contents after the change.
    std::string changed(std::string_view contents, const SettingChanges& changes) const {
        write(name, contents);
        EXPECT_EQ(changeError(changes), "");
        return contentsOf(name);
    }

    std::size_t fileCount() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(m_folder), fs::directory_iterator()));
    }

    const SettingsFile m_file{m_folder.string()};
};

PropertyListValue number(std::int64_t value) {
    return {value};
}
PropertyListValue text(const char* value) {
    return {std::string(value)};
}

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

constexpr std::string_view commented = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//X" "http://example.org/x.dtd">
<!-- mine -- all mine -->
<plist version="1.0">
<dict>
  <key>textSize</key>      <integer> 14 </integer> <!-- points -->
  <!-- not ours -->
  <key>other</key>         <array><dict><key>textSize</key><real>1.50</real></dict></array>
  <key>displayLocation</key> <true/>
  <!-- the end -->
</dict>
</plist>
)";

std::string replaced(std::string text, std::string_view from, std::string_view to) {
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return text.replace(at, from.size(), to);
}

TEST_F(SettingsFileTest, MakesTheFileAndItsFolder) {
    const fs::path folder = m_folder / "new" / "folder";
    const SettingsFile file(folder.string());
    ASSERT_TRUE(file.change({{"textSize", number(20)}, {"displayLocation", {{true}}}}));
    EXPECT_EQ(contentsOf("new/folder/" + name), R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0">
<dict>
    <key>displayLocation</key> <true/>
    <key>textSize</key> <integer>20</integer>
</dict>
</plist>
)");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()), 1);
}

TEST_F(SettingsFileTest, ChangesOnlyTheBytesOfAValue) {
    EXPECT_EQ(changed(commented, {{"textSize", number(20)}}),
              replaced(std::string(commented), "<integer> 14 </integer>", "<integer>20</integer>"));
    EXPECT_EQ(changed(commented, {{"displayLocation", {{false}}}}),
              replaced(std::string(commented), "<true/>", "<false/>"));
    EXPECT_EQ(changed(commented, {{"iconFile", text("/a&<b>\xC3\xA4")}}),
              replaced(std::string(commented), "<!-- the end -->\n",
                       "<!-- the end -->\n"
                       "  <key>iconFile</key> <string>/a&#38;&#60;b&#62;\xC3\xA4</string>\n"));
}

TEST_F(SettingsFileTest, RemovesAKeyWithItsLine) {
    EXPECT_EQ(changed(commented, {{"displayLocation", std::nullopt}}),
              replaced(std::string(commented), "  <key>displayLocation</key> <true/>\n", ""));
    EXPECT_EQ(changed(commented, {{"missing", std::nullopt}}), commented);
}

TEST_F(SettingsFileTest, MakesSeveralChangesAtOnce) {
    EXPECT_EQ(changed("<plist><dict><key>a</key><true/><key>b</key><true/></dict></plist>",
                      {{"a", std::nullopt}, {"b", number(1)}, {"c", {{1.5}}}, {"d", text("")}}),
              "<plist><dict><key>b</key><integer>1</integer><key>c</key><real>1.5</real>"
              "<key>d</key><string></string></dict></plist>");
}

TEST_F(SettingsFileTest, ChangesTheLastOfEqualKeys) {
    EXPECT_EQ(changed("<dict><key>a</key><true/><key>a</key><false/></dict>", {{"a", number(5)}}),
              "<dict><key>a</key><true/><key>a</key><integer>5</integer></dict>");
    EXPECT_EQ(changed("<dict>\n<key>a</key><true/>\n<key>a</key>\n<false/></dict>",
                      {{"a", std::nullopt}}),
              "<dict></dict>");
}

TEST_F(SettingsFileTest, FillsAnEmptyDictionary) {
    const std::string entry = "<key>a</key> <integer>5</integer>";
    EXPECT_EQ(changed("<plist>\n<dict/>\n</plist>", {{"a", number(5)}}),
              "<plist>\n<dict>\n    " + entry + "\n</dict>\n</plist>");
    EXPECT_EQ(changed("<plist>\r\n  <dict x=\"/\" />\r\n</plist>", {{"a", number(5)}}),
              "<plist>\r\n  <dict x=\"/\">\r\n      " + entry + "\r\n  </dict>\r\n</plist>");
    EXPECT_EQ(changed("<plist><dict>\n</dict></plist>", {{"a", number(5)}}),
              "<plist><dict>\n    " + entry + "\n</dict></plist>");
}

TEST_F(SettingsFileTest, WritesABlankFileAnew) {
    EXPECT_EQ(changed(" \n", {{"a", {{true}}}}), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                                 "<plist version=\"1.0\">\n"
                                                 "<dict>\n"
                                                 "    <key>a</key> <true/>\n"
                                                 "</dict>\n"
                                                 "</plist>\n");
}

std::string utf16(std::string_view ascii, bool bigEndian) {
    std::string bytes;
    for (const char c : ascii) {
        bytes += bigEndian ? std::string{'\0', c} : std::string{c, '\0'};
    }
    return bytes;
}

TEST_F(SettingsFileTest, WritesInTheEncodingOfTheFile) {
    const std::string before = "<plist><dict><key>a</key><true/></dict></plist>\n";
    const std::string after = "<plist><dict><key>a</key><false/></dict></plist>\n";
    EXPECT_EQ(changed("\xEF\xBB\xBF" + before, {{"a", {{false}}}}), "\xEF\xBB\xBF" + after);
    EXPECT_EQ(changed("\xFF\xFE" + utf16(before, false), {{"a", {{false}}}}),
              "\xFF\xFE" + utf16(after, false));
    EXPECT_EQ(changed(utf16(before, true), {{"a", {{false}}}}), utf16(after, true));
    const std::string latin = "<?xml version='1.0' encoding='windows-1252'?>\n<dict>"
                              "<key>n\xE4me</key><string>\x80</string>";
    EXPECT_EQ(changed(latin + "</dict>", {{"a", text("\xE2\x82\xAC")}}),
              latin + "<key>a</key><string>&#8364;</string></dict>");
}

TEST_F(SettingsFileTest, WritesTheOldTextFormat) {
    const std::string before = "// mine\n{\n  textSize = 14; // points\n  flag;\n"
                               "  list = (a, {textSize = 1;});\n}\n";
    EXPECT_EQ(changed(before, {{"textSize", number(20)}}), replaced(before, "14", "20"));
    EXPECT_EQ(changed(before, {{"flag", {{true}}}}), replaced(before, "flag;", "flag = YES;"));
    EXPECT_EQ(changed(before, {{"flag", std::nullopt}}), replaced(before, "\n  flag;", ""));
    EXPECT_EQ(changed(before, {{"iconFile", text("/a \"b\"\\")}}),
              replaced(before, "});\n", "});\n  iconFile = \"/a \\\"b\\\"\\\\\";\n"));
    EXPECT_EQ(changed("a = 1;\n", {{"a", number(2)}, {"b", {{2.5}}}}), "a = 2;\nb = 2.5;\n");
    EXPECT_EQ(changed("{ a = 1; // one\n}", {{"b", number(2)}}), "{ a = 1; // one\n b = 2;\n}");
}

TEST_F(SettingsFileTest, ReadsTheTextsOfTheOldFormatAsValues) {
    write(name, "{ textSize = 20; displayLocation = YES; sameHeightRows = 0; maxHeight = 99.5;\n"
                "  rightAlignedDate = on; daysToDisplay = many; textColor = red; other = 7; }");
    const auto settings = m_file.read();
    ASSERT_TRUE(settings);
    EXPECT_TRUE(areSame(settings->at("textSize"), number(20)));
    EXPECT_TRUE(areSame(settings->at("displayLocation"), PropertyListValue{true}));
    EXPECT_TRUE(areSame(settings->at("sameHeightRows"), PropertyListValue{false}));
    EXPECT_TRUE(areSame(settings->at("maxHeight"), PropertyListValue{99.5}));
    // For the widget, "on" is false.
    EXPECT_TRUE(areSame(settings->at("rightAlignedDate"), text("on")));
    EXPECT_TRUE(areSame(settings->at("daysToDisplay"), text("many")));
    EXPECT_TRUE(areSame(settings->at("other"), text("7")));
}

TEST_F(SettingsFileTest, WritesTheBinaryForm) {
    // {"a": 1, "b": "x"}
    const std::string binary("bplist00\xD2\x01\x02\x03\x04QaQb\x10\x01Qx"
                             "\x08\x0D\x0F\x11\x13\0\0\0\0\0\0\x01\x01\0\0\0\0\0\0\0\x05"
                             "\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x15",
                             8 + 5 + 8 + 5 + 32);
    const std::string after =
        changed(binary, {{"a", number(300)}, {"c", {{2.5}}}, {"d", text("\xC3\xA4")}});
    EXPECT_EQ(after.substr(0, 8), "bplist00");
    const auto settings = m_file.read();
    ASSERT_TRUE(settings);
    EXPECT_EQ(settings->size(), 4U);
    EXPECT_TRUE(areSame(settings->at("a"), number(300)));
    EXPECT_TRUE(areSame(settings->at("b"), text("x")));
    EXPECT_TRUE(areSame(settings->at("c"), PropertyListValue{2.5}));
    EXPECT_TRUE(areSame(settings->at("d"), text("\xC3\xA4")));
    EXPECT_EQ(changeError({{"a", std::nullopt}, {"missing", std::nullopt}}), "");
    EXPECT_EQ(m_file.read()->size(), 3U);
}

// The reader makes a dictionary of it, but nothing can be added to it.
TEST_F(SettingsFileTest, RefusesAReferenceInPlaceOfADictionary) {
    const std::string reference("bplist00\x80\x05\x08\0\0\0\0\0\0\x01\x01\0\0\0\0\0\0\0\x01"
                                "\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x0A",
                                8 + 2 + 1 + 32);
    write(name, reference);
    EXPECT_TRUE(m_file.read());
    EXPECT_EQ(changeError({{"textSize", number(20)}}),
              "it holds no dictionary: change it with an editor");
    EXPECT_EQ(contentsOf(name), reference);
}

TEST_F(SettingsFileTest, NeverOverwritesAFileThatItCannotRead) {
    const std::string advice = ": mend the file, or move it away";
    const std::vector<std::pair<std::string, std::string>> cases{
        {"", "it is empty"},
        {"<plist><dict><key>a</key>", "the XML breaks off"},
        {"<plist><array/></plist>", "it holds no dictionary"},
        {"<plist><string>x</string></plist>", "it holds no dictionary"},
        {"bplist00", "the binary list is damaged"},
        {"\x7F\x45LF", "it is not a property list"},
        {"{ a = ", "it is not a property list"},
    };
    for (const auto& [contents, problem] : cases) {
        write(name, contents);
        EXPECT_EQ(changeError({{"textSize", number(20)}}), problem + advice);
        EXPECT_EQ(contentsOf(name), contents);
        EXPECT_EQ(fileCount(), 1U);
    }
}

TEST_F(SettingsFileTest, RefusesAChangeThatWouldTouchOtherBytes) {
    const std::string invalid = "<dict><key>a</key><string>\xFF</string></dict>";
    write(name, invalid);
    EXPECT_EQ(changeError({{"b", {{true}}}}),
              "its form does not allow this change: change it with an editor");
    EXPECT_EQ(contentsOf(name), invalid);
    EXPECT_EQ(changeError({{"b", {{platform::NSDate{5}}}}}),
              "its form does not allow this change: change it with an editor");
}

TEST_F(SettingsFileTest, WritesNothingWithoutADifference) {
    write(name, commented);
    const auto before = fs::last_write_time(m_folder / name);
    struct stat first {};
    struct stat second {};
    ASSERT_EQ(::stat(m_file.path().c_str(), &first), 0);
    EXPECT_EQ(changeError({{"textSize", number(14)}, {"none", std::nullopt}}), "");
    ASSERT_EQ(::stat(m_file.path().c_str(), &second), 0);
    EXPECT_EQ(first.st_ino, second.st_ino);
    EXPECT_EQ(fs::last_write_time(m_folder / name), before);
    EXPECT_EQ(SettingsFile((m_base / "other").string()).change({{"a", std::nullopt}}).hasValue(),
              true);
    EXPECT_FALSE(fs::exists(m_base / "other" / name));
}

TEST_F(SettingsFileTest, FollowsALinkAndPreservesPermissions) {
    fs::create_directory(m_base / "dotfiles");
    const fs::path target = m_base / "dotfiles" / "settings";
    std::ofstream(target) << "<dict/>";
    fs::permissions(target, fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink("../dotfiles/settings", m_folder / name);
    EXPECT_EQ(changeError({{"textSize", number(20)}}), "");
    EXPECT_TRUE(fs::is_symlink(m_folder / name));
    EXPECT_EQ(fs::status(target).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_TRUE(areSame(m_file.read()->at("textSize"), number(20)));
    EXPECT_EQ(std::distance(fs::directory_iterator(m_base / "dotfiles"), fs::directory_iterator()),
              1);
}

TEST_F(SettingsFileTest, ReportsAFolderThatCannotBeMade) {
    write("file", "x");
    const auto made = SettingsFile(pathOf("file") + "/below").change({{"a", {{true}}}});
    ASSERT_FALSE(made);
    EXPECT_EQ(message(made.error()), pathOf("file") +
                                         "/below: the folder cannot be made (Not a "
                                         "directory): name another with --preferences");
}

TEST_F(SettingsFileTest, PreservesTheOldFileOnAFullDisk) {
    write(name, commented);
    struct rlimit before {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    ::signal(SIGXFSZ, SIG_IGN);
    const struct rlimit tiny { 64, before.rlim_max };
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &tiny), 0);
    const std::string problem = changeError({{"textSize", number(20)}});
    ::setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(problem, "it cannot be written (File too large): nothing was changed; check the "
                       "permissions and the space of its folder");
    EXPECT_EQ(contentsOf(name), commented);
    EXPECT_EQ(fileCount(), 1U);
}

TEST_F(SettingsFileTest, LosesNoneOfManyChangesAtOnce) {
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([this, thread] {
            for (int i = 0; i < 25; ++i) {
                const std::string key = "key" + std::to_string(thread * 25 + i);
                EXPECT_TRUE(m_file.change({{key, number(i)}}));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(m_file.read()->size(), 100U);
    EXPECT_EQ(fileCount(), 1U);
}

} // namespace
} // namespace quorvel::freedesktop
