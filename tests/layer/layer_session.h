// A Wayland compositor without hardware that has the layer shell. From left to right there are
// HEADLESS-1 of 1000 x 800 points, HEADLESS-2 of 800 x 600, and HEADLESS-3, where the pointer rests
// so that it is in no picture.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/window/child_process.h"
#include "tests/window/virtual_display.h"

namespace quorvel::layer {

// In pixels of the output; empty where everything is background.
struct Bounds {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    bool operator==(const Bounds&) const = default;
};
void PrintTo(const Bounds& bounds, std::ostream* stream);

class LayerSession : public testing::Test {
protected:
    LayerSession();
    ~LayerSession() override;

    std::filesystem::path path(const std::string& name) const { return m_folder / name; }
    // `quorvel show` with the sample on a fixed day and these options.
    std::unique_ptr<window::ChildProcess> show(const std::vector<std::string>& options) const;
    window::Picture picture(const std::string& output) const;
    // Of what lies on the background, once the picture no longer changes.
    Bounds steadyBounds(const std::string& output) const;
    // In points of all outputs.
    void click(int x, int y) const;
    void pointTo(int x, int y) const;
    void pressEscape() const;
    // As when its cable is pulled and plugged in again.
    void setOutputEnabled(const std::string& output, bool isEnabled) const;
    std::string errors() const; // of the programs that were shown

    std::map<std::string, std::string> m_environment; // of the programs on the display
    std::uint32_t m_background = 0;                   // 0xRRGGBB, of the outputs

private:
    void startCompositor();
    void run(const std::vector<std::string>& words) const;

    std::filesystem::path m_folder;
    std::unique_ptr<window::ChildProcess> m_compositor;
};

} // namespace quorvel::layer
