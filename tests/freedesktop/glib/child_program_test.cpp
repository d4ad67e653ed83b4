#include "freedesktop/glib/child_program.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include <gtest/gtest.h>
#include <sys/wait.h>

namespace quorvel::freedesktop {
namespace {

namespace fs = std::filesystem;

constexpr double longWait = 20; // seconds

class ChildProgramTest : public ::testing::Test {
protected:
    std::unique_ptr<ChildProgram> start(std::vector<std::string> arguments,
                                        const std::string& input = {}) {
        auto child = ChildProgram::start({std::move(arguments), input, true},
                                         [this](int status) { statuses.push_back(status); });
        EXPECT_TRUE(child);
        return child ? *std::move(child) : nullptr;
    }
    std::vector<int> statuses;
};

TEST_F(ChildProgramTest, EndIsReportedWithItsStatus) {
    for (const char* const script : {"exit 0", "exit 3", "kill -9 $$"}) {
        EXPECT_TRUE(start({"/bin/sh", "-c", script})->wait(longWait));
    }
    EXPECT_EQ(statuses, (std::vector<int>{0, 3, -1}));
}

TEST_F(ChildProgramTest, ProgramGetsItsInput) {
    std::string name = (fs::temp_directory_path() / "quorvel-child-XXXXXX").string();
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    const std::string input(1 << 20, 'x'); // more than a pipe holds
    EXPECT_TRUE(start({"/bin/sh", "-c", "cat >\"$0\"", name + "/output"}, input)->wait(longWait));
    std::ostringstream output;
    output << std::ifstream(name + "/output").rdbuf();
    EXPECT_TRUE(output.str() == input);
    EXPECT_TRUE(start({"/bin/true"}, input)->wait(longWait)) << "it does not read it";
    fs::remove_all(name);
}

TEST_F(ChildProgramTest, ProgramThatDoesNotExistIsAnError) {
    EXPECT_FALSE(ChildProgram::start({{"/nowhere/program"}, {}, true}, nullptr));
}

TEST_F(ChildProgramTest, WaitIsBounded) {
    const auto child = start({"/bin/sleep", "1"});
    EXPECT_FALSE(child->wait(0.05));
    EXPECT_EQ(statuses, std::vector<int>());
    EXPECT_TRUE(child->wait(longWait));
    EXPECT_EQ(statuses, std::vector<int>{0});
}

TEST_F(ChildProgramTest, DestructionForgetsTheProgramButCollectsItsEnd) {
    start({"/bin/sh", "-c", "exit 1"}).reset();
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    const auto hasChild = [] {
        return waitid(P_ALL, 0, nullptr, WEXITED | WNOHANG | WNOWAIT) == 0;
    };
    while (hasChild() && std::chrono::steady_clock::now() < deadline) {
        start({"/bin/true"})->wait(longWait); // runs the main context
    }
    EXPECT_FALSE(hasChild());
    for (const int status : statuses) {
        EXPECT_EQ(status, 0);
    }
}

TEST_F(ChildProgramTest, CallMayDestroyTheObject) {
    std::unique_ptr<ChildProgram> child;
    bool hasEnded = false;
    auto started = ChildProgram::start({{"/bin/true"}, {}, true}, [&](int) {
        child.reset();
        hasEnded = true;
    });
    ASSERT_TRUE(started);
    child = *std::move(started);
    EXPECT_TRUE(child->wait(longWait));
    EXPECT_TRUE(hasEnded);
}

} // namespace
} // namespace quorvel::freedesktop
