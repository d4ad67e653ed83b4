#include "freedesktop/bundle/program_folders.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace quorvel::freedesktop {
namespace {

namespace fs = std::filesystem;

TEST(ProgramFolders, AreBesideTheProgramWhereTheBundleIs) {
    std::string name = (fs::temp_directory_path() / "quorvel-folders-XXXXXX").string();
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    const fs::path bin = fs::path(name) / "bin";
    fs::create_directories(bin);

    const ProgramFolders installed = programFolders(bin.string());
    EXPECT_TRUE(installed.bundle.ends_with("/quorvel/Quorvel.bundle")) << installed.bundle;
    EXPECT_TRUE(installed.bundle.starts_with(name + "/lib")) << installed.bundle;
    EXPECT_EQ(installed.data, name + "/share/quorvel");
    EXPECT_EQ(installed.window, name + "/libexec/quorvel/quorvel-window");
    EXPECT_EQ(installed.refresh, name + "/libexec/quorvel/quorvel-refresh");
    EXPECT_EQ(installed.command, name + "/bin/quorvel");
    EXPECT_EQ(installed.settings, name + "/bin/quorvel-settings");
    EXPECT_TRUE(installed.dataServerModule.ends_with("/quorvel/quorvel-eds.so"));
    EXPECT_TRUE(installed.dataServerModule.starts_with(name + "/lib"));
    EXPECT_TRUE(installed.layerModule.ends_with("/quorvel/quorvel-layer-shell.so"));
    EXPECT_TRUE(installed.layerModule.starts_with(name + "/lib"));
    EXPECT_TRUE(installed.renderingModule.ends_with("/quorvel/quorvel-rendering.so"));
    EXPECT_TRUE(installed.desktopModule.ends_with("/quorvel/quorvel-desktop.so"));
    EXPECT_TRUE(installed.commandModule.ends_with("/quorvel/quorvel-command.so"));
    EXPECT_TRUE(installed.platformLibrary.starts_with(name + "/lib"));
    EXPECT_EQ(installed.platformLibrary.find("/quorvel/libquorvel_platform.so."), std::string::npos)
        << "it is no module";
    EXPECT_EQ(installed.catalogs, name + "/share/locale");

    fs::create_directories(bin / "Quorvel.bundle");
    const ProgramFolders beside = programFolders(bin.string());
    EXPECT_EQ(beside.bundle, (bin / "Quorvel.bundle").string());
    EXPECT_EQ(beside.data, (bin / "share/quorvel").string());
    EXPECT_EQ(beside.window, (bin / "quorvel-window").string());
    EXPECT_EQ(beside.refresh, (bin / "quorvel-refresh").string());
    EXPECT_EQ(beside.dataServerModule, (bin / "quorvel-eds.so").string());
    EXPECT_EQ(beside.layerModule, (bin / "quorvel-layer-shell.so").string());
    EXPECT_EQ(beside.renderingModule, (bin / "quorvel-rendering.so").string());
    EXPECT_EQ(beside.desktopModule, (bin / "quorvel-desktop.so").string());
    EXPECT_EQ(beside.commandModule, (bin / "quorvel-command.so").string());
    EXPECT_EQ(beside.settings, (bin / "quorvel-settings").string());
    EXPECT_TRUE(
        beside.platformLibrary.starts_with((bin / "platform/libquorvel_platform.so.").string()));
    EXPECT_EQ(beside.catalogs, (bin / "share/locale").string());
    fs::remove_all(name);
}

TEST(ProgramFolders, AreTheSameForAProgramThatTheCommandsStart) {
    const ProgramFolders command = programFolders("/opt/quorvel/bin");
    const ProgramFolders helper = programFolders("/opt/quorvel/libexec/quorvel");
    EXPECT_EQ(helper.bundle, command.bundle);
    EXPECT_EQ(helper.data, "/opt/quorvel/share/quorvel");
    EXPECT_EQ(helper.data, command.data);
    EXPECT_EQ(helper.command, "/opt/quorvel/bin/quorvel");
    EXPECT_EQ(helper.settings, command.settings);
}

} // namespace
} // namespace quorvel::freedesktop
