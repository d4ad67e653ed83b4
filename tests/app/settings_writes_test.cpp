// `quorvel settings KEY VALUE` while others write, while it is killed, and where it may not write.
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include "freedesktop/preferences/setting_value.h"
#include "freedesktop/preferences/settings_file.h"
#include "tests/app/command_fixture.h"

namespace quorvel::app {
namespace {

namespace fs = std::filesystem;
using freedesktop::SettingsFile;

const std::string settingsName = "org.quorvel.quorvelprefs.plist";

class SettingsWritesTest : public CommandTest {
protected:
    fs::path file() const { return path("preferences/" + settingsName); }

    std::string contents() const {
        std::ifstream stream(file(), std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    }

    RunResult set(const std::string& key, const std::string& value) const {
        return run({"settings", key, value, "--preferences", preferences()});
    }

    // As a user to whom nothing here belongs, if the test itself runs as root.
    RunResult setAsOther(const std::string& key, const std::string& value) const {
        const std::vector<std::string> arguments{"settings", key, value, "--preferences",
                                                 preferences()};
        if (::geteuid() != 0) {
            return run(arguments);
        }
        std::vector<std::string> words{"--reuid=65534", "--regid=65534", "--clear-groups",
                                       QUORVEL_PROGRAM};
        words.insert(words.end(), arguments.begin(), arguments.end());
        return runProgram("/usr/bin/setpriv", words);
    }

    std::string written(const std::string& key) const {
        const auto settings = SettingsFile(preferences()).read();
        const auto* const value = settings ? platform::objectForKey(*settings, key) : nullptr;
        return value != nullptr ? freedesktop::settingText(*value) : "";
    }

    std::size_t fileCount() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(preferences()), fs::directory_iterator()));
    }

    std::string cannotWrite(const std::string& reason) const {
        return "quorvel: " + file().string() + ": it cannot be written (" + reason +
               "): nothing was changed; check the permissions and the space of its folder\n";
    }
};

// Each writer has settings of its own and finds in the file what it has just written.
TEST_F(SettingsWritesTest, AThousandWritesAtOnceLoseNothing) {
    const std::vector<std::string> keys{
        "textSize",  "subtitleTextSize", "dateTextSize",      "daysToDisplay", "maxEventsToDisplay",
        "maxHeight", "textColor",        "subtitleTextColor", "dateTextColor", "swipeAction"};
    constexpr int rounds = 100;
    writeSettings("<!-- mine --><key>other</key><string>stays</string>");
    std::vector<std::thread> writers;
    for (const std::string& key : keys) {
        writers.emplace_back([this, &key] {
            const bool isSmall = key == "swipeAction" || key.ends_with("Color");
            for (int round = 0; round < rounds; ++round) {
                const std::string value = std::to_string(isSmall ? round % 4 : round + 1);
                const RunResult result = set(key, value);
                EXPECT_EQ(result.status, 0) << result.errors;
                EXPECT_EQ(written(key), value);
            }
        });
    }
    for (std::thread& writer : writers) {
        writer.join();
    }
    const auto settings = SettingsFile(preferences()).read();
    ASSERT_TRUE(settings);
    EXPECT_EQ(settings->size(), keys.size() + 1);
    EXPECT_EQ(written("textSize"), "100");
    EXPECT_EQ(written("maxHeight"), "100");
    EXPECT_EQ(written("swipeAction"), "3");
    EXPECT_EQ(written("other"), "stays");
    EXPECT_NE(contents().find("<!-- mine -->"), std::string::npos);
    EXPECT_EQ(fileCount(), 1U);
}

