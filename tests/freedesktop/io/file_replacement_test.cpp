#include "freedesktop/io/file_replacement.h"

#include <sys/stat.h>

#include "tests/freedesktop/io/folder_testing.h"

namespace quorvel::freedesktop {
namespace {

class FileReplacement : public FolderTest {};

mode_t permissionsOf(const std::string& path) {
    struct stat status = {};
    ::stat(path.c_str(), &status);
    return status.st_mode & 0777;
}

std::string problemOf(const Result<void>& result) {
    return result ? "" : message(result.error());
}

TEST_F(FileReplacement, WritesANewFile) {
    const mode_t mask = ::umask(022);
    EXPECT_TRUE(replaceFile(inFolder("new"), "contents"));
    ::umask(mask);
    EXPECT_EQ(contentsOfFile(inFolder("new")), "contents");
    EXPECT_EQ(permissionsOf(inFolder("new")), mode_t{0644});
    EXPECT_EQ(fileCount(), 1u);
}

TEST_F(FileReplacement, PreservesPermissionsAndLinks) {
    writeFile(inFolder("file"), "a much longer text than before");
    ::chmod(inFolder("file").c_str(), 0640);
    std::filesystem::create_symlink("file", inFolder("link"));
    EXPECT_TRUE(replaceFile(inFolder("link"), "new"));
    EXPECT_TRUE(std::filesystem::is_symlink(inFolder("link")));
    EXPECT_EQ(contentsOfFile(inFolder("file")), "new");
    EXPECT_EQ(permissionsOf(inFolder("file")), mode_t{0640});
    EXPECT_EQ(fileCount(), 2u);
}

TEST_F(FileReplacement, ReportsWhatIsWrong) {
    EXPECT_EQ(problemOf(replaceFile(inFolder("none/file"), "x")), "No such file or directory");
    EXPECT_EQ(problemOf(replaceFile(inFolder(""), "x")), "Is a directory");
    writeFile(inFolder("file"), "x");
    EXPECT_EQ(problemOf(replaceFile(inFolder("file/below"), "x")), "Not a directory");
    EXPECT_EQ(contentsOfFile(inFolder("file")), "x");
    EXPECT_EQ(fileCount(), 1u);
}

TEST_F(FileReplacement, ADeviceIsNotReplaced) {
    EXPECT_TRUE(replaceFile("/dev/null", "x"));
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
    EXPECT_EQ(problemOf(replaceFile("/dev/full", "x")), "No space left on device");
}

TEST_F(FileReplacement, WritesTheMissingTargetOfALink) {
    std::filesystem::create_symlink("elsewhere", inFolder("second"));
    std::filesystem::create_symlink("second", inFolder("first"));
    EXPECT_TRUE(replaceFile(inFolder("first"), "new", Durability::survivesPowerLoss));
    EXPECT_TRUE(std::filesystem::is_symlink(inFolder("first")));
    EXPECT_EQ(contentsOfFile(inFolder("elsewhere")), "new");
    EXPECT_EQ(fileCount(), 3u);
}

TEST_F(FileReplacement, ReportsLinksInACircle) {
    std::filesystem::create_symlink("b", inFolder("a"));
    std::filesystem::create_symlink("a", inFolder("b"));
    EXPECT_EQ(problemOf(replaceFile(inFolder("a"), "x")), "Too many levels of symbolic links");
}

TEST_F(FileReplacement, RemovesOnlyItsOwnAbandonedFiles) {
    for (const char* name :
         {".quorvel-new-a1B2c3", ".quorvel-new-long-name", "settings.plist.backup"}) {
        writeFile(inFolder(name), "x");
    }
    removeAbandonedFiles(inFolder(""));
    EXPECT_FALSE(std::filesystem::exists(inFolder(".quorvel-new-a1B2c3")));
    EXPECT_EQ(fileCount(), 2u);
    removeAbandonedFiles(inFolder("missing"));
}

} // namespace
} // namespace quorvel::freedesktop
