#include "freedesktop/bundle/program_folders.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace quorvel::freedesktop {
namespace {

namespace fs = std::filesystem;

TEST(ProgramFolders, PrefersWhatStandsBesideTheProgram) {
    std::string name = (fs::temp_directory_path() / "quorvel-folders-XXXXXX").string();
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    const fs::path bin = fs::path(name) / "bin";
    fs::create_directories(bin);

    const ProgramFolders installed = programFolders(bin.string());
    EXPECT_TRUE(installed.bundle.ends_with("/quorvel/Quorvel.bundle")) << installed.bundle;
    EXPECT_TRUE(installed.bundle.starts_with(name + "/lib")) << installed.bundle;
    EXPECT_EQ(installed.data, name + "/share/quorvel");

    fs::create_directories(bin / "Quorvel.bundle");
    fs::create_directories(bin / "share/quorvel");
    const ProgramFolders beside = programFolders(bin.string());
    EXPECT_EQ(beside.bundle, (bin / "Quorvel.bundle").string());
    EXPECT_EQ(beside.data, (bin / "share/quorvel").string());
    fs::remove_all(name);
}

} // namespace
} // namespace quorvel::freedesktop