// Each round kills the process a little later, up to the time that it takes to finish.
TEST_F(SettingsWritesTest, AKilledWriterLeavesTheOldFileOrTheNewOne) {
    const auto contentsWith = [](int size) {
        return propertyList("<dict><key>other</key><string>" + std::string(100'000, 'x') +
                            "</string><key>textSize</key><integer>" + std::to_string(size) +
                            "</integer></dict>");
    };
    int size = 1;
    write("preferences/" + settingsName, contentsWith(size));
    const auto start = std::chrono::steady_clock::now();
    ASSERT_EQ(set("textSize", "1").status, 0);
    const auto lifetime = std::chrono::steady_clock::now() - start;
    constexpr int rounds = 300;
    for (int round = 0; round < rounds; ++round) {
        const int next = size % 200 + 1;
        const pid_t process =
            startHere({"settings", "textSize", std::to_string(next)}, "/dev/null");
        std::this_thread::sleep_for(lifetime * round / rounds);
        ::kill(process, SIGKILL);
        ::waitpid(process, nullptr, 0);
        const std::string found = contents();
        if (found == contentsWith(next)) {
            size = next;
        } else {
            ASSERT_EQ(found, contentsWith(size)) << "round " << round;
        }
    }
    EXPECT_EQ(set("textSize", "200").status, 0);
    EXPECT_EQ(contents(), contentsWith(200));
    EXPECT_EQ(fileCount(), 1U);
}

TEST_F(SettingsWritesTest, AReadOnlyFileStays) {
    writeSettings("<key>textSize</key><integer>20</integer>");
    fs::permissions(path(""), fs::perms(0755));
    fs::permissions(path("preferences"), fs::perms(0777));
    fs::permissions(file(), fs::perms(0444));
    const std::string before = contents();
    const RunResult result = setAsOther("textSize", "30");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, cannotWrite("Permission denied"));
    EXPECT_EQ(contents(), before);
    EXPECT_EQ(fileCount(), 1U);
}

TEST_F(SettingsWritesTest, AReadOnlyFolderStays) {
    writeSettings("<key>textSize</key><integer>20</integer>");
    fs::permissions(path(""), fs::perms(0755));
    fs::permissions(file(), fs::perms(0666));
    fs::permissions(path("preferences"), fs::perms(0555));
    const std::string before = contents();
    const RunResult result = setAsOther("textSize", "30");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, cannotWrite("Permission denied"));
    EXPECT_EQ(contents(), before);
    fs::permissions(path("preferences"), fs::perms(0755));
}

TEST_F(SettingsWritesTest, AFileThatMayNotBeReadIsNamed) {
    writeSettings("<key>textSize</key><integer>20</integer>");
    fs::permissions(path(""), fs::perms(0755));
    fs::permissions(file(), fs::perms(0));
    EXPECT_EQ(setAsOther("textSize", "30").errors,
              "quorvel: " + file().string() +
                  ": Permission denied: mend the file, or move it away\n");
}

TEST_F(SettingsWritesTest, ALinkStaysALink) {
    const fs::path target = write("dotfiles/settings.plist", propertyList("<dict/>"));
    fs::create_symlink(target, file());
    EXPECT_EQ(set("textSize", "30").status, 0);
    EXPECT_TRUE(fs::is_symlink(file()));
    EXPECT_EQ(written("textSize"), "30");
    fs::remove(target);
    EXPECT_EQ(set("textSize", "40").status, 0);
    EXPECT_TRUE(fs::is_symlink(file()));
    EXPECT_TRUE(fs::is_regular_file(target));
}

TEST_F(SettingsWritesTest, AFullDiskLosesNothing) {
    const std::string folder = path("preferences").string();
    if (::unshare(CLONE_NEWNS) != 0 ||
        ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        ::mount("none", folder.c_str(), "tmpfs", 0, "size=64k") != 0) {
        GTEST_SKIP() << "no file system may be mounted here; the unit tests limit the file's size";
    }
    writeSettings("<key>textSize</key><integer>20</integer><key>other</key><string>" +
                  std::string(20'000, 'x') + "</string>");
    write("preferences/filler", std::string(36'000, 'x'));
    const std::string before = contents();
    const RunResult result = set("textSize", "30");
    const std::string after = contents();
    const std::size_t count = fileCount();
    ::umount(folder.c_str());
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, cannotWrite("No space left on device"));
    EXPECT_EQ(after, before);
    EXPECT_EQ(count, 2U);
}

} // namespace
} // namespace quorvel::app
