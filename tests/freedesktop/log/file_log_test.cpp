// Log files: appended, and honest about those that cannot be.
#include "freedesktop/log/file_log.h"

#include <filesystem>
#include <fstream>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvel::freedesktop {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::EndsWith;

class FileLogTest : public testing::Test {
protected:
    FileLogTest() { fs::create_directories(m_folder); }
    ~FileLogTest() override { fs::remove_all(m_folder); }

    static std::vector<std::string> linesOf(const fs::path& path) {
        std::ifstream file(path);
        std::vector<std::string> lines;
        for (std::string line; std::getline(file, line);) {
            lines.push_back(line);
        }
        return lines;
    }

    fs::path m_folder =
        fs::temp_directory_path() / ("quorvel_log_test_" + std::to_string(getpid()));
};

TEST_F(FileLogTest, AppendsLines) {
    const fs::path path = m_folder / "log";
    {
        const auto log = FileLog::open(path);
        ASSERT_TRUE(log);
        log.value()->log("one");
        log.value()->log("two\nlines");
    }
    const auto again = FileLog::open(path);
    ASSERT_TRUE(again);
    again.value()->log("three");
    EXPECT_THAT(linesOf(path),
                ElementsAre(EndsWith("] one"), EndsWith("] two\\nlines"), EndsWith("] three")));
}

TEST_F(FileLogTest, ReportsWhyItCannotBeOpened) {
    EXPECT_EQ(FileLog::open(m_folder / "missing" / "log").error().what,
              "No such file or directory");
    EXPECT_EQ(FileLog::open(m_folder).error().what, "Is a directory");
}

TEST_F(FileLogTest, DoesNotWaitForAPipesReader) {
    const fs::path path = m_folder / "pipe";
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_EQ(FileLog::open(path).error().what, "No such device or address");
}

} // namespace
} // namespace quorvel::freedesktop
