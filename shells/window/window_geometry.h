// The size and position of the window that the user chose, from one run to the next.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quorvel::window {

struct WindowSize {
    int width = 0; // points
    int height = 0;
    bool operator==(const WindowSize&) const = default;
};

struct WindowPosition {
    int x = 0; // points of the screen
    int y = 0;
    bool operator==(const WindowPosition&) const = default;
};

struct WindowGeometry {
    std::optional<WindowSize> size;         // absent: the size that the widget requests
    std::optional<WindowPosition> position; // absent: the window manager's choice
    bool operator==(const WindowGeometry&) const = default;
};

std::string geometryText(const WindowGeometry& geometry);
// Of any text: lines that are damaged, incomplete or out of range count as absent.
WindowGeometry parseGeometry(std::string_view text);

// A file in the user's folder of states. A missing or unreadable file has no geometry.
WindowGeometry readGeometry(const std::string& file);
// Creates the folder. A failure leaves the old file.
void writeGeometry(const std::string& file, const WindowGeometry& geometry);

} // namespace quorvel::window
