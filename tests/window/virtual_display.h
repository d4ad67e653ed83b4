// An X display without a monitor, and pictures of the windows on it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/window/child_process.h"

struct _XDisplay;

namespace quorvel::window {

struct Picture {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels; // 0xRRGGBB, row by row

    bool operator==(const Picture&) const = default;
    std::uint32_t at(int x, int y) const {
        return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                      static_cast<std::size_t>(x)];
    }
    // That number of lines, from `top` on.
    Picture band(int top, int lines) const;
    // The part with that place and size; what is outside of the picture is left out.
    Picture part(int left, int top, int partWidth, int partHeight) const;
};

class VirtualDisplay {
public:
    explicit VirtualDisplay(const std::string& errorFile);
    ~VirtualDisplay();
    VirtualDisplay(const VirtualDisplay&) = delete;
    VirtualDisplay& operator=(const VirtualDisplay&) = delete;

    const std::string& name() const { return m_name; } // ":7"
    void end();                                        // also ends its clients

    // The visible window of at least ten by ten pixels; 0 where there is none.
    unsigned long window() const;
    std::vector<unsigned long> windows() const; // all visible ones, the frontmost last
    // The content of the window; absent where it is not visible.
    std::optional<Picture> picture(unsigned long window) const;

private:
    std::unique_ptr<ChildProcess> m_server;
    std::string m_name;
    struct _XDisplay* m_display = nullptr;
};

} // namespace quorvel::window
