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

TEST_F(FileReplacement, WritesANewFile) {
    const mode_t mask = ::umask(022);
    EXPECT_EQ(replaceFile(inFolder("new"), "contents"), std::nullopt);
    ::umask(mask);
    EXPECT_EQ(contentsOfFile(inFolder("new")), "contents");
    EXPECT_EQ(permissionsOf(inFolder("new")), mode_t{0644});
    EXPECT_EQ(fileCount(), 1u);
}

TEST_F(FileReplacement, KeepsPermissionsAndLinks) {
    writeFile(inFolder("file"), "a much longer text than before");
    ::chmod(inFolder("file").c_str(), 0640);
    std::filesystem::create_symlink("file", inFolder("link"));
    EXPECT_EQ(replaceFile(inFolder("link"), "new"), std::nullopt);
    EXPECT_TRUE(std::filesystem::is_symlink(inFolder("link")));
    EXPECT_EQ(contentsOfFile(inFolder("file")), "new");
    EXPECT_EQ(permissionsOf(inFolder("file")), mode_t{0640});
    EXPECT_EQ(fileCount(), 2u);
}

TEST_F(FileReplacement, ReportsWhatIsWrong) {
    EXPECT_EQ(replaceFile(inFolder("none/file"), "x"), "No such file or directory");
    EXPECT_EQ(replaceFile(inFolder(""), "x"), "Is a directory");
    writeFile(inFolder("file"), "x");
    EXPECT_EQ(replaceFile(inFolder("file/below"), "x"), "Not a directory");
    EXPECT_EQ(contentsOfFile(inFolder("file")), "x");
    EXPECT_EQ(fileCount(), 1u);
}

TEST_F(FileReplacement, ADeviceIsNotReplaced) {
    EXPECT_EQ(replaceFile("/dev/null", "x"), std::nullopt);
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
    EXPECT_EQ(replaceFile("/dev/full", "x"), "No space left on device");
}

} // namespace
} // namespace quorvel::freedesktop
