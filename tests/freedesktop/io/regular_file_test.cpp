#include "freedesktop/io/regular_file.h"

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <string_view>

#include <sys/stat.h>
#include <unistd.h>

#include "tests/freedesktop/io/folder_testing.h"

namespace quorvel::freedesktop {
namespace {

using namespace std::string_literals;

class RegularFileTest : public FolderTest {};

std::string textOf(const Result<std::optional<std::vector<std::byte>>>& contents) {
    if (!contents) {
        return "refused: " + message(contents.error());
    }
    const auto& bytes = contents.value();
    return bytes ? std::string(reinterpret_cast<const char*>(bytes->data()), bytes->size())
                 : "missing";
}

TEST_F(RegularFileTest, ReadsPieceByPiece) {
    writeFile(inFolder("file"), "abcdef");
    const auto opened = RegularFile::open(inFolder("file"));
    ASSERT_TRUE(opened);
    const RegularFile& file = *opened;
    EXPECT_EQ(file.size(), 6u);
    std::string place(4, ' ');
    EXPECT_EQ(file.read(place.data(), 4).value(), 4u);
    EXPECT_EQ(place, "abcd");
    EXPECT_EQ(file.read(place.data(), 4).value(), 2u);
    EXPECT_EQ(place, "efcd");
    EXPECT_EQ(file.read(place.data(), 4).value(), 0u);
    file.rewind();
    EXPECT_EQ(file.read(place.data(), 4).value(), 4u);
    EXPECT_EQ(place, "abcd");
}

TEST_F(RegularFileTest, ReportsAnErrorOfReading) {
    const auto file = RegularFile::open("/proc/self/mem"); // nothing is mapped at its beginning
    ASSERT_TRUE(file);
    char place = 0;
    const auto read = file->read(&place, 1);
    ASSERT_FALSE(read);
    EXPECT_EQ(read.error(), std::errc::io_error);
    EXPECT_EQ(textOf(readRegularFile("/proc/self/mem", 100)), "refused: Input/output error");
}

TEST_F(RegularFileTest, NoticesAChangeWhileItIsOpen) {
    writeFile(inFolder("file"), "abc");
    const auto opened = RegularFile::open(inFolder("file"));
    ASSERT_TRUE(opened);
    const RegularFile& file = *opened;
    EXPECT_TRUE(file.isUnchanged());
    writeFile(inFolder("file"), "abcd");
    EXPECT_FALSE(file.isUnchanged());
    EXPECT_EQ(file.size(), 3u);
}

// A 32-bit process must not take such a file for one of 10 bytes.
TEST_F(RegularFileTest, KnowsTheSizeOfAFileLargerThanMemory) {
    constexpr std::uint64_t size = (std::uint64_t{1} << 32U) + 10;
    writeFile(inFolder("file"), "abc");
    std::filesystem::resize_file(inFolder("file"), size); // takes no room on the disk
    const auto file = RegularFile::open(inFolder("file"));
    ASSERT_TRUE(file);
    EXPECT_EQ(file->size(), size);
    EXPECT_EQ(textOf(readRegularFile(inFolder("file"), 100)), "refused: it is too large");
}

// A pipe without a writer would be waited for.
TEST_F(RegularFileTest, RefusesOtherKindsWithoutWaiting) {
    ASSERT_EQ(::mkfifo(inFolder("pipe").c_str(), 0600), 0);
    for (const std::string& path : {inFolder("pipe"), inFolder(""), "/dev/zero"s}) {
        const auto file = RegularFile::open(path);
        ASSERT_FALSE(file) << path;
        EXPECT_EQ(file.error(), std::errc::invalid_argument) << path;
        EXPECT_EQ(textOf(readRegularFile(path, 100)), "refused: it is not a regular file") << path;
    }
}

TEST_F(RegularFileTest, ReportsAMissingFile) {
    writeFile(inFolder("file"), "x");
    const auto file = RegularFile::open(inFolder("none"));
    ASSERT_FALSE(file);
    EXPECT_EQ(file.error(), std::errc::no_such_file_or_directory);
    EXPECT_EQ(textOf(readRegularFile(inFolder("none"), 100)), "missing");
    EXPECT_EQ(textOf(readRegularFile(inFolder("file/below"), 100)), "missing");
    EXPECT_EQ(textOf(readRegularFile(inFolder("file") + "\0end"s, 100)), "missing");
}

TEST_F(RegularFileTest, ReadsUpToTheBound) {
    writeFile(inFolder("file"), std::string(100, 'x'));
    writeFile(inFolder("empty"), "");
    EXPECT_EQ(textOf(readRegularFile(inFolder("file"), 100)), std::string(100, 'x'));
    EXPECT_EQ(textOf(readRegularFile(inFolder("file"), 99)), "refused: it is too large");
    EXPECT_EQ(textOf(readRegularFile(inFolder("empty"), 0)), "");
}

// The kernel's own files have the size 0, and so stand for a file that grows while it is read.
TEST_F(RegularFileTest, ReadsAFileThatGrows) {
    EXPECT_EQ(RegularFile::open("/proc/self/status")->size(), 0u);
    const std::string text = textOf(readRegularFile("/proc/self/status", 100000));
    EXPECT_TRUE(text.starts_with("Name:")) << text;
    EXPECT_GT(text.size(), 100u);
    EXPECT_EQ(textOf(readRegularFile("/proc/self/status", 100)), "refused: it is too large");
}

} // namespace
} // namespace quorvel::freedesktop
