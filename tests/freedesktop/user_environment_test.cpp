// The user's folders and locale, from the environment, and the options that have them.
#include "freedesktop/user_environment.h"

#include <cstdlib>
#include <map>
#include <optional>

#include <gmock/gmock.h>

#include "freedesktop/bundle/program_folders.h"
#include "freedesktop/user_options.h"

namespace quorvel::freedesktop {
namespace {

class UserOptionsTest : public testing::Test {
protected:
    void SetUp() override {
        set("HOME", "/home/ana");
        for (const char* variable :
             {"XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME", "LC_ALL", "LC_TIME", "LANG"}) {
            set(variable, std::nullopt);
        }
    }
    void TearDown() override {
        for (const auto& [name, value] : m_before) {
            change(name, value);
        }
    }
    void set(const char* name, std::optional<std::string> value) {
        const char* before = std::getenv(name);
        m_before.try_emplace(name,
                             before != nullptr ? std::optional<std::string>(before) : std::nullopt);
        change(name, value);
    }

private:
    static void change(const std::string& name, const std::optional<std::string>& value) {
        value ? setenv(name.c_str(), value->c_str(), 1) : unsetenv(name.c_str());
    }
    std::map<std::string, std::optional<std::string>> m_before;
};

TEST_F(UserOptionsTest, FoldersAreInTheHome) {
    EXPECT_EQ(userPreferencesFolder(), "/home/ana/.config/quorvel/Preferences");
    EXPECT_EQ(userIndexFolder(), "/home/ana/.cache/quorvel");
}

TEST_F(UserOptionsTest, FoldersFollowTheVariables) {
    set("XDG_CONFIG_HOME", "/config");
    set("XDG_CACHE_HOME", "/cache");
    EXPECT_EQ(userPreferencesFolder(), "/config/quorvel/Preferences");
    EXPECT_EQ(userIndexFolder(), "/cache/quorvel");
}

TEST_F(UserOptionsTest, RelativeVariablesAreIgnored) {
    set("XDG_CONFIG_HOME", "config");
    set("XDG_CACHE_HOME", "");
    EXPECT_EQ(userPreferencesFolder(), "/home/ana/.config/quorvel/Preferences");
    EXPECT_EQ(userIndexFolder(), "/home/ana/.cache/quorvel");
}

TEST_F(UserOptionsTest, ThereIsNoIndexWithoutAHome) {
    set("HOME", std::nullopt);
    EXPECT_EQ(userIndexFolder(), "");
}

TEST_F(UserOptionsTest, OptionsHaveThem) {
    set("LANG", "de_DE.UTF-8");
    ProgramFolders folders;
    folders.data = "/data";
    folders.dataServerModule = "/module.so";
    const FreedesktopOptions options = userOptions(folders);
    EXPECT_NE(options.timeZone, nullptr);
    EXPECT_EQ(options.locale, "de_DE");
    EXPECT_EQ(options.dataFolder, "/data");
    EXPECT_EQ(options.dataServerModule, "/module.so");
    EXPECT_EQ(options.preferencesFolder, "/home/ana/.config/quorvel/Preferences");
    EXPECT_EQ(options.calendarIndexFolder, "/home/ana/.cache/quorvel");
    EXPECT_THAT(options.calendars, testing::Contains(testing::Field(
                                       &CalendarSource::name, "/home/ana/.local/share/calendars")));
    EXPECT_EQ(options.calendars.back().name, "thunderbird:");
    EXPECT_TRUE(options.calendars.back().isOptional);
    EXPECT_NE(options.desktop, nullptr);
    EXPECT_TRUE(options.makeLauncher);
}

} // namespace
} // namespace quorvel::freedesktop
