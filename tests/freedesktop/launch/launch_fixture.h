// A desktop of its own for each test: folders for entries and associations, and a record of what
// was started.
#pragma once

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <gio/gdesktopappinfo.h>
#include <gtest/gtest.h>

namespace quorvel::freedesktop {

class LaunchTest : public testing::Test {
protected:
    // The library reads the folders' places once a process, so they are the same for all tests.
    LaunchTest() {
        std::filesystem::remove_all(folder() / "applications");
        std::filesystem::remove_all(folder() / "mimeapps.list");
        std::filesystem::remove_all(record());
        std::filesystem::create_directories(folder() / "applications");
    }

    static const std::filesystem::path& folder() {
        static const std::filesystem::path path = makeFolder();
        return path;
    }
    static std::filesystem::path record() { return folder() / "record"; }

    static void write(const std::filesystem::path& path, const std::string& text) {
        std::ofstream(path) << text;
    }

    // An entry whose program writes down its arguments and then takes that long.
    static void install(const std::string& name, const std::string& arguments,
                        const std::string& more = "", int milliseconds = 0) {
        write(folder() / "applications" / (name + ".desktop"),
              "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=" + RECORDER + " " +
                  record().string() + " " + std::to_string(milliseconds) + " " + arguments + "\n" +
                  more + "\n");
        EXPECT_TRUE(becomesTrue([&] { return isInstalled(name + ".desktop"); })) << name;
    }
    static void associate(const std::string& type, const std::string& name) {
        write(folder() / "mimeapps.list",
              "[Default Applications]\n" + type + "=" + name + ".desktop\n");
        EXPECT_TRUE(becomesTrue([&] { return defaultFor(type) == name + ".desktop"; })) << name;
    }

    // The argument lists of everything that was started, once there are so many.
    static std::vector<std::vector<std::string>> started(std::size_t count) {
        std::vector<std::vector<std::string>> lines;
        for (int i = 0; i < 500 && lines.size() < count; ++i) {
            while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
            }
            lines = readRecord();
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return lines;
    }
    // What there is after a while in which something could have happened.
    static std::vector<std::vector<std::string>> startedMeanwhile() {
        const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(150);
        while (std::chrono::steady_clock::now() < end) {
            g_main_context_iteration(nullptr, FALSE);
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        return readRecord();
    }

    // The library hears of changed folders a moment later.
    template <class Condition>
    static bool becomesTrue(Condition condition) {
        for (int i = 0; i < 1000 && !condition(); ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return condition();
    }

private:
    static bool isInstalled(const std::string& entryName) {
        GDesktopAppInfo* const entry = g_desktop_app_info_new(entryName.c_str());
        if (entry != nullptr) {
            g_object_unref(entry);
        }
        return entry != nullptr;
    }
    static std::string defaultFor(const std::string& type) {
        GAppInfo* const entry = g_app_info_get_default_for_type(type.c_str(), FALSE);
        const std::string name = entry != nullptr ? g_app_info_get_id(entry) : "";
        if (entry != nullptr) {
            g_object_unref(entry);
        }
        return name;
    }
    static std::filesystem::path makeFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "launch-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) {
            std::abort();
        }
        setenv("XDG_DATA_HOME", name.c_str(), 1);
        setenv("XDG_CONFIG_HOME", name.c_str(), 1);
        setenv("XDG_DATA_DIRS", (name + "/none").c_str(), 1);
        setenv("XDG_CONFIG_DIRS", (name + "/none").c_str(), 1);
        setenv("TZ", "UTC", 1);
        setenv("LC_ALL", "C.UTF-8", 1);
        static const struct Removal {
            std::string path;
            ~Removal() {
                std::error_code ignored;
                std::filesystem::remove_all(path, ignored);
            }
        } removal{name};
        return name;
    }
    static std::vector<std::vector<std::string>> readRecord() {
        std::ifstream file(record(), std::ios::binary);
        std::stringstream bytes;
        bytes << file.rdbuf();
        std::vector<std::vector<std::string>> lines;
        std::vector<std::string> arguments;
        std::string argument;
        for (const char c : bytes.str()) {
            if (c == '\0') {
                arguments.push_back(std::exchange(argument, ""));
            } else if (c == '\n' && argument.empty()) {
                lines.push_back(std::exchange(arguments, {}));
            } else {
                argument += c;
            }
        }
        return lines;
    }
};

} // namespace quorvel::freedesktop
