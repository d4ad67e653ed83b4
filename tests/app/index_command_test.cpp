// The index of the calendars while the program is killed, runs many times at once, has no disk
// space, or finds a damaged file.
#include <algorithm>
#include <chrono>
#include <csignal>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <sys/mount.h>
#include <sys/wait.h>

#include <gtest/gtest.h>

#include "tests/app/command_fixture.h"

namespace quorvel::app {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

std::string contentOf(const fs::path& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

class IndexCommandTest : public CommandTest {
protected:
    IndexCommandTest() {
        m_environment["XDG_CACHE_HOME"] = path("cache").string();
        for (const std::string name : {"Work", "Home", "Family"}) {
            std::string events;
            for (int i = 0; i < 700; ++i) {
                char times[96];
                std::snprintf(times, sizeof times, "DTSTART:2026%02d%02dT%02d3000Z%s", 3 + i % 2,
                              1 + i % 28, i % 24, i % 9 == 0 ? "\r\nRRULE:FREQ=WEEKLY" : "");
                events += event(name + std::to_string(i), "Title " + std::to_string(i), times);
            }
            writeCalendar(name, events + event("bad", "Bad", "DTSTART:nonsense"));
        }
    }

    fs::path index() const { return path("cache/quorvel/calendars.sqlite"); }

    // The index trusts a file two seconds after it was written.
    static void waitUntilFilesAreTrusted() {
        std::this_thread::sleep_for(std::chrono::milliseconds(2100));
    }

    static std::vector<std::string> agenda(int week, const char* option = "--json") {
        const std::string day = std::to_string(10 + 7 * week);
        return {"agenda", option, "--now", "2026-03-" + day + "T10:00:00Z"};
    }

    void storeExpectedResults() {
        for (int week = 0; week < weeks; ++week) {
            std::vector<std::string> arguments = agenda(week);
            arguments.emplace_back("--no-cache");
            m_expected.push_back(runHere(arguments));
            ASSERT_GT(m_expected.back().output.size(), 10000U);
        }
        ASSERT_FALSE(fs::exists(path("cache")));
    }

    void expectSameResults(const std::string& when) const {
        for (int week = 0; week < weeks; ++week) {
            const RunResult result = runHere(agenda(week));
            ASSERT_EQ(result.output, m_expected[static_cast<std::size_t>(week)].output) << when;
            ASSERT_EQ(result.errors, m_expected[static_cast<std::size_t>(week)].errors) << when;
            ASSERT_EQ(result.status, 0) << when;
        }
    }

    static constexpr int weeks = 3;
    std::vector<RunResult> m_expected;
    std::mt19937 m_random{5};
};

TEST_F(IndexCommandTest, SurvivesTwoHundredKills) {
    waitUntilFilesAreTrusted();
    storeExpectedResults();
    const auto before = Clock::now();
    ASSERT_EQ(runHere(agenda(0)).status, 0);
    const auto wholeRun =
        std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - before);
    for (int kill = 1; kill <= 200; ++kill) {
        if (kill % 4 == 0) {
            fs::remove(index()); // so that the next run writes it again
        }
        const pid_t process =
            startHere(agenda(static_cast<int>(m_random() % weeks)), path("out").string());
        std::this_thread::sleep_for(wholeRun * (m_random() % 120) / 100);
        ::kill(process, SIGKILL);
        waitpid(process, nullptr, 0);
        if (kill % 20 == 0) {
            expectSameResults("kill " + std::to_string(kill));
        }
    }
    expectSameResults("the end");
    EXPECT_TRUE(fs::exists(index()));
}

TEST_F(IndexCommandTest, IsSharedByTwentyProcesses) {
    waitUntilFilesAreTrusted();
    storeExpectedResults();
    for (int round = 0; round < 3; ++round) {
        std::vector<pid_t> processes;
        for (int i = 0; i < 20; ++i) {
            processes.push_back(
                startHere(agenda(i % weeks), path("out" + std::to_string(i)).string()));
        }
        for (int i = 0; i < 20; ++i) {
            int status = -1;
            waitpid(processes[static_cast<std::size_t>(i)], &status, 0);
            EXPECT_EQ(status, 0);
            EXPECT_EQ(contentOf(path("out" + std::to_string(i))),
                      m_expected[static_cast<std::size_t>(i % weeks)].output);
        }
        if (round == 1) {
            fs::remove(index());
        }
    }
    expectSameResults("the end");
}

TEST_F(IndexCommandTest, IsNotUsedOnAFullDisk) {
    waitUntilFilesAreTrusted();
    storeExpectedResults();
    fs::create_directories(path("cache"));
    if (mount("tmpfs", path("cache").c_str(), "tmpfs", 0, "size=48k") != 0) {
        GTEST_SKIP() << "this user may not mount a small disk";
    }
    std::string errors;
    for (int round = 0; round < 3; ++round) {
        expectSameResults("round " + std::to_string(round));
        errors = runHere(agenda(0, "--verbose")).errors;
    }
    umount(path("cache").c_str());
    const std::size_t first = errors.find("cannot be used");
    EXPECT_NE(first, std::string::npos) << errors;
    EXPECT_EQ(errors.find("cannot be used", first + 1), std::string::npos) << errors;
}

TEST_F(IndexCommandTest, SurvivesRandomBytes) {
    waitUntilFilesAreTrusted();
    storeExpectedResults();
    for (int round = 0; round < 30; ++round) {
        expectSameResults("round " + std::to_string(round));
        ASSERT_TRUE(fs::exists(index()));
        std::fstream file(index(), std::ios::binary | std::ios::in | std::ios::out);
        const auto size = static_cast<unsigned>(fs::file_size(index()));
        file.seekp(round % 3 == 0 ? 0 : static_cast<std::streamoff>(m_random() % size));
        for (unsigned i = 0; i < 1U << (round % 14); ++i) {
            file.put(static_cast<char>(m_random()));
        }
    }
    expectSameResults("the end");
}

TEST_F(IndexCommandTest, IsUnchangedWithNoCache) {
    EXPECT_EQ(runHere({"agenda", "--no-cache"}).status, 0);
    EXPECT_FALSE(fs::exists(path("cache")));
    waitUntilFilesAreTrusted();
    EXPECT_EQ(runHere({"agenda"}).status, 0);
    ASSERT_TRUE(fs::exists(index()));
    const std::string before = contentOf(index());
    for (const char* command : {"agenda", "calendars", "inspect"}) {
        EXPECT_EQ(runHere({command, "--no-cache"}).status, 0);
    }
    EXPECT_EQ(contentOf(index()), before);
}

TEST_F(IndexCommandTest, ReportsOnceWhyItIsNotUsed) {
    write("cache", "a file where the folder should be");
    const RunResult quiet = runHere({"calendars"});
    EXPECT_EQ(quiet.status, 0);
    EXPECT_EQ(quiet.errors.find("index"), std::string::npos) << quiet.errors;
    const std::string errors = runHere({"agenda", "--verbose"}).errors;
    const std::size_t first = errors.find("the index of the calendars, '" + index().string() +
                                          "', cannot be used: Not a directory");
    ASSERT_NE(first, std::string::npos) << errors;
    EXPECT_EQ(errors.find("the index", first + 1), std::string::npos) << errors;
}

// The sample has other dates in each run.
TEST_F(IndexCommandTest, IsNotStoredForTheSample) {
    EXPECT_EQ(run({"agenda", "--sample"}).status, 0);
    EXPECT_FALSE(fs::exists(index()));
}

} // namespace
} // namespace quorvel::app
