// A plain window, which the user may move and resize: it has the size that the agenda requests
// until the user chooses another, and remembers that and its position.
#pragma once

#include <optional>
#include <string>

#include "shells/window/window_geometry.h"
#include "shells/window/window_placement.h"

namespace quorvel::window {

class PlainPlacement final : public WindowPlacement {
public:
    // `geometryFile`: see window_geometry.h; empty: nothing is remembered. `hasFixedWidth`: the
    // user named a width for this run, so that a size of an earlier run does not count.
    PlainPlacement(std::string geometryFile, bool hasFixedWidth);
    void prepare(GtkWindow* window) override;
    void resize(GtkWindow* window, platform::CGSize size) override;
    void store(GtkWindow* window) override;
    GdkMonitor* monitor() const override { return nullptr; }
    platform::CGFloat greatestHeight(platform::CGFloat available) const override {
        return available;
    }
    bool canBeMoved() const override { return true; }
    bool hasHeader() const override { return true; }

private:
    bool hasUserSize(GtkWindow* window) const;

    std::string m_geometryFile;
    bool m_hasFixedWidth;
    std::optional<WindowSize> m_userSize;      // of an earlier run
    std::optional<WindowSize> m_requestedSize; // absent before the first request
    double m_requestedAt = 0;                  // seconds
};

} // namespace quorvel::window
