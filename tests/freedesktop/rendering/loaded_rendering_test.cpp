// The libraries of texts and pictures, loaded at first use: before it, this test has none of them.
#include "freedesktop/rendering/loaded_rendering.h"

#include <fstream>
#include <iterator>

#include <gmock/gmock.h>

#include "freedesktop/graphics/snapshot.h"
#include "platform/memory/fixed_screen.h"
#include "platform/ui_font.h"
#include "tests/freedesktop/session/session_testing.h"

namespace quorvel::freedesktop {
namespace {

using platform::UIFont;
using testing::HasSubstr;
using testing_session::TemporaryFolder;

bool isLibraryMapped(std::string_view name) {
    std::ifstream file("/proc/self/maps");
    const std::string maps{std::istreambuf_iterator<char>(file), {}};
    return maps.find(name) != std::string::npos;
}

class LoadedRenderingTest : public testing::Test {
protected:
    platform::CGFloat width(std::string_view text) {
        return rendering.textMeasurer().sizeWithFont(text, UIFont::systemFontOfSize(16)).width;
    }

    LoadedRendering rendering{QUORVEL_RENDERING_MODULE, {{}, "en_US", 1, QUORVEL_DATA}};
    platform::memory::FixedScreen screen;
};

// The first test of the program, as what is loaded stays.
TEST_F(LoadedRenderingTest, LoadsNothingBeforeSomethingIsAsked) {
    const auto contexts = rendering.makeGraphicsContexts(screen);
    rendering.setLocale("ja_JP");
    rendering.setTextScale(2);
    rendering.reloadFonts();
    EXPECT_EQ(rendering.textLines(), nullptr);
    EXPECT_FALSE(isLibraryMapped("libpango"));
    EXPECT_FALSE(isLibraryMapped("libcairo"));
    EXPECT_GT(width("W"), 0);
    EXPECT_TRUE(isLibraryMapped("libpango"));
    EXPECT_TRUE(isLibraryMapped("libcairo"));
    EXPECT_FALSE(rendering.failure());
}

TEST_F(LoadedRenderingTest, MeasuresWithFontsInTheScaleThatWasSetBefore) {
    const double once = width("iiii");
    EXPECT_NE(width("WWWW"), once);
    LoadedRendering larger(QUORVEL_RENDERING_MODULE, {});
    larger.setTextScale(2);
    const auto font = UIFont::systemFontOfSize(16);
    EXPECT_NEAR(larger.textMeasurer().sizeWithFont("iiii", font).width, 2 * once, 0.01);
    larger.setTextScale(1);
    EXPECT_NEAR(larger.textMeasurer().sizeWithFont("iiii", font).width, once, 0.01);
}

TEST_F(LoadedRenderingTest, ReadsPicturesAndPaints) {
    const auto picture =
        rendering.imageFiles().imageWithContentsOfFile(QUORVEL_DATA "/icon-about@2x.png");
    ASSERT_NE(picture, nullptr);
    screen.setScale(2);
    const auto contexts = rendering.makeGraphicsContexts(screen);
    const auto painted = contexts->beginImageContext({10, 5}, false, 0);
    ASSERT_NE(painted, nullptr);
    painted->context().drawImage(*picture, {{0, 0}, {10, 5}});
    EXPECT_EQ(painted->image()->size(), (platform::CGSize{10, 5}));
    EXPECT_EQ(painted->image()->scale(), 2);
}

TEST_F(LoadedRenderingTest, KnowsTheFonts) {
    EXPECT_TRUE(rendering.areFontsInstalled());
    EXPECT_TRUE(rendering.isFontInstalled("sans-serif"));
    EXPECT_FALSE(rendering.isFontInstalled("No Such Family"));
}

TEST_F(LoadedRenderingTest, WritesASnapshot) {
    const TemporaryFolder folder;
    const std::string file = folder / "a.png";
    const Snapshot snapshot{{4, 4}, 1, platform::UIColor{1, 0, 0, 1}, [](auto&) {}};
    EXPECT_TRUE(rendering.fitsInto(file, snapshot));
    ASSERT_TRUE(rendering.writeSnapshot(file, snapshot));
    EXPECT_GT(std::filesystem::file_size(file), 0U);
}

TEST(LoadedRendering, AMissingModuleIsNamedWithWhatToDo) {
    LoadedRendering rendering("/nonexistent/quorvel-rendering.so", {});
    EXPECT_FALSE(rendering.failure());
    EXPECT_GT(rendering.textMeasurer().sizeWithFont("W", UIFont::systemFontOfSize(16)).width, 0);
    ASSERT_TRUE(rendering.failure());
    EXPECT_THAT(rendering.failure()->what, HasSubstr("/nonexistent/quorvel-rendering.so"));
    EXPECT_THAT(rendering.failure()->toDo, HasSubstr("the package quorvel"));
    EXPECT_EQ(rendering.imageFiles().imageWithContentsOfFile(QUORVEL_DATA "/icon-about@2x.png"),
              nullptr);
    const auto written = rendering.writeSnapshot("x.png", {{4, 4}, 1, {}, [](auto&) {}});
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error().what, rendering.failure()->what);
}

TEST(LoadedRendering, AFileThatIsNoModuleIsNamed) {
    const TemporaryFolder folder;
    testing_session::write(folder / "quorvel-rendering.so", "no library");
    LoadedRendering rendering(folder / "quorvel-rendering.so", {});
    rendering.prepare();
    ASSERT_TRUE(rendering.failure());
    EXPECT_THAT(rendering.failure()->what, HasSubstr("quorvel-rendering.so"));
}

} // namespace
} // namespace quorvel::freedesktop
