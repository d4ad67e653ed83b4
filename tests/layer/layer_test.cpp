// The agenda as a layer of a Wayland compositor.
#include <fstream>
#include <iterator>

#include <gmock/gmock.h>

#include "tests/layer/layer_session.h"

namespace quorvel::layer {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Optional;
using window::ChildProcess;

constexpr double patience = 20;
constexpr int width = 320; // of the sample

class LayerTest : public LayerSession {
protected:
    void expectUsageError(const std::vector<std::string>& options, const std::string& message) {
        const auto program = show(options);
        EXPECT_THAT(program->exitStatus(patience), Optional(2));
        EXPECT_THAT(errors(), EndsWith(message + "\n"));
    }
};

TEST_F(LayerTest, LiesInTheCornerThatTheEdgesName) {
    const auto program = show({"--layer", "top", "--anchor", "top,right", "--margin", "30,20,50,40",
                               "--output", "HEADLESS-1"});
    const Bounds bounds = steadyBounds("HEADLESS-1");
    EXPECT_EQ(bounds.right, 1000 - 20);
    EXPECT_EQ(bounds.left, bounds.right - width);
    EXPECT_EQ(bounds.top, 30);
    EXPECT_EQ(bounds.bottom, 800); // no higher than what the margin leaves
}

TEST_F(LayerTest, LiesOnTheOutputThatIsNamed) {
    const auto program = show({"--layer", "background", "--output", "HEADLESS-2", "--anchor",
                               "bottom,left", "--margin", "5"});
    const Bounds bounds = steadyBounds("HEADLESS-2");
    EXPECT_EQ(bounds.left, 5);
    EXPECT_EQ(bounds.right, 5 + width);
    EXPECT_EQ(bounds.top, 0);
    EXPECT_EQ(bounds.bottom, 600 - 5);
    EXPECT_EQ(picture("HEADLESS-1").at(500, 400), m_background);
}

TEST_F(LayerTest, ReturnsWithItsOutput) {
    const auto program = show({"--layer", "top", "--output", "HEADLESS-2", "--anchor", "top,left"});
    const Bounds bounds = steadyBounds("HEADLESS-2");
    EXPECT_EQ(bounds.left, 0);
    setOutputEnabled("HEADLESS-2", false);
    EXPECT_EQ(program->exitStatus(1), std::nullopt) << "it has ended: " << errors();
    setOutputEnabled("HEADLESS-2", true);
    EXPECT_EQ(steadyBounds("HEADLESS-2"), bounds);
    EXPECT_EQ(program->exitStatus(0), std::nullopt);
}

TEST_F(LayerTest, IsStretchedBetweenOppositeEdges) {
    const auto program = show({"--layer", "bottom", "--anchor", "top,right,bottom,left", "--margin",
                               "10,20,30,40", "--output", "HEADLESS-1"});
    EXPECT_EQ(steadyBounds("HEADLESS-1"), (Bounds{40, 10, 980, 770}));
}

TEST_F(LayerTest, TakesTheKeyboardOnlyWhenItIsClicked) {
    for (const char* layer : {"background", "bottom", "top", "overlay"}) {
        SCOPED_TRACE(layer);
        const auto program =
            show({"--layer", layer, "--anchor", "top,left", "--output", "HEADLESS-1"});
        ASSERT_EQ(steadyBounds("HEADLESS-1").right, width);
        pressEscape();
        EXPECT_FALSE(program->exitStatus(0.5)) << errors();
        click(100, 20);
        pressEscape();
        EXPECT_THAT(program->exitStatus(patience), Optional(0)) << errors();
        pointTo(1850, 50);
    }
}

TEST_F(LayerTest, LeavesTheKeyboardToAWindowThatIsClicked) {
    const auto layer = show({"--layer", "top", "--anchor", "top,left", "--output", "HEADLESS-1"});
    ASSERT_EQ(steadyBounds("HEADLESS-1").right, width);
    click(100, 20);
    const auto window = show({}); // it fills the output that was clicked
    ASSERT_TRUE(window::becomesTrue(
        patience, [this] { return picture("HEADLESS-1").at(800, 790) != m_background; }));
    click(800, 790);
    pressEscape();
    EXPECT_THAT(window->exitStatus(patience), Optional(0)) << errors();
    EXPECT_FALSE(layer->exitStatus(0.5)) << errors();
}

TEST_F(LayerTest, ReportsAnOutputThatDoesNotExist) {
    expectUsageError(
        {"--layer", "top", "--output", "DP-9"},
        "quorvel: there is no output 'DP-9': choose one of HEADLESS-1, HEADLESS-2, HEADLESS-3");
}

TEST_F(LayerTest, LeavesOtherProgramsWithoutTheLibrary) {
    const auto program = show({});
    EXPECT_TRUE(window::becomesTrue(
        patience, [this] { return picture("HEADLESS-3").at(10, 10) != m_background; }));
    const auto maps = [](const ChildProcess& process) -> std::string {
        std::ifstream file("/proc/" + std::to_string(process.process()) + "/maps");
        return {std::istreambuf_iterator<char>(file), {}};
    };
    EXPECT_THAT(maps(*program), HasSubstr("libgtk-3"));
    EXPECT_THAT(maps(*program), testing::Not(HasSubstr("layer-shell")));
    const auto layer = show({"--layer", "top"});
    EXPECT_TRUE(window::becomesTrue(
        patience, [&] { return maps(*layer).find("libgtk-layer-shell") != std::string::npos; }));
}

} // namespace
} // namespace quorvel::layer
