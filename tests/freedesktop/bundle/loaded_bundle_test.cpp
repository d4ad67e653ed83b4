#include "freedesktop/bundle/loaded_bundle.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

#include "freedesktop/bundle/loaded_bundles.h"
#include "platform/bb_wee_app_controller.h"
#include "platform/cg_color.h"
#include "platform/key_value_coding.h"
#include "platform/memory/memory_platform.h"
#include "platform/sbui_widget_view_controller.h"
#include "platform/screen.h"
#include "platform/ui/ui_view.h"
#include "platform/widget_bundle.h"

namespace quorvel::freedesktop {
namespace {

namespace fs = std::filesystem;

using ::testing::ElementsAre;
using ::testing::HasSubstr;

class TestScreen : public platform::Screen {
public:
    platform::CGFloat scale() const override { return m_scale; }
    platform::CGFloat m_scale = 1;
};

class LoadedBundleTest : public ::testing::Test {
protected:
    LoadedBundleTest() {
        std::string name = (fs::temp_directory_path() / "quorvel-bundle-XXXXXX").string();
        EXPECT_NE(mkdtemp(name.data()), nullptr);
        m_folder = name;
    }
    ~LoadedBundleTest() override {
        std::error_code error;
        fs::remove_all(m_folder, error);
    }

    void writeInformation(const fs::path& folder, const std::string& executable) const {
        fs::create_directories(folder);
        std::ofstream(folder / "Info.plist")
            << "<plist version=\"1.0\"><dict><key>CFBundleExecutable</key><string>" << executable
            << "</string><key>NSPrincipalClass</key><string>Principal</string></dict></plist>";
    }
    // A bundle around one of the shared objects made for this test.
    std::string problemOf(const std::string& kind) const {
        writeInformation(m_folder, kind + ".so");
        fs::copy_file(fs::path(QUORVEL_TEST_BUNDLES) / (kind + ".so"), m_folder / (kind + ".so"));
        return problem();
    }
    std::string problem() const {
        const auto bundle = LoadedBundle::load(m_folder.string(), m_screen);
        return bundle ? "none" : message(bundle.error());
    }

