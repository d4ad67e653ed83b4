#include "shells/window/window_geometry.h"

#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "tests/freedesktop/session/session_testing.h"

namespace quorvel::window {
namespace {

using testing_session::TemporaryFolder;
using testing_session::write;

const WindowGeometry both{WindowSize{400, 600}, WindowPosition{-20, 30}};

TEST(WindowGeometry, IsReadAsItWasWritten) {
    for (const WindowGeometry& geometry :
         {both, WindowGeometry{both.size, std::nullopt},
          WindowGeometry{std::nullopt, both.position}, WindowGeometry{}}) {
        EXPECT_EQ(parseGeometry(geometryText(geometry)), geometry);
    }
}

TEST(WindowGeometry, DamagedLinesCountAsAbsent) {
    for (const char* text :
         {"", "size", "size 400", "size 400 ", "size 400 600", "size 400 600 7\n", "size 0 600\n",
          "size -1 600\n", "size 400 99999\n", "size 99999999999 1\n", "size a b\n", "xsize 1 1\n",
          "SIZE 400 600\n", "size  400 600\n", "position 1 40000\n", "position 1.5 2\n"}) {
        EXPECT_EQ(parseGeometry(text), WindowGeometry{}) << text;
    }
    EXPECT_EQ(parseGeometry("size 1 x\nposition 7 8\n").position, (WindowPosition{7, 8}));
    EXPECT_EQ(parseGeometry(std::string("size 1 1\0\n", 10)), WindowGeometry{});
}

// A crash during the writing of a file without replacement would leave its beginning.
TEST(WindowGeometry, EveryBeginningOfAFileIsValid) {
    const std::string text = geometryText(both);
    for (std::size_t length = 0; length < text.size(); ++length) {
        const WindowGeometry geometry = parseGeometry(text.substr(0, length));
        EXPECT_TRUE(!geometry.size || geometry.size == both.size) << length;
        EXPECT_FALSE(geometry.position) << length;
    }
}

TEST(WindowGeometry, TheFileMayBeMissingOrHuge) {
    const TemporaryFolder folder;
    const std::string file = folder / "state/quorvel/window";
    EXPECT_EQ(readGeometry(file), WindowGeometry{});
    writeGeometry(file, both); // creates the folder
    EXPECT_EQ(readGeometry(file), both);
    write(file, geometryText(both) + std::string(1 << 20, 'x'));
    EXPECT_EQ(readGeometry(file), WindowGeometry{});
    EXPECT_EQ(readGeometry(folder.path().string()), WindowGeometry{}) << "a folder";
}

TEST(WindowGeometry, AFolderThatCannotBeCreatedIsIgnored) {
    const TemporaryFolder folder;
    write(folder / "state", "a file");
    writeGeometry(folder / "state/quorvel/window", both);
    EXPECT_EQ(readGeometry(folder / "state/quorvel/window"), WindowGeometry{});
}

} // namespace
} // namespace quorvel::window
