// The agenda as a layer of an X11 desktop: the hints that it gives to a real window manager.
#include <gmock/gmock.h>

#include <set>

#include "tests/window/window_fixture.h"
#include "tests/window/window_tree.h"

namespace quorvel::window {
namespace {

using testing::IsSupersetOf;

constexpr int screenWidth = 1280;
constexpr int screenHeight = 1024;

class LayerTest : public WindowTest {
protected:
    LayerTest()
        : m_tree(m_display->name()) {
        m_manager =
            std::make_unique<ChildProcess>(std::vector<std::string>{OPENBOX, "--sm-disable"},
                                           m_environment, path("manager.log").string());
        EXPECT_TRUE(becomesTrue(10, [this] { return m_tree.hasWindowManager(); }));
        writeThreeEvents();
    }
    ~LayerTest() override { m_program.reset(); }

    ManagedWindow showLayer(const std::vector<std::string>& options) {
        show(options);
        ManagedWindow window;
        EXPECT_TRUE(becomesTrue(10, [&] {
            window = m_tree.managedWindow("Quorvel");
            return !window.states.empty();
        }));
        return window;
    }

    WindowTree m_tree;

private:
    std::unique_ptr<ChildProcess> m_manager;
};

TEST_F(LayerTest, IsBelowTheWindowsOrAboveThem) {
    for (const char* layer : {"background", "bottom"}) {
        const ManagedWindow window = showLayer({"--layer", layer});
        EXPECT_THAT(window.states, IsSupersetOf({"_NET_WM_STATE_BELOW"})) << layer;
        EXPECT_EQ(window.states.count("_NET_WM_STATE_ABOVE"), 0U) << layer;
        endProgram();
    }
    for (const char* layer : {"top", "overlay"}) {
        const ManagedWindow window = showLayer({"--layer", layer});
        EXPECT_THAT(window.states, IsSupersetOf({"_NET_WM_STATE_ABOVE"})) << layer;
        EXPECT_EQ(window.states.count("_NET_WM_STATE_BELOW"), 0U) << layer;
        endProgram();
    }
}

TEST_F(LayerTest, IsOnEveryWorkspaceAndInNoList) {
    for (const char* layer : {"background", "bottom", "top", "overlay"}) {
        const ManagedWindow window = showLayer({"--layer", layer});
        EXPECT_TRUE(window.isOnAllWorkspaces) << layer;
        EXPECT_THAT(window.states,
                    IsSupersetOf({"_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER"}))
            << layer;
        EXPECT_EQ(window.type, std::string(layer) == "background" ? "_NET_WM_WINDOW_TYPE_DESKTOP"
                                                                  : "_NET_WM_WINDOW_TYPE_UTILITY")
            << layer;
        endProgram();
    }
}

TEST_F(LayerTest, LiesAtTheEdgesThatAreNamed) {
    const ManagedWindow corner =
        showLayer({"--layer", "top", "--anchor", "bottom,right", "--margin", "0,30,20,0"});
    EXPECT_EQ(corner.frame.width, 320);
    EXPECT_EQ(corner.frame.x + corner.frame.width, screenWidth - 30);
    EXPECT_EQ(corner.frame.y + corner.frame.height, screenHeight - 20);
    endProgram();

    const ManagedWindow strip =
        showLayer({"--layer", "bottom", "--anchor", "left,right,top", "--margin", "5,10,0,40"});
    EXPECT_EQ(strip.frame.x, 40);
    EXPECT_EQ(strip.frame.y, 5);
    EXPECT_EQ(strip.frame.width, screenWidth - 50);
    EXPECT_EQ(strip.frame.height, corner.frame.height);
}

TEST_F(LayerTest, StaysAtItsEdgesWhenItsHeightChanges) {
    const ManagedWindow before =
        showLayer({"--layer", "top", "--anchor", "bottom,left", "--margin", "10"});
    EXPECT_EQ(before.frame.y + before.frame.height, screenHeight - 10);
    writeCalendar(event("first", "Breakfast", "20260310T110000Z", "20260310T120000Z"));
    ManagedWindow after;
    EXPECT_TRUE(becomesTrue(10,
                            [&] {
                                after = m_tree.managedWindow("Quorvel");
                                return after.frame.height < before.frame.height &&
                                       after.frame.y + after.frame.height == screenHeight - 10;
                            }))
        << after.frame.y << " + " << after.frame.height;
}

} // namespace
} // namespace quorvel::window