    fs::path m_folder;
    TestScreen m_screen;
};

TEST_F(LoadedBundleTest, KnowsItsClassesAndValues) {
    const auto bundle = LoadedBundle::load(QUORVEL_BUNDLE, m_screen).value();
    EXPECT_EQ(bundle->principalClass(), "QuorvelViewControllerNew");
    EXPECT_FALSE(bundle->identifier().empty());
    EXPECT_TRUE(bundle->hasClass("QuorvelViewControllerNewToday"));
    EXPECT_FALSE(bundle->hasClass("NSObject"));
    EXPECT_FALSE(bundle->processWideValues().keys().empty());
    EXPECT_EQ(bundle->bundlePath(), QUORVEL_BUNDLE);

    LoadedBundles bundles;
    EXPECT_EQ(bundles.bundleForClass("QuorvelViewControllerNew"), nullptr);
    bundles.add(bundle);
    EXPECT_EQ(bundles.bundleForClass("QuorvelViewControllerNew"), bundle);
    EXPECT_EQ(bundles.bundleForClass("NSObject"), nullptr);
}

TEST_F(LoadedBundleTest, MakesControllersOfBothKinds) {
    const auto bundle = LoadedBundle::load(QUORVEL_BUNDLE, m_screen).value();
    const platform::memory::MemoryPlatform memory;
    EXPECT_NE(bundle->makeController("QuorvelViewControllerNew", memory.platform()).value(),
              nullptr);
    EXPECT_EQ(bundle->makeWeeAppController("QuorvelViewControllerNew", memory.platform()), nullptr);

    EXPECT_TRUE(bundle->hasClass("QuorvelViewController"));
    const auto legacy = bundle->makeWeeAppController("QuorvelViewController", memory.platform());
    ASSERT_NE(legacy, nullptr);
    EXPECT_EQ(legacy->viewHeight(), 70);
    EXPECT_FALSE(bundle->makeController("QuorvelViewController", memory.platform()));

    EXPECT_EQ(bundle->makeWeeAppController("NSObject", memory.platform()), nullptr);
    EXPECT_THAT(message(bundle->makeController("NSObject", memory.platform()).error()),
                HasSubstr("no controller 'NSObject': it has QuorvelView"));
    EXPECT_THAT(message(bundle->makeController("", memory.platform()).error()),
                HasSubstr("names no principal class: name a folder"));
}

TEST_F(LoadedBundleTest, ConvertsColours) {
    const auto bundle = LoadedBundle::load(QUORVEL_BUNDLE, m_screen).value();
    EXPECT_EQ(bundle->colorFromHexString("#FF0000"), platform::UIColor::redColor());
    EXPECT_EQ(bundle->colorFromHexString("#0000FF80"), platform::UIColor::blueColor());
    EXPECT_EQ(bundle->colorFromHexString(std::nullopt), platform::UIColor::whiteColor());

    platform::memory::MemoryPlatform memory;
    const auto controller =
        bundle->makeController("QuorvelViewControllerNew", memory.platform()).value();
    const auto view = controller->view();
    memory.systemLog.lines.clear();
    EXPECT_EQ(bundle->hexStringForColor(*view, {{1.0, 0.5, 0.0, 0.3}}), "#FF7F00");
    EXPECT_THAT(memory.systemLog.lines,
                ElementsAre("QRV: hexStringForColor", "QRV: got calendar color string: #FF7F00"));
    const auto other = std::make_shared<platform::UIView>();
    EXPECT_EQ(bundle->hexStringForColor(*other, {{1.0, 0.5, 0.0, 0.3}}), std::nullopt);
}

// Nothing but the C++ runtime and the platform's own library.
TEST_F(LoadedBundleTest, NeedsNoOtherLibrary) {
    const std::string command =
        std::string("LC_ALL=C readelf --dynamic '") + QUORVEL_BUNDLE + "/Quorvel.so'";
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    ASSERT_NE(pipe, nullptr);
    std::array<char, 1024> line{};
    int libraries = 0;
    while (std::fgets(line.data(), static_cast<int>(line.size()), pipe.get()) != nullptr) {
        const std::string text(line.data());
        if (text.find("(NEEDED)") == std::string::npos)
            continue;
        bool isKnown = false;
        for (const char* known : {"ld-linux", "libstdc++", "libm.so", "libgcc_s", "libc.so",
                                  "libquorvel_platform", "libasan", "libubsan"}) {
            isKnown = isKnown || text.find(known) != std::string::npos;
        }
        EXPECT_TRUE(isKnown) << text;
        ++libraries;
    }
    EXPECT_GT(libraries, 2);
}

TEST_F(LoadedBundleTest, RefusesForeignLibraries) {
    EXPECT_THAT(problemOf("foreign"), HasSubstr("is not a widget bundle"));
    EXPECT_THAT(problemOf("null_entry"), HasSubstr("is not a widget bundle"));
    EXPECT_THAT(problemOf("other_version"),
                HasSubstr("built for version " +
                          std::to_string(platform::widgetBundleInterfaceVersion + 1)));
}

TEST_F(LoadedBundleTest, RefusesBrokenFolders) {
    EXPECT_THAT(problem(), HasSubstr("has no Info.plist"));
    std::ofstream(m_folder / "Info.plist") << "<plist version=\"1.0\"><array/></plist>";
    EXPECT_THAT(problem(), HasSubstr("it holds no dictionary"));
    std::ofstream(m_folder / "Info.plist") << "<plist";
    EXPECT_THAT(problem(), HasSubstr("cannot be read"));
    for (const char* name : {"..", ".", "/lib/libm.so.6", "../x.so", "a/b.so"}) {
        writeInformation(m_folder, name);
        EXPECT_THAT(problem(), HasSubstr("outside itself")) << name;
    }
    writeInformation(m_folder, "missing.so");
    EXPECT_THAT(problem(), HasSubstr("lacks its executable"));
    writeInformation(m_folder, "folder.so");
    fs::create_directory(m_folder / "folder.so");
    EXPECT_THAT(problem(), HasSubstr("lacks its executable"));
    EXPECT_THAT(message(LoadedBundle::load((m_folder / "none").string(), m_screen).error()),
                HasSubstr("does not exist: name a folder"));
}

TEST_F(LoadedBundleTest, ChoosesResourcesByTheScreensScale) {
    // The real shared object, with pictures of this test beside it.
    writeInformation(m_folder, "Quorvel.so");
    fs::create_symlink(fs::path(QUORVEL_BUNDLE) / "Quorvel.so", m_folder / "Quorvel.so");
    const auto bundle = LoadedBundle::load(m_folder.string(), m_screen).value();
    const auto chosen = [&](double scale) {
        m_screen.m_scale = scale;
        const auto path = bundle->pathForResource("Icon", "png");
        return path ? fs::path(*path).filename().string() : "none";
    };
    EXPECT_EQ(chosen(1), "none");
    std::ofstream(m_folder / "Icon@2x.png") << "2";
    EXPECT_EQ(chosen(1), "Icon@2x.png");
    EXPECT_EQ(chosen(3), "Icon@2x.png");
    std::ofstream(m_folder / "Icon.png") << "1";
    std::ofstream(m_folder / "Icon@3x.png") << "3";
    EXPECT_EQ(chosen(0.5), "Icon.png");
    EXPECT_EQ(chosen(1), "Icon.png");
    EXPECT_EQ(chosen(1.5), "Icon@2x.png");
    EXPECT_EQ(chosen(2), "Icon@2x.png");
    EXPECT_EQ(chosen(64), "Icon@3x.png");
    EXPECT_FALSE(bundle->pathForResource("../Icon", "png"));
    EXPECT_FALSE(bundle->pathForResource("", ""));
}

} // namespace
} // namespace quorvel::freedesktop
